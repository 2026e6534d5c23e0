#include "translator/TranslationTables.hpp"

#include <algorithm>
#include <array>
#include <optional>

namespace translator {

namespace {

constexpr std::size_t longestLine = 1000;
constexpr std::uint32_t lastSection = 15;
constexpr std::wstring_view blanks = L" \t\r";
constexpr std::uint32_t largestNumber = 0x7FFFFFFF;

bool isBlank(std::wstring_view text)
{
    return text.find_first_not_of(blanks) == text.npos;
}

std::wstring_view trimmed(std::wstring_view text)
{
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

unsigned digitValue(wchar_t digit)
{
    if (digit >= L'0' && digit <= L'9')
        return static_cast<unsigned>(digit - L'0');
    if (digit >= L'a' && digit <= L'f')
        return static_cast<unsigned>(digit - L'a' + 10);
    if (digit >= L'A' && digit <= L'F')
        return static_cast<unsigned>(digit - L'A' + 10);
    return 16;
}

/// Takes a number off the front of `text`, leading blanks too. What is too large stays at the largest number.
std::optional<std::uint32_t> takeNumber(std::wstring_view& text, unsigned base)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    std::uint64_t value = 0;
    std::size_t digits = 0;
    for (; digits < text.size() && digitValue(text[digits]) < base; ++digits)
        value = std::min<std::uint64_t>(value * base + digitValue(text[digits]), largestNumber);
    text.remove_prefix(digits);
    return digits == 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(value));
}

/// The lines of a section; those that are too long are passed over.
class Lines {
public:
    explicit Lines(std::wstring_view section) : rest(section) {}

    std::optional<std::wstring_view> next()
    {
        while (!rest.empty()) {
            const std::size_t end = rest.find(L'\n');
            const std::wstring_view line = rest.substr(0, end);
            rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
            if (line.size() <= longestLine)
                return line;
        }
        return std::nullopt;
    }

private:
    std::wstring_view rest;
};

/// Takes one tab-separated hexadecimal field off `line`, FFh for an empty one; nothing if it holds something else.
std::optional<std::uint32_t> takeField(std::wstring_view& line)
{
    const std::size_t tab = std::min(line.find(L'\t'), line.size());
    std::wstring_view field = trimmed(line.substr(0, tab));
    line.remove_prefix(std::min(tab + 1, line.size()));
    if (field.empty())
        return anyByte;
    const auto value = takeNumber(field, 16);
    return field.empty() ? value : std::nullopt;
}

template<std::size_t Count>
std::optional<std::array<std::uint32_t, Count>> takeFields(std::wstring_view& line)
{
    std::array<std::uint32_t, Count> values{};
    for (std::uint32_t& value : values) {
        const auto field = takeField(line);
        if (!field)
            return std::nullopt;
        value = *field;
    }
    return values;
}

/// The text between the double quotes that begin at the front of `line`.
std::optional<std::wstring_view> quotedText(std::wstring_view line)
{
    line = trimmed(line);
    const std::size_t end = line.find(L'"', 1);
    if (line.empty() || line.front() != L'"' || end == line.npos)
        return std::nullopt;
    return line.substr(1, end - 1);
}

bool addMetaInfo(MetaInfoTable& table, std::wstring_view line)
{
    const auto id = takeNumber(line, 16);
    const auto text = quotedText(line);
    if (!id || !text)
        return false;
    table.add(static_cast<int>(*id), std::wstring(*text));
    return true;
}

/// A model stands behind its name: "Name:28", then the text.
bool addModel(MetaInfoTable& table, std::wstring_view line)
{
    const std::size_t colon = line.find(L':');
    return colon != line.npos && addMetaInfo(table, line.substr(colon + 1));
}

template<class Add>
void parseEntries(std::wstring_view section, std::uint32_t count, Add addLine)
{
    Lines lines(section);
    for (std::uint32_t added = 0; added < count;) {
        const auto line = lines.next();
        if (!line)
            return;
        added += addLine(*line) ? 1 : 0;
    }
}

void parseMetaInfoTable(MetaInfoTable& table, std::wstring_view section, std::uint32_t count)
{
    parseEntries(section, count, [&](std::wstring_view line) { return addMetaInfo(table, line); });
}

void parseModels(MetaInfoTable& table, std::wstring_view section, std::uint32_t count)
{
    parseEntries(section, count, [&](std::wstring_view line) { return addModel(table, line); });
}

struct KeyedEvent {
    std::uint32_t key = 0;
    event entry;
};

/// An event's line: offset, event data 2 and 3, severity of assertion and deassertion, action, text.
std::optional<KeyedEvent> takeEvent(std::wstring_view line, bool keyedByData3)
{
    const auto fields = takeFields<6>(line);
    const auto text = quotedText(line);
    if (!fields || !text || std::ranges::any_of(*fields, [](std::uint32_t field) { return field > anyByte; }))
        return std::nullopt;
    const auto& [offset, data2, data3, assertSeverity, deassertSeverity, action] = *fields;
    return KeyedEvent{.key = packEventKey(offset, data2, keyedByData3 ? data3 : anyByte),
                      .entry = {.assertSeverity = static_cast<std::uint8_t>(assertSeverity),
                                .deassertSeverity = static_cast<std::uint8_t>(deassertSeverity),
                                .recommendAction = static_cast<std::uint8_t>(action),
                                .translation = std::wstring(*text)}};
}

/// A group's heading behind '&': one number for each level of the table's key, then 1 if event data 3 is part of the
/// key; what follows is a remark.
template<std::size_t Levels>
struct GroupHead {
    std::array<std::uint32_t, Levels> ids{};
    bool keyedByData3 = false;
};

template<std::size_t Levels>
std::optional<GroupHead<Levels>> takeGroupHead(std::wstring_view line)
{
    line.remove_prefix(1);
    const auto ids = takeFields<Levels>(line);
    if (!ids || std::ranges::any_of(*ids, [](std::uint32_t id) { return id > 0xFFFF; }))
        return std::nullopt;
    return GroupHead<Levels>{*ids, takeField(line) == 1u};
}

/// Groups of event lines; an empty line ends a group. `add` gets the heading's numbers, the key and the event.
template<std::size_t Levels, class Add>
void parseGroups(std::wstring_view section, std::uint32_t count, Add add)
{
    std::optional<GroupHead<Levels>> head;
    std::uint32_t groups = 0;
    Lines lines(section);
    while (const auto line = lines.next()) {
        if (line->starts_with(L'&') && ++groups > count)
            return;
        if (line->starts_with(L'&'))
            head = takeGroupHead<Levels>(*line);
        else if (isBlank(*line))
            head.reset();
        else if (auto found = head ? takeEvent(*line, head->keyedByData3) : std::nullopt)
            add(head->ids, found->key, std::move(found->entry));
    }
}

void parseEvents(EventTable& table, std::wstring_view section, std::uint32_t count)
{
    parseGroups<1>(section, count, [&](const auto& ids, std::uint32_t key, event&& entry) {
        table.add(ids[0], key, std::move(entry));
    });
}

void parseOverrides(OverrideTable& table, std::wstring_view section, std::uint32_t count)
{
    parseGroups<1>(section, count, [&](const auto& ids, std::uint32_t key, event&& entry) {
        table.add(static_cast<std::uint16_t>(ids[0]), key, std::move(entry));
    });
}

void parsePlatformOverrides(PlatformTable& table, std::wstring_view section, std::uint32_t count)
{
    parseGroups<2>(section, count, [&](const auto& ids, std::uint32_t key, event&& entry) {
        table.add(static_cast<std::uint16_t>(ids[0]), static_cast<std::uint16_t>(ids[1]), key, std::move(entry));
    });
}

/// An OEM line's tail: its bytes, the action, the text.
template<std::size_t Count>
std::optional<OemRecord<Count>> takeOemRecord(std::wstring_view line)
{
    const auto fields = takeFields<Count + 1>(line);
    const auto text = quotedText(line);
    if (!fields || !text || std::ranges::any_of(*fields, [](std::uint32_t field) { return field > anyByte; }))
        return std::nullopt;
    OemRecord<Count> record;
    std::ranges::transform(fields->begin(), fields->begin() + Count, record.bytes.begin(),
                           [](std::uint32_t field) { return static_cast<std::uint8_t>(field); });
    record.recommendAction = static_cast<std::uint8_t>(fields->back());
    record.translation = *text;
    return record;
}

void parseOemTimestamped(OEMTSTable& table, std::wstring_view section, std::uint32_t count)
{
    parseEntries(section, count, [&](std::wstring_view line) {
        const auto manufacturer = takeField(line);
        const auto record = takeOemRecord<oemTimeByteCount>(line);
        if (manufacturer && record)
            table.add(*manufacturer, *record);
        return manufacturer && record;
    });
}

void parseOemNonTimestamped(OEMNonTSTable& table, std::wstring_view section, std::uint32_t count)
{
    parseEntries(section, count, [&](std::wstring_view line) {
        const auto record = takeOemRecord<oemNonTimeByteCount>(line);
        if (record)
            table.add(*record);
        return record.has_value();
    });
}

using ParseSection = void (*)(TranslationTables&, std::wstring_view section, std::uint32_t count);

template<auto Table, auto Parse>
constexpr ParseSection into = [](TranslationTables& tables, std::wstring_view section, std::uint32_t count) {
    Parse(tables.*Table, section, count);
};

using Tables = TranslationTables;
constexpr std::array<ParseSection, lastSection + 1> sectionParsers{
    into<&Tables::models, parseModels>,
    into<&Tables::devices, parseMetaInfoTable>,
    into<&Tables::secondDevices, parseMetaInfoTable>,
    into<&Tables::severities, parseMetaInfoTable>,
    into<&Tables::sensorTypes, parseMetaInfoTable>,
    into<&Tables::sensorUnits, parseMetaInfoTable>,
    into<&Tables::entityIds, parseMetaInfoTable>,
    into<&Tables::productIds, parseMetaInfoTable>,
    into<&Tables::genericEvents, parseEvents>,
    into<&Tables::specificEvents, parseEvents>,
    into<&Tables::oemTimestamped, parseOemTimestamped>,
    into<&Tables::oemNonTimestamped, parseOemNonTimestamped>,
    into<&Tables::overrides, parseOverrides>,
    into<&Tables::platformOverrides, parsePlatformOverrides>,
    into<&Tables::recommendedActions, parseMetaInfoTable>,
    into<&Tables::miscStrings, parseMetaInfoTable>,
};

void parseSection(TranslationTables& tables, std::uint32_t number, std::wstring_view section)
{
    const auto count = takeNumber(section, 10);
    const std::size_t heading = section.find(L'&');
    const std::size_t lineEnd = heading == section.npos ? heading : section.find(L'\n', heading);
    if (count && lineEnd != section.npos)
        sectionParsers[number](tables, section.substr(lineEnd + 1), *count);
}

} // namespace

TranslationTables parseTranslations(std::wstring_view text)
{
    TranslationTables tables;
    for (std::size_t dollar = text.find(L'$'); dollar != text.npos; dollar = text.find(L'$')) {
        text.remove_prefix(dollar + 1);
        const auto number = takeNumber(text, 10);
        if (!number)
            continue;
        if (*number > lastSection)
            break;
        const std::size_t end = std::min(text.find(L'^'), text.size());
        parseSection(tables, *number, text.substr(0, end));
        text.remove_prefix(end);
    }
    return tables;
}

} // namespace translator
