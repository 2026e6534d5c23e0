#include "protocol/SmbiosTypes.hpp"

namespace Protocol::SMBIOS {

std::uint64_t SMBRecordInfo::number(std::size_t offset, std::size_t size) const
{
    if (!holds(offset, size))
        return 0;
    std::uint64_t value = 0;
    for (std::size_t i = size; i > 0; --i)
        value = value << 8 | formatted[offset + i - 1];
    return value;
}

const std::string& SMBRecordInfo::string(std::size_t index) const
{
    static const std::string none;
    return index == 0 || index > strings.size() ? none : strings[index - 1];
}

std::string subscripted(std::string_view path, std::size_t index)
{
    return std::string(path) + '[' + std::to_string(index) + ']';
}

} // namespace Protocol::SMBIOS
