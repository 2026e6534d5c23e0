#include "platform/EFIVar.hpp"

#include "common/Descriptor.hpp"
#include "common/Seams.hpp"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace Platform {

namespace {

constexpr char variableFolder[] = "/sys/firmware/efi/efivars/";
constexpr char olderFolder[] = "/sys/firmware/efi/vars/";
/// A file of the variable folder begins with the variable's attributes.
constexpr std::size_t attributeBytes = 4;

/// The file's bytes, none if it has more than `most`. The kernel gives a variable in one piece or in several. Does not
/// wait, whatever stands at the path.
std::vector<std::uint8_t> readFile(const std::string& path, std::size_t most)
{
    const common::Descriptor file(open(systemPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isRegularFile())
        return {};
    std::vector<std::uint8_t> data(most + 1);
    std::size_t size = 0;
    while (size < data.size()) {
        const ssize_t count = read(file.get(), data.data() + size, data.size() - size);
        if (count < 0)
            return {};
        if (count == 0)
            break;
        size += static_cast<std::size_t>(count);
    }
    data.resize(size > most ? 0 : size);
    return data;
}

} // namespace

EFIVar::EFIVar(std::string variable, const std::string& guid, std::size_t bufferBytes)
    : name(std::move(variable) + "-"), buffer(bufferBytes)
{
    std::ranges::transform(guid, std::back_inserter(name),
                           [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c; });
}

std::vector<std::uint8_t> EFIVar::GetVariable() const
{
    std::vector<std::uint8_t> data = readFile(variableFolder + name, buffer + attributeBytes);
    if (data.size() > attributeBytes) {
        data.erase(data.begin(), data.begin() + attributeBytes);
        return data;
    }
    return readFile(olderFolder + name + "/data", buffer);
}

} // namespace Platform
