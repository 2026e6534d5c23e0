#include "common/Report.hpp"

#include "common/Policy.hpp"
#include "common/Seams.hpp"

#include <map>
#include <memory>
#include <mutex>
#include <syslog.h>

namespace common {

namespace {

using namespace std::chrono_literals;

constexpr auto pauseBetweenRepeats = 1h;
constexpr std::size_t mostKeys = 4096;

struct Told {
    Clock::SteadyPoint last;
    unsigned long leftOut = 0;
};

std::mutex guard;
/// Not destroyed at exit: threads may outlive the end of main.
std::map<std::string, Told>& told = *std::make_unique<std::map<std::string, Told>>().release();

struct Syslog : SystemLog {
    void write(Gravity gravity, const std::string& text) override
    {
        syslog(LOG_DAEMON | static_cast<int>(gravity), "%s", text.c_str());
    }
};

/// Whether a message of `key` is to be told now; `leftOut` is how many were not since the last.
bool isDue(const std::string& key, unsigned long& leftOut)
{
    const auto now = current<Clock>().steady();
    const std::scoped_lock lock(guard);
    const auto known = told.find(key);
    if (known == told.end()) {
        if (told.size() >= mostKeys)
            told.clear();
        told[key] = {.last = now};
        return true;
    }
    if (now - known->second.last < pauseBetweenRepeats) {
        ++known->second.leftOut;
        return false;
    }
    leftOut = known->second.leftOut;
    known->second = {.last = now};
    return true;
}

} // namespace

SystemLog& SystemLog::real()
{
    static Syslog log;
    return log;
}

void report(Gravity gravity, const std::string& text)
{
    if (policy().practical)
        current<SystemLog>().write(gravity, text);
}

void reportLimited(Gravity gravity, const std::string& key, const std::string& text)
{
    unsigned long leftOut = 0;
    if (!policy().practical || !isDue(key, leftOut))
        return;
    report(gravity, leftOut == 0 ? text : text + " (" + std::to_string(leftOut) + " more in the last hour)");
}

bool stillStands(const std::string& key)
{
    const std::scoped_lock lock(guard);
    return told.contains(key);
}

void reportEnded(const std::string& key)
{
    const std::scoped_lock lock(guard);
    told.erase(key);
}

} // namespace common
