#include "common/Descriptor.hpp"

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

File streamOver(Descriptor descriptor, const char* mode)
{
    File stream(descriptor ? fdopen(descriptor.get(), mode) : nullptr);
    if (stream)
        descriptor.release();
    return stream;
}

} // namespace common
