#include "translator/OEMTables.hpp"

#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

#include <algorithm>

using namespace translator;

namespace {

std::wstring joinedHex(std::span<const std::uint8_t> bytes)
{
    std::wstring text;
    for (const std::uint8_t byte : bytes)
        text += hexText(byte, 2, true);
    return text;
}

} // namespace

void OEMTSTable::add(std::uint32_t manufacturer, oemTime record)
{
    records[manufacturer].push_back(std::move(record));
}

const oemTime* OEMTSTable::find(std::uint32_t manufacturer, std::span<const std::uint8_t, oemTimeByteCount> bytes) const
{
    const auto list = records.find(manufacturer);
    if (list == records.end())
        return nullptr;
    const auto found = std::ranges::find_if(list->second, [&](const oemTime& row) { return row.matches(bytes); });
    return found == list->second.end() ? nullptr : &*found;
}

const oemTime& OEMTSTable::findTranslation(std::uint32_t manufacturer,
                                           std::span<const std::uint8_t, oemTimeByteCount> bytes) const
{
    for (const std::uint32_t id : {manufacturer, anyManufacturer})
        if (const oemTime* found = find(id, bytes))
            return *found;
    throw OEMTableError(L"Unable to translate OEM timestamped event with manufacturer ID 0x" +
                        hexText(manufacturer, 6, true) + L" and OEM-defined bytes 0x" + joinedHex(bytes));
}

void OEMNonTSTable::add(oemNonTime record)
{
    records.push_back(std::move(record));
}

const oemNonTime& OEMNonTSTable::findTranslation(std::span<const std::uint8_t, oemNonTimeByteCount> bytes) const
{
    const auto found = std::ranges::find_if(records, [&](const oemNonTime& row) { return row.matches(bytes); });
    if (found != records.end())
        return *found;
    throw OEMTableError(L"Unable to translate OEM non-timestamped event with OEM-defined bytes 0x" + joinedHex(bytes));
}
