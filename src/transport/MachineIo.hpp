#pragma once

#include "common/Seams.hpp"

#include <chrono>
#include <cstdint>

namespace transport {

/// Byte-wide I/O ports.
struct PortIo {
    virtual ~PortIo() = default;
    /// Asks the kernel for I/O privilege level 3 for the calling thread. False without the right or on other
    /// processors.
    virtual bool acquire() = 0;
    virtual std::uint8_t in(std::uint16_t port) = 0;
    virtual void out(std::uint16_t port, std::uint8_t value) = 0;
    static PortIo& real();
};

/// The process-wide SIGALRM time-out of the port code.
struct Alarm {
    virtual ~Alarm() = default;
    /// Starts the alarm, to ring after `seconds`; installs the handler and clears what rang before.
    virtual void arm(unsigned seconds) = 0;
    /// True once the alarm has rung since arm().
    virtual bool fired() = 0;
    /// Stops the alarm and puts the signal's disposition back to the default.
    virtual void disarm() = 0;
    static Alarm& real();
};

/// Device nodes, the kernel's IPMI driver above all. Results and errno are those of the system calls.
struct DeviceFile {
    virtual ~DeviceFile() = default;
    virtual int open(const char* path, int flags) = 0;
    virtual int ioctl(int fd, unsigned long request, void* argument) = 0;
    /// Waits as select(2) does for reading on `fd`, at most `limit`: above 0 ready, 0 time-out, -1 error or signal.
    virtual int waitReadable(int fd, std::chrono::milliseconds limit) = 0;
    virtual int close(int fd) = 0;
    static DeviceFile& real();
};

} // namespace transport
