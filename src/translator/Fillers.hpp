#pragma once

#include "translator/EventContext.hpp"

namespace translator {

/// Appends what a placeholder or token stands for. `argument` is the text behind the token's colon, if any.
using Fill = void (*)(const EventContext& context, std::wstring_view argument, std::wstring& out);

/// The filler of "[name]" or "%name%", given with its opening and closing mark; null for an unknown one.
Fill findFiller(std::wstring_view token);

/// A token whose value is a word by a few bits of a record byte. A file's miscellaneous string number firstMisc + value
/// goes before the program's word, so that a language can have its own.
struct WordList {
    std::wstring_view token;
    std::uint8_t dataByte; ///< number of the event data byte, 1 to 3
    std::uint8_t shift;
    std::uint8_t mask; ///< after the shift
    std::uint8_t base; ///< number of the first word
    int firstMisc;
    std::span<const std::wstring_view> words;
};

/// The word list of "%name%"; null for an unknown one.
const WordList* findWordList(std::wstring_view token);
/// Appends the word of the record at hand, " Reserved" for a value outside of the list.
void fillWord(const WordList& list, const EventContext& context, std::wstring& out);

} // namespace translator
