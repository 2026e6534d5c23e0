#include "tools/hwquery/Daemon.hpp"

#include "common/LineServer.hpp"
#include "common/Paths.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <sys/time.h>

namespace hwquery {

namespace {

constexpr char pidFile[] = "/var/run/hwagentd.pid";
constexpr timeval patience{6, 0};
constexpr std::size_t mostBytes = 1U << 20;

std::string firstLineOf(const std::string& path)
{
    const std::string text = common::readSmallText(systemPath(path), 4096);
    return text.substr(0, text.find('\n'));
}

/// The daemon by the process id that it left, if that process still is one. A dead one may have its name as long as
/// nobody has asked how it ended.
std::string runningProcess()
{
    const std::string process = firstLineOf(pidFile);
    const bool isNumber = !process.empty() && process.find_first_not_of("0123456789") == std::string::npos;
    const std::string state = isNumber ? firstLineOf("/proc/" + process + "/stat") : "";
    return state.starts_with(process + " (hwAgent) ") && state.find(") Z ") == std::string::npos ? process : "";
}

DaemonAnswer withoutAnswer(int error)
{
    if (error == EACCES || error == EPERM)
        return {DaemonAnswer::forbidden, {}, {}};
    const std::string process = runningProcess();
    return {process.empty() ? DaemonAnswer::notRunning : DaemonAnswer::withoutSocket, process, {}};
}

std::string exchange(const common::Descriptor& connection, const std::string& request)
{
    setsockopt(connection.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const std::string line = request + "\n";
    std::string text;
    if (send(connection.get(), line.data(), line.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(line.size()))
        return text;
    char part[4096];
    ssize_t got = 0;
    while (text.size() < mostBytes && (got = recv(connection.get(), part, sizeof part, 0)) > 0)
        text.append(part, static_cast<std::size_t>(got));
    return text.ends_with(common::endOfAnswer) ? text : std::string();
}

} // namespace

std::string DaemonAnswer::at(const std::string& key) const
{
    const auto found = std::ranges::find(lines, key, &std::pair<std::string, std::string>::first);
    return found == lines.end() ? std::string() : found->second;
}

bool DaemonAnswer::has(const std::string& key) const
{
    return std::ranges::find(lines, key, &std::pair<std::string, std::string>::first) != lines.end();
}

DaemonAnswer askDaemon(const std::string& request)
{
    const common::Descriptor connection = common::connectTo(common::statusFolder, common::statusSocket);
    if (!connection)
        return withoutAnswer(errno);
    DaemonAnswer answer{DaemonAnswer::answered, {}, {}};
    for (const std::string& line : Util::split(exchange(connection, request), "\n"))
        if (const std::size_t sign = line.find(" = "); sign != std::string::npos)
            answer.lines.emplace_back(line.substr(0, sign), line.substr(sign + 3));
    if (answer.lines.empty())
        return withoutAnswer(ETIMEDOUT);
    return answer;
}

} // namespace hwquery
