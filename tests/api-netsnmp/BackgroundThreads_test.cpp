#include "api-netsnmp/BackgroundThreads.hpp"
#include "api-netsnmp/Signals.hpp"
#include "tests/api-netsnmp/FakeClient.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

using namespace std::chrono_literals;

namespace {
/// Whether the event queue is drained for the `count`th time well before the poll's period of ten seconds is over.
bool isDrained(int count)
{
    const auto limit = std::chrono::steady_clock::now() + 3s;
    while (eventDrains < count && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(5ms);
    return eventDrains == count;
}

/// Which signals the thread that bears `name` blocks; nothing while there is none.
std::optional<std::uint64_t> blockedSignals(const std::string& name)
{
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string word, blocked;
        std::ifstream comm(task.path() / "comm"), status(task.path() / "status");
        if (!(comm >> word) || word != name)
            continue;
        while (status >> word)
            if (word == "SigBlk:" && status >> blocked)
                return std::stoull(blocked, nullptr, 16);
    }
    return std::nullopt;
}

bool blocksAll(const char* thread, std::initializer_list<int> signals)
{
    auto blocked = blockedSignals(thread);
    for (; !blocked; blocked = blockedSignals(thread))
        std::this_thread::sleep_for(5ms); // it names itself
    return std::ranges::all_of(signals, [&](int sig) { return *blocked >> (sig - 1) & 1; });
}
} // namespace

TEST(BackgroundThreads, DoorbellDrainsTheQueueAtOnceAndBothThreadsLeaveSignalsAloneAndEndInTheirSleep)
{
    eventDrains = 0;
    agent::installSignalHandlers();
    agent::openBells();
    agent::startThreads();
    ASSERT_TRUE(isDrained(1));
    testing::internal::CaptureStderr();
    raise(SIGRTMIN + 1);
    EXPECT_TRUE(isDrained(2));
    for (const char* thread : {"CheckTrap", "sensors_cache"})
        EXPECT_TRUE(blocksAll(thread, {SIGTERM, SIGINT, SIGHUP, SIGPIPE, SIGRTMIN + 1})) << thread;
    EXPECT_TRUE(agent::endThreads(2s));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::ContainsRegex("catchNotify called, getpid=[0-9]+\nCatchNotify Signal received at: "));
}
