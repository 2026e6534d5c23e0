#include "osinfo/OsCalls.hpp"

#include "common/Seams.hpp"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace osinfo {

namespace {

struct SystemCalls final : OsCalls {
    int hostName(char* out, std::size_t size) override { return gethostname(out, size); }
    int kernelNames(utsname& names) override { return uname(&names); }
    common::Descriptor openSocket() override
    {
        return common::Descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    }
    common::Descriptor openDevice(const char* path) override
    {
        return common::Descriptor(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    }
    int control(int fd, unsigned long request, void* argument) override { return ioctl(fd, request, argument); }
};

} // namespace

OsCalls& OsCalls::real()
{
    static SystemCalls calls;
    return calls;
}

} // namespace osinfo
