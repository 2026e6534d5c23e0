#include "platform/EFIVar.hpp"

#include "common/Descriptor.hpp"
#include "common/Seams.hpp"

#include <algorithm>
#include <iterator>

namespace Platform {

namespace {

constexpr char variableFolder[] = "/sys/firmware/efi/efivars/";
constexpr char olderFolder[] = "/sys/firmware/efi/vars/";
/// A file of the variable folder begins with the variable's attributes.
constexpr std::size_t attributeBytes = 4;

} // namespace

EFIVar::EFIVar(std::string variable, const std::string& guid, std::size_t bufferBytes)
    : name(std::move(variable) + "-"), buffer(bufferBytes)
{
    std::ranges::transform(guid, std::back_inserter(name),
                           [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c; });
}

std::vector<std::uint8_t> EFIVar::GetVariable() const
{
    std::vector<std::uint8_t> data = common::readSmallFile(systemPath(variableFolder + name), buffer + attributeBytes);
    if (data.size() > attributeBytes) {
        data.erase(data.begin(), data.begin() + attributeBytes);
        return data;
    }
    return common::readSmallFile(systemPath(olderFolder + name + "/data"), buffer);
}

} // namespace Platform
