#include "client/words/CheckedCopy.hpp"

#include <cstdio>
#include <cstdlib>

namespace client::words {

void refuseLongText(std::string_view text, std::size_t room)
{
    std::fprintf(stderr, "a text of %zu bytes does not fit into %zu\n", text.size(), room);
    std::abort();
}

} // namespace client::words
