#include "modules/bmc/subjects/Sel.hpp"

#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/TimeStamp.hpp"

#include <algorithm>
#include <ctime>
#include <span>
#include <string_view>

// Routing, and the state of the log.

namespace Module::BMCConfig {

namespace {

using Operation = void (Sel::*)(const std::string& query, SymbolMap& result);

struct SelQuery {
    std::string_view query;
    Operation answer;
};

constexpr SelQuery selQueries[] = {
    {"GET://BMC/SEL", &Sel::records},
    {"GET://BMC/SEL/RESERVE", &Sel::reserve},
    {"GET://BMC/SEL/TRANSLATED", &Sel::TranslatedRecords},
    {"GET://BMC/SEL/RECORD", &Sel::record},
    {"GET://BMC/SEL/RECORD[]", &Sel::record},
    {"GET://BMC/SEL/EXTENDED_RECORD", &Sel::record},
    {"GET://BMC/SEL/EXTENDED_RECORD[]", &Sel::record},
    {"GET://BMC/SEL/AFTER_RECORD[]", &Sel::after_record},
    {"GET://BMC/SEL/LAST_RECORD", &Sel::last_record},
};

constexpr std::string_view infoQuery = "GET://BMC/SEL/INFO";

/// Where Get SEL Info (IPMI 2.0, 31.2) has its numbers, behind the completion code.
constexpr std::size_t infoSize = 14, versionAt = 0, entriesAt = 1, freeAt = 3, addedAt = 5, erasedAt = 9,
                      operationsAt = 13;

/// Bits of its last byte.
enum Operations : std::uint8_t {
    ALLOCATION = 0x01,
    RESERVATION = 0x02,
    PARTIAL_ADD = 0x04,
    DELETION = 0x08,
    OVERFLOWED = 0x80
};

using Info = std::span<const std::uint8_t>;

template<std::size_t At, std::size_t Count>
std::string number(Info info)
{
    return std::to_string(ipmi::littleEndian(info.subspan(At, Count)));
}

template<std::size_t At>
std::string time(Info info)
{
    return ipmi::timeStampText(ipmi::littleEndian(info.subspan(At, 4)));
}

template<std::uint8_t Bit>
std::string flag(Info info)
{
    return info[operationsAt] & Bit ? "TRUE" : "FALSE";
}

/// 51h is "1.5": the digit after the point stands in the upper half.
std::string version(Info info)
{
    const unsigned byte = info[versionAt];
    return std::to_string(byte & 0x0F) + "." + std::to_string(byte >> 4);
}

struct InfoRow {
    std::string_view name;
    std::string (*text)(Info info);
};

constexpr InfoRow infoRows[] = {
    {"VERSION", version},
    {"NUM_LOGENTRIES", number<entriesAt, 2>},
    {"FREE_SPACE", number<freeAt, 2>},
    {"RECENT_ADDITION_TIME", time<addedAt>},
    {"RECENT_ADDITION_TIME_RAW", number<addedAt, 4>},
    {"RECENT_ERASE_TIME", time<erasedAt>},
    {"RECENT_ERASE_TIME_RAW", number<erasedAt, 4>},
    {"OVERFLOW", flag<OVERFLOWED>},
    {"DELETE_SUPPORT", flag<DELETION>},
    {"PARTIALADD_SUPPORT", flag<PARTIAL_ADD>},
    {"RESERVE_SUPPORT", flag<RESERVATION>},
    {"ALLOCINFO_SUPPORT", flag<ALLOCATION>},
};

/// The row that `plain` asks for, null if it asks for none.
const InfoRow* infoRow(std::string_view plain)
{
    for (const InfoRow& row : infoRows)
        if (plain == std::string(infoQuery) + "/" + std::string(row.name))
            return &row;
    return nullptr;
}

struct LanguageRow {
    int id;
    const char* name;
};

constexpr LanguageRow languageRows[] = {
    {1028, "CHI"}, {1031, "DEU"}, {1034, "ESN"}, {1036, "FRA"}, {1040, "ITA"},
    {1041, "JPN"}, {1042, "KOR"}, {1046, "PTB"}, {1049, "RUS"}, {2052, "CHS"},
};

} // namespace

Sel::Sel(Interpreter* interpreter_, _BMC_EXEC exec_)
    : interpreter(interpreter_), exec(exec_), translation(&SelTranslation::instance())
{
}

void Sel::process(const std::string& query, SymbolMap& result)
{
    handle(query, result);
}

void Sel::router(const std::string& query, SymbolMap& result)
{
    interpreter->extract_and_inject(query);
    process(query, result);
}

void Sel::handle(const std::string& query, SymbolMap& result)
{
    const std::string plain = Interpreter::handleIndexes(query);
    const auto found = std::ranges::find(selQueries, plain, &SelQuery::query);
    if (found != std::end(selQueries))
        return (this->*found->answer)(query, result);
    if (plain == infoQuery || infoRow(plain))
        return info(query, result);
    run(query, result);
}

void Sel::run(const std::string& query, SymbolMap& result)
{
    interpreter->run(result, query);
}

void Sel::info(const std::string& query, SymbolMap& result)
{
    SymbolMap local;
    run(std::string(infoQuery), local);
    const std::vector<std::uint8_t> bytes = ipmi::parseBytes(local[std::string(infoQuery)].text());
    if (bytes.size() < infoSize)
        throwError(ERROR_BMC_INTERFACE_ERROR, query, COMMAND_GET);
    if (const InfoRow* row = infoRow(Interpreter::handleIndexes(query))) {
        result[query] = row->text(bytes);
        return;
    }
    Symbol names(NODE_NONLEAF, {});
    for (const InfoRow& row : infoRows) {
        names.values.emplace_back(row.name);
        result[query + "/" + std::string(row.name)] = row.text(bytes);
    }
    result[query] = interpreter->prepend(query, names);
}

void Sel::DecodeTimeStamp(std::uint32_t seconds, std::string& out)
{
    out = ipmi::timeStampText(seconds);
}

void Sel::GetLanguageStringFromLangId(int langId, std::string& out)
{
    const auto row = std::ranges::find(languageRows, langId, &LanguageRow::id);
    out = row == std::end(languageRows) ? "ENU" : row->name;
}

} // namespace Module::BMCConfig
