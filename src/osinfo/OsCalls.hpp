#pragma once

#include <cstddef>

struct utsname;

/// The system calls of the inventory that are neither a file to read nor a program to run.
struct OsCalls {
    virtual ~OsCalls() = default;
    /// As gethostname(2) and uname(2).
    virtual int hostName(char* out, std::size_t size) = 0;
    virtual int kernelNames(utsname& names) = 0;
    /// A socket whose ioctls answer for network interfaces; -1 without one.
    virtual int openSocket() = 0;
    /// Opens a device for questions, without waiting for a medium; -1 on failure.
    virtual int openDevice(const char* path) = 0;
    virtual int control(int fd, unsigned long request, void* argument) = 0;
    virtual void close(int fd) = 0;
    static OsCalls& real();
};

/// A descriptor of OsCalls, closed at the end of the scope.
class OsDescriptor {
public:
    explicit OsDescriptor(int descriptor) : fd(descriptor) {}
    ~OsDescriptor();
    OsDescriptor(const OsDescriptor&) = delete;
    OsDescriptor& operator=(const OsDescriptor&) = delete;

    const int fd;
};
