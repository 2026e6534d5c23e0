#pragma once

#include "client/words/Text.hpp"

namespace client::words {

/// Called with a text that does not fit where it is to go. The process ends, and its watcher starts it afresh; or it
/// returns, by the policy, and the text is cut.
void refuseLongText(std::string_view text, std::size_t room);

/// Copies `text` into a fixed field with NUL; see refuseLongText for a text that is too long.
template<std::size_t Size>
void copyChecked(char (&field)[Size], std::string_view text)
{
    if (text.size() >= Size)
        refuseLongText(text, Size - 1);
    copyText(field, text);
}

} // namespace client::words
