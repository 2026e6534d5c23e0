#include "transport/MachineIo.hpp"

#include "transport/Kcs.hpp"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#if defined(__x86_64__)
#include <sys/io.h>
#endif

namespace transport {

namespace {

#if defined(__x86_64__)

/// An access without the privilege would end the process, so it reads as an empty bus instead.
thread_local bool portsGranted = false;

struct RealPorts final : PortIo {
    bool acquire() override
    {
        portsGranted = iopl(3) == 0;
        return portsGranted;
    }

    std::uint8_t in(std::uint16_t port) override { return portsGranted ? inb(port) : 0xFF; }

    void out(std::uint16_t port, std::uint8_t value) override
    {
        if (portsGranted)
            outb(value, port);
    }
};

#else

struct RealPorts final : PortIo {
    bool acquire() override { return false; }
    std::uint8_t in(std::uint16_t) override { return 0xFF; }
    void out(std::uint16_t, std::uint8_t) override {}
};

#endif

volatile std::sig_atomic_t got_alarm = 0;

struct SignalAlarm final : Alarm {
    void arm(unsigned seconds) override
    {
        got_alarm = 0;
        setDisposition(kcs_timeout);
        alarm(seconds);
    }

    bool fired() override { return got_alarm != 0; }

    void disarm() override
    {
        alarm(0);
        setDisposition(SIG_DFL);
        got_alarm = 0;
    }

private:
    static void setDisposition(void (*handler)(int))
    {
        struct sigaction action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigaction(SIGALRM, &action, nullptr);
    }
};

struct SystemDevice final : DeviceFile {
    int open(const char* path, int flags) override { return ::open(path, flags | O_CLOEXEC); }
    int ioctl(int fd, unsigned long request, void* argument) override { return ::ioctl(fd, request, argument); }

    /// poll, because a descriptor above FD_SETSIZE would make select write past its set.
    int waitReadable(int fd, std::chrono::milliseconds limit) override
    {
        if (fd < 0) {
            errno = EBADF;
            return -1;
        }
        pollfd wanted{fd, POLLIN, 0};
        return poll(&wanted, 1, static_cast<int>(limit.count()));
    }

    int close(int fd) override { return ::close(fd); }
};

} // namespace

PortIo& PortIo::real()
{
    static RealPorts ports;
    return ports;
}

Alarm& Alarm::real()
{
    static SignalAlarm signalAlarm;
    return signalAlarm;
}

DeviceFile& DeviceFile::real()
{
    static SystemDevice device;
    return device;
}

} // namespace transport

void kcs_timeout(int)
{
    transport::got_alarm = 1;
}
