#pragma once

#include "tests/support/ModelBmc.hpp"
#include "transport/TransportState.hpp"

#include <cerrno>
#include <climits>
#include <linux/ipmi.h>
#include <sys/ioctl.h>

/// The modelled BMC behind a driver with faults of its own.
class TroubledDriver : public ModelBmc {
public:
    int sendError = 0, receiveError = 0; ///< errno of the next `errors` calls
    int errors = INT_MAX;
    bool emptyHanded = false;                        ///< ready once without a message
    bool anothersFirst = false;                      ///< the answer of another command comes under our number
    std::string onlyNode;                            ///< the one node that opens, when set
    std::vector<std::pair<long, IpmiAnswer>> strays; ///< come before the next answer, with their msgids
    std::vector<int> waitResults;                    ///< replace the model's, from the front
    std::vector<std::string> opened;
    int closed = 0;
    std::vector<std::chrono::milliseconds> waits;

    int open(const char* path, int flags) override
    {
        opened.emplace_back(path);
        return onlyNode.empty() || onlyNode == path ? ModelBmc::open(path, flags) : -1;
    }

    int close(int) override { return ++closed; }

    int waitReadable(int fd, std::chrono::milliseconds limit) override
    {
        waits.push_back(limit);
        if (waitResults.empty())
            return ModelBmc::waitReadable(fd, limit);
        const int result = waitResults.front();
        waitResults.erase(waitResults.begin());
        return result;
    }

    int ioctl(int fd, unsigned long request, void* argument) override
    {
        const bool sends = request == IPMICTL_SEND_COMMAND;
        const int error = sends ? sendError : receiveError;
        if (error != 0 && errors-- > 0)
            return fail(error);
        if (fd < 0 && !present)
            return fail(EBADF);
        if (!sends && std::exchange(emptyHanded, false))
            return fail(EAGAIN);
        if (sends)
            for (auto& [msgid, bytes] : std::exchange(strays, {}))
                replies.push_back({msgid, 7, 1, std::move(bytes), {}});
        if (sends && std::exchange(anothersFirst, false))
            replies.push_back({static_cast<const ipmi_req*>(argument)->msgid, 0, 0, {0, 0x99}, {}});
        return ModelBmc::ioctl(fd, request, argument);
    }

private:
    static int fail(int error)
    {
        errno = error;
        return -1;
    }
};

/// Driver and clock of a machine of which nothing is known yet, in force for the object's life.
struct DriverMachine {
    DriverMachine() { transport::resetTransportForTests(); }
    ~DriverMachine() { transport::resetTransportForTests(); }

    TroubledDriver driver;
    FakeClock clock;
    ScopedSeam<transport::DeviceFile> useDriver{driver};
    ScopedSeam<Clock> useClock{clock};
};
