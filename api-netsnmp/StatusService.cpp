#include "api-netsnmp/StatusService.hpp"

#include "client/door/Functions.hpp"
#include "client/door/Standing.hpp"
#include "client/traps/TestTraps.hpp"
#include "client/traps/TrapQueue.hpp"
#include "common/Facts.hpp"
#include "common/Paths.hpp"
#include "common/Report.hpp"
#include "common/Waits.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <unistd.h>

namespace agent {

namespace {

using namespace std::chrono_literals;

constexpr auto pauseBetweenTries = 10s;

/// A line; what would end it early, or not be seen, is a blank.
std::string line(const std::string& key, std::string value)
{
    std::ranges::replace_if(
        value, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return key + " = " + value + "\n";
}

std::string secondsOf(std::chrono::nanoseconds duration)
{
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(duration).count());
}

std::string tellFacts()
{
    std::string text;
    for (const common::Fact& fact : common::facts()) {
        text += line(fact.name, fact.text);
        text += line(fact.name + ".age", secondsOf(current<Clock>().steady() - fact.noted));
    }
    return text;
}

std::string tellGroups()
{
    std::string text;
    for (const client::door::GroupStanding& group : client::door::standingOfGroups()) {
        text += line("rows." + group.name, std::to_string(group.rows));
        for (const std::string& sensor : group.silent)
            text += line("silent." + group.name, sensor);
    }
    return text;
}

std::string tellStatus(const std::string&)
{
    const client::traps::TrapStanding traps = client::traps::trapStanding();
    return line("master", traps.hasSession ? "connected" : "not connected") +
           line("health", std::to_string(getHealthStatus())) + line("traps.enabled", isTrapEnabled() ? "1" : "0") +
           line("traps.waiting", std::to_string(traps.waiting)) + tellFacts() + tellGroups();
}

std::string sendTest(const std::string& name)
{
    if (!isTrapEnabled())
        return line("error", "traps are off: trapsEnabled = 0 in hwagent.conf");
    if (!client::traps::trapStanding().hasSession)
        return line("error", "not connected to the master agent");
    const auto trap = client::traps::makeTestTrap(name.empty() ? client::traps::harmlessTrap : name);
    if (!trap)
        return line("error", "no trap of that name in HWAGENT-MIB: " + name);
    client::traps::queueTestTrap(*trap);
    return line("sent", client::traps::nameOf(*trap));
}

struct Request {
    std::string_view word;
    std::string (*answer)(const std::string& rest);
};
constexpr Request requests[] = {{"status", tellStatus}, {"test-trap", sendTest}};

} // namespace

std::string answerStatusRequest(const std::string& request)
{
    const std::size_t blank = std::min(request.find(' '), request.size());
    const auto* const known = std::ranges::find(requests, std::string_view(request).substr(0, blank), &Request::word);
    if (known == std::end(requests))
        return line("error", "unknown request");
    return known->answer(blank < request.size() ? request.substr(blank + 1) : std::string());
}

StatusService::StatusService()
{
    common::noteFact(common::processFact, std::to_string(getpid()));
}

void StatusService::turn()
{
    constexpr char key[] = "status socket";
    if (server.isOpen() || server.open(common::statusFolder, common::statusSocket)) {
        common::reportEnded(key);
        server.serve(1s);
        return;
    }
    common::reportLimited(common::Gravity::warning, key,
                          std::string("hwquery status will not work, no socket in ") + common::statusFolder + ": " +
                              std::strerror(errno));
    common::waitInterruptibly(pauseBetweenTries);
}

} // namespace agent
