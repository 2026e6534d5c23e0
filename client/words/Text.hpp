#pragma once

#include "client/words/Entities.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace client::words {

/// Copies `text` into a fixed field, cut to what fits, and ends it with NUL.
template<std::size_t Size>
void copyText(char (&field)[Size], std::string_view text)
{
    const std::size_t length = std::min(text.size(), Size - 1);
    std::copy_n(text.data(), length, field);
    field[length] = '\0';
}

/// A malloc block of 512 bytes with `text`, cut to 511 characters, for the caller to free; null if memory runs out.
char* newTextBlock(std::string_view text);

} // namespace client::words
