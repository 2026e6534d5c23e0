#include "api-netsnmp/BackgroundThreads.hpp"
#include "api-netsnmp/Signals.hpp"
#include "tests/api-netsnmp/FakeClient.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
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
} // namespace

TEST(BackgroundThreads, DoorbellDrainsTheQueueAtOnceAndBothThreadsEndInTheirSleep)
{
    eventDrains = 0;
    installSignalHandlers();
    openBells();
    startThreads();
    ASSERT_TRUE(isDrained(1));
    testing::internal::CaptureStderr();
    raise(SIGRTMIN + 1);
    EXPECT_TRUE(isDrained(2));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_TRUE(endThreads(2s));
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1s);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::ContainsRegex("catchNotify called, getpid=[0-9]+\nCatchNotify Signal received at: "));
}
