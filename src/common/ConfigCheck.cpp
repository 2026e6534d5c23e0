#include "common/ConfigCheck.hpp"

#include "common/ConfigFile.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <map>
#include <string_view>

namespace common {

namespace {

enum class Takes { text, number, figure, nothing };

struct Key {
    std::string_view name;
    Takes takes;
};

constexpr Key keys[] = {
    {"platformdescription", Takes::text}, {"platformid", Takes::number},    {"manufacturer", Takes::text},
    {"productname", Takes::text},         {"productversion", Takes::text},  {"productbuildnumber", Takes::text},
    {"productdescription", Takes::text},  {"trapsenabled", Takes::number},  {"locale", Takes::text},
    {"setsenabled", Takes::nothing},      {"debugenabled", Takes::number},  {"practical", Takes::number},
    {"exchangebudget", Takes::figure},    {"refreshperiod", Takes::figure}, {"trapburst", Takes::figure},
    {"trapspersecond", Takes::figure},    {"trapqueue", Takes::figure},
};

constexpr std::size_t longestText = 511;
constexpr long greatestFigure = 1'000'000;

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

/// What strtol makes of the value, where that is all there is to it.
bool isNumber(const std::string& value, long& number)
{
    char* end = nullptr;
    errno = 0;
    number = std::strtol(value.c_str(), &end, 10);
    return end != value.c_str() && errno == 0 && std::string_view(end).find_first_not_of(" \t\r") == std::string::npos;
}

/// What is odd about the value of a key; empty if nothing is.
std::string remarkOn(const Key& key, const ConfigEntry& entry)
{
    using Limits = std::numeric_limits<int>;
    const std::string said = entry.key + " = " + quoted(entry.value);
    long number = 0;
    const bool isWhole = isNumber(entry.value, number);
    switch (key.takes) {
    case Takes::text:
        return entry.value.size() > longestText ? entry.key + ": cut to 511 characters" : "";
    case Takes::figure:
        return isWhole && number >= 1 && number <= greatestFigure
                   ? ""
                   : said + ": takes a whole number from 1 to 1000000, ignored";
    case Takes::number:
        return isWhole && number >= Limits::min() && number <= Limits::max() ? "" : said + ": takes a number";
    case Takes::nothing:
        return number != 0 ? entry.key + " has no effect: the agent only reads" : "";
    }
    return {};
}

} // namespace

std::vector<ConfigRemark> checkConfigFile(const std::string& path)
{
    std::vector<ConfigRemark> remarks;
    std::map<std::string, int> seen;
    const auto check = [&](const ConfigEntry& entry) {
        const auto* const key = std::ranges::find(keys, entry.key, &Key::name);
        if (key == std::end(keys)) {
            remarks.push_back({entry.line, "unknown key " + quoted(entry.key)});
            return;
        }
        if (std::string remark = remarkOn(*key, entry); !remark.empty())
            remarks.push_back({entry.line, std::move(remark)});
        int& before = seen[entry.key];
        if (before != 0)
            remarks.push_back({entry.line, entry.key + " again, in the place of line " + std::to_string(before)});
        before = entry.line;
    };
    readConfigFile(path, check, [&](int line, const char* why) { remarks.push_back({line, why}); });
    return remarks;
}

} // namespace common
