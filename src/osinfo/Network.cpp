#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "osinfo/Listing.hpp"
#include "osinfo/OsCalls.hpp"
#include "osinfo/OsInfo.hpp"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <net/if.h>
#include <optional>
#include <sys/ioctl.h>

namespace {

using namespace osinfo;

constexpr std::string_view hiddenInterfaces[] = {"lo", "sit0"};
constexpr std::size_t macTextBytes = 18;

/// Columns of `route -n`.
enum RouteColumn : std::size_t { routeGateway = 1, routeFlags = 3, routeInterface = 7, routeColumns };
constexpr const char* viaGateway = "UG";

/// What the kernel answers to one request about an interface; nothing for names that can't be an interface's.
std::optional<ifreq> askInterface(const char* interface, unsigned long request)
{
    ifreq answer{};
    if (!interface || std::strlen(interface) >= sizeof answer.ifr_name)
        return std::nullopt;
    std::strcpy(answer.ifr_name, interface);
    const common::Descriptor socket = current<OsCalls>().openSocket();
    if (!socket || current<OsCalls>().control(socket.get(), request, &answer) < 0)
        return std::nullopt;
    return answer;
}

std::string readState(const char* interface)
{
    const auto answer = askInterface(interface, SIOCGIFFLAGS);
    if (!answer)
        return {};
    return answer->ifr_flags & IFF_UP ? "UP" : "DOWN";
}

std::string readGateway(std::string_view interface)
{
    for (const std::string& line : linesOfCommand({"route", "-n"})) {
        const auto words = wordsOf(line);
        if (words.size() == routeColumns && words[routeFlags].find(viaGateway) != std::string::npos &&
            words[routeInterface] == interface)
            return words[routeGateway];
    }
    return {};
}

/// The value of the first BOOTPROTO line, without the quotes that a shell would take off.
std::string readBootProtocol(const std::string& interface)
{
    constexpr std::string_view key = "BOOTPROTO=";
    if (interface.find('/') != std::string::npos)
        return {};
    for (const std::string& line : linesOfFile("/etc/sysconfig/networking/devices/ifcfg-" + interface))
        if (line.starts_with(key)) {
            const auto words = Util::split(line.substr(key.size()), "\"' \t\r");
            return words.empty() ? std::string() : words.front();
        }
    return {};
}

} // namespace

void GetNICInfo(std::vector<_NICINFO>& interfaces)
{
    interfaces.clear();
    for (const std::string& line : linesOfFile("/proc/net/dev")) {
        const std::size_t colon = line.find(':'); // the headings have none
        const std::size_t start = std::min(line.find_first_not_of(' '), line.size());
        if (colon == std::string::npos || colon <= start)
            continue;
        const std::string name = line.substr(start, colon - start);
        if (std::ranges::find(hiddenInterfaces, name) != std::end(hiddenInterfaces))
            continue;
        char mac[macTextBytes];
        GetMacAddress(name.c_str(), mac);
        _NICINFO& nic = interfaces.emplace_back();
        nic.Name = name;
        nic.MacAddress = mac;
        GetDriverInfo(name.c_str(), interfaces.end() - 1);
    }
}

void GetDriverInfo(const char* interface, std::vector<_NICINFO>::iterator nic)
{
    if (!interface)
        return;
    nic->State = readState(interface);
    nic->DefaultGateway = readGateway(interface);
    nic->BootProtocol = readBootProtocol(interface);
    if (!nic->BootProtocol.empty())
        nic->FixedAddress = nic->BootProtocol == "static" ? "YES" : "NO";
}

void GetMacAddress(const char* interface, char* out)
{
    *out = '\0';
    const auto answer = askInterface(interface, SIOCGIFHWADDR);
    if (!answer)
        return;
    unsigned char byte[6];
    std::memcpy(byte, answer->ifr_hwaddr.sa_data, sizeof byte);
    std::snprintf(out, macTextBytes, "%2.2x:%2.2x:%2.2x:%2.2x:%2.2x:%2.2x", byte[0], byte[1], byte[2], byte[3], byte[4],
                  byte[5]);
}
