#pragma once

#include "ipmi-preload/Controller.hpp"

#include <linux/ipmi.h>

#include <array>
#include <atomic>
#include <deque>
#include <mutex>

namespace preload {

/// The kernel's IPMI device of one process: open files, their queues of received messages, the ioctls. A descriptor is
/// an eventfd that counts the file's waiting messages, so select and poll tell the truth about it. A thread takes in
/// what the controller sends; after a fork the child has a line and a thread of its own.
class Driver {
public:
    static Driver& instance();

    /// A new open file of the device, or -1 with errno.
    int open(int flags);

    /// Whether `fd` is an open file of the device. Cheap and safe at any time.
    bool owns(int fd) const;

    /// The device's ioctl; -1 with errno as the kernel's driver gives them.
    int ioctl(int fd, unsigned long request, void* argument);

    /// Forgets the file; the caller closes the descriptor.
    void release(int fd);

private:
    struct Received {
        int type;
        long id;
        ipmi_addr address;
        std::uint8_t netFn;
        std::uint8_t command;
        vmline::Bytes data;
    };
    struct OpenFile {
        std::deque<Received> queue;
        bool getsEvents = false;
        std::uint8_t address = 0x20;
        std::uint8_t lun = 0;
    };

    Driver();
    void startThread();
    void run();
    int send(int fd, const ipmi_req& request);
    int receive(int fd, ipmi_recv& out, bool truncate);
    int setOption(int fd, unsigned long request, void* argument);
    void deliver(int fd, std::uint64_t generation, Received message);
    void deliverEvent(const vmline::Bytes& record);
    void startAfresh();

    static constexpr int mostDescriptors = 4096;

    std::mutex mutex;
    Controller controller;
    std::map<int, OpenFile> files;
    std::array<std::atomic<std::uint64_t>, mostDescriptors> generations{}; ///< 0: not ours
    std::uint64_t lastGeneration = 0;
    bool threadRuns = false;
};

} // namespace preload
