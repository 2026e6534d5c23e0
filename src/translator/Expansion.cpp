#include "translator/Fillers.hpp"

#include <algorithm>

namespace translator {

namespace {

constexpr std::wstring_view directionMark = L"||";

std::wstring_view textOfDirection(std::wstring_view translation, bool deassertion)
{
    const std::size_t mark = translation.find(directionMark);
    if (mark == translation.npos)
        return translation;
    return deassertion ? translation.substr(mark + directionMark.size()) : translation.substr(0, mark);
}

/// Appends the value of the token that `text` begins with, and gives the token's length; 0 if it is none.
std::size_t fillToken(std::wstring_view text, const EventContext& context, std::wstring& out)
{
    const bool bracket = text.front() == L'[';
    const std::size_t close = text.find(bracket ? L']' : L'%', 1);
    if (close == text.npos)
        return 0;
    const std::wstring_view whole = text.substr(0, close + 1);
    const std::size_t colon = bracket ? whole.npos : whole.find(L':');
    const std::wstring_view name = colon == whole.npos ? whole : whole.substr(0, colon + 1);
    const std::wstring_view argument = colon == whole.npos ? L"" : whole.substr(colon + 1, close - colon - 1);
    if (const Fill fill = findFiller(name))
        fill(context, argument, out);
    else if (const WordList* list = findWordList(name))
        fillWord(*list, context, out);
    else
        return 0;
    return whole.size();
}

void expand(std::wstring_view rest, const EventContext& context, std::wstring& out);

constexpr bool opensToken(wchar_t character)
{
    return character == L'[' || character == L'%' || character == L'<';
}

/// The same for a part that depends on the event data, "<23:text>".
std::size_t fillPart(std::wstring_view text, const EventContext& context, std::wstring& out)
{
    const std::size_t colon = text.find_first_not_of(L"23", 1);
    const std::size_t close = text.find(L'>');
    if (colon == text.npos || colon == 1 || text[colon] != L':' || close == text.npos)
        return 0;
    const std::wstring_view bytes = text.substr(1, colon - 1);
    if (std::ranges::all_of(bytes, [&](wchar_t digit) { return context.isStandardData(digit - L'0'); }))
        expand(text.substr(colon + 1, close - colon - 1), context, out);
    return close + 1;
}

void expand(std::wstring_view rest, const EventContext& context, std::wstring& out)
{
    while (!rest.empty()) {
        const auto mark = static_cast<std::size_t>(std::ranges::find_if(rest, opensToken) - rest.begin());
        out.append(rest.substr(0, mark));
        rest.remove_prefix(mark);
        if (rest.empty())
            break;
        const std::size_t used = rest.front() == L'<' ? fillPart(rest, context, out) : fillToken(rest, context, out);
        if (used == 0)
            out.push_back(rest.front());
        rest.remove_prefix(used == 0 ? 1 : used);
    }
}

} // namespace

std::wstring expandTranslation(std::wstring_view translation, const EventContext& context)
{
    const std::wstring_view text = textOfDirection(translation, context.entry.isDeassertion());
    std::wstring out;
    out.reserve(text.size() * 2);
    expand(text, context, out);
    return out;
}

} // namespace translator
