#include "translator/OverrideTable.hpp"

#include "translator/TranslationErrors.hpp"

using namespace translator;

const override& OverrideTable::entryOf(std::uint16_t sensor, std::uint32_t key) const
{
    if (const override* entry = index.find(sensor, key))
        return *entry;
    throw OverrideTableError(L"Override not found");
}

const std::wstring& OverrideTable::findTranslation(std::uint16_t sensor, std::uint32_t key) const
{
    return entryOf(sensor, key).translation;
}

int OverrideTable::findAssertSev(std::uint16_t sensor, std::uint32_t key) const
{
    return entryOf(sensor, key).assertSeverity;
}

int OverrideTable::findDeassertSev(std::uint16_t sensor, std::uint32_t key) const
{
    return entryOf(sensor, key).deassertSeverity;
}

int OverrideTable::findRecommendAction(std::uint16_t sensor, std::uint32_t key) const
{
    return entryOf(sensor, key).recommendAction;
}
