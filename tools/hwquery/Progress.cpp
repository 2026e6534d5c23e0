#include "tools/hwquery/Progress.hpp"

#include "modules/System.hpp"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <utility>

namespace hwquery {

namespace {

constexpr std::chrono::milliseconds moment{700}, between{200};

} // namespace

Progress::Progress(std::string what_) : what(std::move(what_))
{
    if (isatty(STDERR_FILENO))
        shower = std::thread([this] { show(); });
}

Progress::~Progress()
{
    if (!shower.joinable())
        return;
    {
        const std::lock_guard hold(guard);
        over = true;
    }
    ended.notify_one();
    shower.join();
}

void Progress::note(std::string how)
{
    const std::lock_guard hold(guard);
    far = std::move(how);
}

void Progress::show()
{
    const auto begin = std::chrono::steady_clock::now();
    std::unique_lock hold(guard);
    bool shown = false;
    for (auto wait = moment; !ended.wait_for(hold, wait, [this] { return over; }); wait = between) {
        const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - begin;
        std::fprintf(stderr, "\r%s: %s%s%.0f s, %llu exchanges \033[K", what.c_str(), far.c_str(),
                     far.empty() ? "" : ", ", lasted.count(), SDK::System::exchanges());
        shown = true;
    }
    if (shown)
        std::fputs("\r\033[K", stderr);
}

} // namespace hwquery
