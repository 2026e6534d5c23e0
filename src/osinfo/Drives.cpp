#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "osinfo/Listing.hpp"
#include "osinfo/OsCalls.hpp"
#include "osinfo/OsInfo.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

using namespace osinfo;

using Words = std::vector<std::string>;

/// Columns of `df -k`, counted from the size, since the name before them may hold blanks.
enum DfColumn : std::size_t { dfSize = 0, dfUsed = 1, dfFree = 2, dfUse = 3, dfMountPoint = 4 };

bool isFigure(const std::string& word)
{
    return word == "-" || parseNumber(word);
}

bool isShare(const std::string& word)
{
    return word == "-" || word.ends_with('%');
}

/// Where the figures begin; the count of words if the line is no line of figures.
std::size_t findFigures(const Words& words)
{
    for (std::size_t at = 1; at + dfUse < words.size(); ++at)
        if (isFigure(words[at + dfSize]) && isFigure(words[at + dfUsed]) && isFigure(words[at + dfFree]) &&
            isShare(words[at + dfUse]))
            return at;
    return words.size();
}

std::string joinFrom(const Words& words, std::size_t from, std::size_t to)
{
    return from < to ? Util::join(std::span(words).subspan(from, to - from), " ") : std::string();
}

std::string numberOrBlank(const std::string& word)
{
    return parseNumber(word) ? std::to_string(std::strtoll(word.c_str(), nullptr, 10)) : std::string();
}

std::string usedPercent(const std::string& size, const std::string& free)
{
    const double whole = std::strtod(size.c_str(), nullptr);
    if (size.empty() || free.empty() || whole <= 0)
        return {};
    char text[32];
    std::snprintf(text, sizeof text, "%02f", (whole - std::strtod(free.c_str(), nullptr)) * 100 / whole);
    return text;
}

struct SizeUnit {
    std::string_view unit;
    std::string_view shown;
    double factor;
    const char* format;
};

constexpr double perThousand = 0.0009765625; ///< 1/1024
constexpr SizeUnit sizeUnits[] = {
    {"GB", "GB", 1, "%.1f"},   {"GiB", "GiB", 1, "%.1f"},       {"TB", "TB", 1, "%.1f"},
    {"TiB", "TiB", 1, "%.1f"}, {"MB", "GB", perThousand, "%f"}, {"MiB", "GiB", perThousand, "%f"},
};

/// Fills the size from a text such as "931.5 GiB"; a unit that is not known leaves it blank.
void takeSize(const std::string& text, _PHYSICALDRIVEINFO& info)
{
    const auto words = wordsOf(text);
    if (words.size() != 2)
        return;
    const auto* const unit = std::ranges::find(sizeUnits, words[1], &SizeUnit::unit);
    char* end = nullptr;
    const double value = std::strtod(words[0].c_str(), &end);
    if (unit == std::end(sizeUnits) || *end != '\0')
        return;
    char shown[400]; // room for the greatest double
    std::snprintf(shown, sizeof shown, unit->format, value * unit->factor);
    info.Size = shown;
    info.SizeUnit = unit->shown;
}

/// The drive that a line such as "Disk /dev/sda: 931.5 GiB, 1000204886016 bytes, 1953525168 sectors" names.
std::optional<_PHYSICALDRIVEINFO> parseDiskLine(const std::string& line)
{
    constexpr std::string_view start = "Disk ";
    const std::size_t colon = line.find(':');
    if (!line.starts_with("Disk /") || line.find("bytes") == std::string::npos || colon == std::string::npos)
        return std::nullopt;
    _PHYSICALDRIVEINFO info;
    info.Name = line.substr(start.size(), colon - start.size());
    takeSize(line.substr(colon + 1, line.find(',', colon) - colon - 1), info);
    return info;
}

} // namespace

void GetDriveData(std::vector<_DRIVEINFO>& drives)
{
    drives.clear();
    for (const std::string& line : linesOfCommand({"df", "-k"})) {
        const Words words = wordsOf(line);
        const std::size_t figures = findFigures(words);
        if (figures == words.size() || line.find("Filesystem") == 0)
            continue;
        _DRIVEINFO drive;
        drive.Name = joinFrom(words, 0, figures);
        drive.MountPoint = joinFrom(words, figures + dfMountPoint, words.size());
        drive.Size = numberOrBlank(words[figures + dfSize]);
        drive.Free = numberOrBlank(words[figures + dfFree]);
        drive.UsedPercent = usedPercent(drive.Size, drive.Free);
        drives.push_back(drive);
    }
}

void GetPhysicalDriveData(std::vector<_PHYSICALDRIVEINFO>& drives)
{
    drives.clear();
    for (const std::string& line : linesOfCommand({"fdisk", "-l"}))
        if (auto drive = parseDiskLine(line)) {
            GetPhysicalDriveInfo(drive->Name.c_str(), *drive);
            drives.push_back(*drive);
        }
}

void GetPhysicalDriveInfo(const char* device, _PHYSICALDRIVEINFO& info)
{
    if (!device)
        return;
    if (const auto drive = current<OsCalls>().openDevice(systemPath(device).c_str()))
        GetPhysicalDriveInfo_SGIO(drive.get(), info);
}

void GetPartitionType(_PARTITIONTYPE& type)
{
    type = PARTITION_ANY;
}
