#include "api-netsnmp/StatusService.hpp"

#include "client/door/Functions.hpp"
#include "client/door/Standing.hpp"
#include "client/traps/TestTraps.hpp"
#include "client/traps/TrapQueue.hpp"
#include "common/Facts.hpp"
#include "common/Paths.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Waits.hpp"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace agent {

namespace {

using namespace std::chrono_literals;

constexpr auto pauseBetweenTries = 10s;
constexpr auto pauseBetweenTellings = 5s; ///< each is a look at every row

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

const char* healthWord(int health)
{
    static constexpr const char* words[] = {"unknown", "unavailable", "healthy", "warning", "critical"};
    return health >= 0 && health < std::ssize(words) ? words[health] : words[0];
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

std::string stateInWords()
{
    int rows = 0;
    std::size_t silent = 0;
    for (const client::door::GroupStanding& group : client::door::standingOfGroups()) {
        rows += group.rows;
        silent += group.silent.size();
    }
    const bool isConnected = client::traps::trapStanding().hasSession;
    return std::string(isConnected ? "Connected to snmpd" : "Not connected to snmpd") + ", health " +
           healthWord(getHealthStatus()) + ", " + std::to_string(rows) + " rows, " + std::to_string(silent) +
           " without a value";
}

void tellServiceManager(const std::string& state)
{
    const char* const path = std::getenv("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = path ? std::strlen(path) : 0;
    if (length < 2 || length >= sizeof address.sun_path)
        return;
    std::memcpy(address.sun_path, path, length);
    if (*path == '@') // a name that no file bears
        address.sun_path[0] = '\0';
    const common::Descriptor channel(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const std::string text = "STATUS=" + state;
    [[maybe_unused]] const ssize_t sent =
        sendto(channel.get(), text.data(), text.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address),
               static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length));
}

void StatusService::tellState()
{
    const auto now = current<Clock>().steady();
    if (!common::policy().tellsServiceManager || !std::getenv("NOTIFY_SOCKET") || now < nextTelling)
        return;
    nextTelling = now + pauseBetweenTellings;
    std::string state = stateInWords();
    if (state == toldState)
        return;
    tellServiceManager(state);
    toldState = std::move(state);
}

void StatusService::turn()
{
    constexpr char key[] = "status socket";
    tellState();
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
