#include "common/Descriptor.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace common {

Descriptor::~Descriptor()
{
    if (number >= 0)
        close(number);
}

bool Descriptor::isRegularFile() const
{
    struct stat status {};
    return number >= 0 && fstat(number, &status) == 0 && S_ISREG(status.st_mode);
}

File openToRead(const std::string& path)
{
    return File(std::fopen(path.c_str(), "re"));
}

std::vector<std::uint8_t> readSmallFile(const std::string& path, std::size_t most)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
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

std::string readSmallText(const std::string& path, std::size_t most)
{
    const std::vector<std::uint8_t> bytes = readSmallFile(path, most);
    return {bytes.begin(), bytes.end()};
}

File streamOver(Descriptor descriptor, const char* mode)
{
    File stream(descriptor ? fdopen(descriptor.get(), mode) : nullptr);
    if (stream)
        descriptor.release();
    return stream;
}

} // namespace common
