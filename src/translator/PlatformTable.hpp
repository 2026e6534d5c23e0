#pragma once

#include "translator/OverrideTable.hpp"

/// Overrides that hold for one platform, by its product id.
class PlatformTable {
public:
    void add(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key, override entry);
    const override* findNearest(std::uint16_t platform, std::uint16_t sensor, unsigned offset, unsigned data2,
                                unsigned data3) const;

    // For other callers; the agent itself takes the nearest entry.

    /// Fields of the entry of exactly these keys; PlatformTableError or OverrideTableError without one.
    const std::wstring& findTranslation(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const;
    int findAssertSev(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const;
    int findDeassertSev(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const;
    int findRecommendAction(std::uint16_t platform, std::uint16_t sensor, std::uint32_t key) const;

private:
    const OverrideTable& tableOf(std::uint16_t platform) const;
    std::unordered_map<std::uint16_t, OverrideTable> platforms;
};
