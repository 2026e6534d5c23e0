#include "common/SmbiosWalk.hpp"

#include <algorithm>
#include <iterator>

namespace common {

std::optional<SmbiosStructure> takeSmbiosStructure(std::span<const std::uint8_t>& table)
{
    constexpr std::size_t lengthByte = 1;
    constexpr std::uint8_t endOfStrings[] = {0, 0};
    if (table.size() < smbiosHeader || table[lengthByte] < smbiosHeader || table[lengthByte] > table.size())
        return std::nullopt;
    const auto formatted = table.first(table[lengthByte]);
    const auto rest = table.subspan(formatted.size());
    const auto found = std::search(rest.begin(), rest.end(), std::begin(endOfStrings), std::end(endOfStrings));
    const auto end = static_cast<std::size_t>(found - rest.begin());
    table = rest.subspan(std::min(end + std::size(endOfStrings), rest.size()));
    // The first of the two zeros belongs to the last string, if there is one.
    return SmbiosStructure{formatted, rest.first(end == 0 ? 0 : std::min(end + 1, rest.size()))};
}

} // namespace common
