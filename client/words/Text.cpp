#include "client/words/Text.hpp"

#include <cstdlib>

namespace client::words {

char* newTextBlock(std::string_view text)
{
    char* const block = static_cast<char*>(std::malloc(textBlockBytes));
    if (!block)
        return nullptr;
    const std::size_t length = std::min<std::size_t>(text.size(), textBlockBytes - 1);
    std::copy_n(text.data(), length, block);
    block[length] = '\0';
    return block;
}

} // namespace client::words
