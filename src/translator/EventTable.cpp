#include "translator/EventTable.hpp"

#include "translator/TranslationErrors.hpp"

using namespace translator;

namespace {
constexpr std::uint64_t indexKey(std::uint32_t type, std::uint32_t key)
{
    return std::uint64_t{type} << 32 | key;
}
} // namespace

void translator::EventIndex::add(std::uint32_t type, std::uint32_t key, event entry)
{
    entries.insert_or_assign(indexKey(type, key), std::move(entry));
}

const event* translator::EventIndex::find(std::uint32_t type, std::uint32_t key) const
{
    const auto found = entries.find(indexKey(type, key));
    return found == entries.end() || found->second.translation.empty() ? nullptr : &found->second;
}

const event* translator::EventIndex::findNearest(std::uint32_t type, unsigned offset, unsigned data2,
                                                 unsigned data3) const
{
    if (entries.empty())
        return nullptr;
    for (const auto& [second, third] :
         {std::pair{data2, data3}, {data2, unsigned{anyByte}}, {unsigned{anyByte}, data3}, {anyByte, anyByte}}) {
        if (const event* entry = find(type, packEventKey(offset, second, third)))
            return entry;
    }
    return nullptr;
}

const event& EventTable::entryOf(std::uint32_t type, std::uint32_t key) const
{
    if (const event* entry = index.find(type, key))
        return *entry;
    throw EventTableError(L"Event not found");
}

const std::wstring& EventTable::findTranslation(std::uint32_t type, std::uint32_t key) const
{
    return entryOf(type, key).translation;
}

int EventTable::findAssertSev(std::uint32_t type, std::uint32_t key) const
{
    return entryOf(type, key).assertSeverity;
}

int EventTable::findDeassertSev(std::uint32_t type, std::uint32_t key) const
{
    return entryOf(type, key).deassertSeverity;
}

int EventTable::findRecommendAction(std::uint32_t type, std::uint32_t key) const
{
    return entryOf(type, key).recommendAction;
}
