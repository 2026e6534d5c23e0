#include "client/words/CheckedCopy.hpp"

#include "common/Policy.hpp"
#include "common/Report.hpp"

#include <cstdio>
#include <cstdlib>

namespace client::words {

void refuseLongText(std::string_view text, std::size_t room)
{
    if (common::policy().cutsLongTexts) {
        common::reportLimited(common::Gravity::notice, "long text", "a text that is too long was cut");
        return;
    }
    std::fprintf(stderr, "a text of %zu bytes does not fit into %zu\n", text.size(), room);
    std::abort();
}

} // namespace client::words
