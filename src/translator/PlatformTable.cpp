#include "translator/PlatformTable.hpp"

#include "translator/TranslationErrors.hpp"

using namespace translator;

void PlatformTable::add(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key, override entry)
{
    platforms[platform].add(sensor, key, std::move(entry));
}

const OverrideTable& PlatformTable::tableOf(std::uint16_t platform) const
{
    const auto found = platforms.find(platform);
    if (found == platforms.end())
        throw PlatformTableError(L"Platform not found");
    return found->second;
}

const std::wstring& PlatformTable::findTranslation(std::uint16_t platform, std::uint16_t sensor,
                                                   std::uint32_t key) const
{
    return tableOf(platform).findTranslation(sensor, key);
}

int PlatformTable::findAssertSev(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const
{
    return tableOf(platform).findAssertSev(sensor, key);
}

int PlatformTable::findDeassertSev(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const
{
    return tableOf(platform).findDeassertSev(sensor, key);
}

int PlatformTable::findRecommendAction(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const
{
    return tableOf(platform).findRecommendAction(sensor, key);
}

const override* PlatformTable::findNearest(std::uint16_t platform, std::uint16_t sensor, unsigned offset,
                                           unsigned data2, unsigned data3) const
{
    const auto found = platforms.find(platform);
    return found == platforms.end() ? nullptr : found->second.findNearest(sensor, offset, data2, data3);
}
