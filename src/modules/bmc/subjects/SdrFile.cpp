#include "modules/bmc/subjects/SdrFile.hpp"

#include "common/Report.hpp"
#include "common/StateFile.hpp"
#include "common/Util.hpp"

#include <algorithm>
#include <string_view>

namespace Module::BMCConfig {

namespace {

constexpr char folder[] = "/var/cache/hwagent";
constexpr char file[] = "repository";
/// Another number for another form of what follows.
constexpr char firstLine[] = "sensor data records 1";
constexpr std::size_t headLines = 3;
constexpr std::string_view characters = "0123456789ABCDEF ";

std::vector<std::string> headOf(const std::string& identity, const std::string& mark)
{
    return {firstLine, identity, mark};
}

bool isRecord(const std::string& line)
{
    return line.starts_with(' ') && line.find_first_not_of(characters) == std::string::npos;
}

} // namespace

std::optional<SdrTexts> loadRepository(const std::string& identity, const std::string& mark)
{
    const std::optional<std::string> text = common::readStateFile(file, folder);
    if (!text)
        return std::nullopt;
    std::vector<std::string> lines = Util::split(*text, "\n");
    const std::vector<std::string> head = headOf(identity, mark);
    if (lines.size() <= headLines || !std::equal(head.begin(), head.end(), lines.begin()))
        return std::nullopt;
    lines.erase(lines.begin(), lines.begin() + headLines);
    if (!std::ranges::all_of(lines, isRecord))
        return std::nullopt;
    return lines;
}

void saveRepository(const std::string& identity, const std::string& mark, const SdrTexts& records)
{
    const std::string text = Util::join(headOf(identity, mark), "\n") + "\n" + Util::join(records, "\n");
    if (!common::writeStateFile(file, text, folder))
        common::reportLimited(common::Gravity::notice, "repository file",
                              std::string("no copy of the BMC's sensor data records could be left in ") + folder);
}

} // namespace Module::BMCConfig
