#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace translator {

/// In a key "any value", in a severity or action "none given".
constexpr std::uint8_t anyByte = 0xFF;

/// The key of an event: offset, event data 2, event data 3 and a spare byte of FFh, from the high byte down.
constexpr std::uint32_t packEventKey(unsigned offset, unsigned data2, unsigned data3)
{
    return (offset & 0xFFu) << 24 | (data2 & 0xFFu) << 16 | (data3 & 0xFFu) << 8 | anyByte;
}

} // namespace translator

/// What a translation file says of one event: numbers into its severities and recommended actions, and the text.
struct event {
    std::uint8_t assertSeverity = translator::anyByte;
    std::uint8_t deassertSeverity = translator::anyByte;
    std::uint8_t recommendAction = translator::anyByte;
    std::wstring translation;
};

namespace translator {

/// Events by a type of at most 32 bits and their key. The lookup behind all event tables. Read-only once loaded.
class EventIndex {
public:
    void add(std::uint32_t type, std::uint32_t key, event entry);
    /// The entry of exactly this key; null without one or with an empty translation.
    const event* find(std::uint32_t type, std::uint32_t key) const;
    /// The entry for the event data at hand: the exact bytes first, then either byte as any, then both.
    const event* findNearest(std::uint32_t type, unsigned offset, unsigned data2, unsigned data3) const;

private:
    std::unordered_map<std::uint64_t, event> entries;
};

} // namespace translator

/// Events by event type (generic) or sensor type (sensor-specific).
class EventTable {
public:
    void add(std::uint32_t type, std::uint32_t key, event entry) { index.add(type, key, std::move(entry)); }
    const event* findNearest(std::uint32_t type, unsigned offset, unsigned data2, unsigned data3) const
    {
        return index.findNearest(type, offset, data2, data3);
    }

    /// The entry of type FFh and offset FFh, which stands for every event that has none of its own; null without one.
    const event* findAny() const
    {
        return index.find(translator::anyByte,
                          translator::packEventKey(translator::anyByte, translator::anyByte, translator::anyByte));
    }

    // For other callers; the agent itself takes the nearest entry.

    /// Fields of the entry of exactly this key; EventTableError without one.
    const std::wstring& findTranslation(std::uint32_t type, std::uint32_t key) const;
    int findAssertSev(std::uint32_t type, std::uint32_t key) const;
    int findDeassertSev(std::uint32_t type, std::uint32_t key) const;
    int findRecommendAction(std::uint32_t type, std::uint32_t key) const;

private:
    const event& entryOf(std::uint32_t type, std::uint32_t key) const;
    translator::EventIndex index;
};
