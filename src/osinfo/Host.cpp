#include "common/Descriptor.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "osinfo/Listing.hpp"
#include "osinfo/OsCalls.hpp"
#include "osinfo/OsInfo.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sys/utsname.h>

namespace {

using namespace osinfo;

constexpr std::size_t hostNameBytes = 255;

struct ReleaseFile {
    const char* path;
    const char* mark; ///< what its first line holds if it is of that distribution
};

constexpr ReleaseFile releaseFiles[] = {{"/etc/redhat-release", "Red Hat"}, {"/etc/SuSE-release", "SUSE"}};

struct MemoryLine {
    const char* label;
    std::string _MEMINFO::*field;
};

constexpr MemoryLine memoryLines[] = {
    {"MemTotal:", &_MEMINFO::TotalPhysical},    {"MemFree:", &_MEMINFO::FreePhysical},
    {"SwapTotal:", &_MEMINFO::TotalSwap},       {"SwapFree:", &_MEMINFO::FreeSwap},
    {"VmallocTotal:", &_MEMINFO::TotalVirtual},
};

constexpr const char* usedVirtualLabel = "VmallocUsed:";

std::string formatNumber(unsigned long long number)
{
    char text[24];
    std::snprintf(text, sizeof text, "%llu", number);
    return text;
}

std::string freeVirtual(const std::string& total, const std::string& used)
{
    const auto totalKib = parseNumber(total), usedKib = parseNumber(used);
    if (!totalKib || !usedKib)
        return {};
    return formatNumber(*totalKib - std::min(*totalKib, *usedKib));
}

} // namespace

void GetOSInfo(_OSINFO& info)
{
    info = {};
    char name[hostNameBytes] = {};
    if (current<OsCalls>().hostName(name, sizeof name - 1) == 0)
        info.HostName = name;
    if (info.HostName.empty())
        info.HostName = "(none)";
    utsname kernel{};
    if (current<OsCalls>().kernelNames(kernel) != 0)
        return;
    info.NodeName = kernel.nodename;
    info.Release = kernel.release;
    info.Version = kernel.version;
    info.Machine = kernel.machine;
    info.SystemName = kernel.sysname;
}

void GetOSDisplayString(std::string& display)
{
    display.clear();
    for (const ReleaseFile& file : releaseFiles) {
        const auto lines = linesOfFile(file.path);
        if (lines.empty() || lines.front().find(file.mark) == std::string::npos)
            continue;
        display = lines.front();
        return;
    }
}

void GetMemInfo(_MEMINFO& info)
{
    info = {};
    std::string usedVirtual;
    for (const std::string& line : linesOfFile("/proc/meminfo")) {
        const auto words = wordsOf(line);
        if (words.size() < 2 || !parseNumber(words[1]))
            continue;
        const auto* const known = std::ranges::find(memoryLines, words[0], &MemoryLine::label);
        if (known != std::end(memoryLines))
            info.*known->field = words[1];
        else if (words[0] == usedVirtualLabel)
            usedVirtual = words[1];
    }
    info.FreeVirtual = freeVirtual(info.TotalVirtual, usedVirtual);
}

void split(std::string_view text, std::string_view separators, std::vector<std::string>& words)
{
    words = Util::split(text, separators);
}

bool DoesFileExist(const char* path)
{
    return path && common::openToRead(systemPath(path));
}

bool GetEnvVariable(const char* name, char* out, int size)
{
    const char* const value = name ? std::getenv(name) : nullptr;
    if (value && out && size > 0)
        std::snprintf(out, static_cast<std::size_t>(size), "%s", value);
    return value != nullptr;
}
