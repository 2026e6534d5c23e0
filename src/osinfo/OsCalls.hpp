#pragma once

#include "common/Descriptor.hpp"

#include <cstddef>

struct utsname;

namespace osinfo {

/// The system calls of the inventory that are neither a file to read nor a program to run.
struct OsCalls {
    virtual ~OsCalls() = default;
    /// As gethostname(2) and uname(2).
    virtual int hostName(char* out, std::size_t size) = 0;
    virtual int kernelNames(utsname& names) = 0;
    /// A socket whose ioctls answer for network interfaces; none if it cannot be had.
    virtual common::Descriptor openSocket() = 0;
    /// Opens a device for questions, without waiting for a medium; none on failure.
    virtual common::Descriptor openDevice(const char* path) = 0;
    virtual int control(int fd, unsigned long request, void* argument) = 0;
    static OsCalls& real();
};

} // namespace osinfo
