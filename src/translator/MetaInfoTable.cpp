#include "translator/MetaInfoTable.hpp"

#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

using namespace translator;

namespace {
constexpr std::size_t fewestBuckets = 100;
}

MetaInfoTable::MetaInfoTable(std::wstring_view kindOfWord) : kind(kindOfWord)
{
    texts.reserve(fewestBuckets);
}

void MetaInfoTable::add(int id, std::wstring text)
{
    texts.insert_or_assign(id, std::move(text));
}

const std::wstring* MetaInfoTable::find(int id) const
{
    const auto found = texts.find(id);
    return found == texts.end() || found->second.empty() ? nullptr : &found->second;
}

std::optional<int> MetaInfoTable::idOf(std::wstring_view text) const
{
    std::optional<int> lowest;
    for (const auto& [id, word] : texts)
        if (word == text && (!lowest || id < *lowest))
            lowest = id;
    return lowest;
}

const std::wstring& MetaInfoTable::findTranslation(int id) const
{
    if (const std::wstring* text = find(id))
        return *text;
    throw MetaInfoTableError(L"Cannot find the " + std::wstring(kind) +
                             L" in the translation file represented by the index 0x" +
                             hexText(static_cast<std::uint32_t>(id)) + L". Please check to make sure it is defined.");
}
