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
    bool emptyHanded = false;     ///< ready once without a message
    bool anothersFirst = false;   ///< the answer of another command comes under our number
    std::string onlyNode;         ///< the one node that opens, when set
    std::vector<long> strayIds;   ///< msgids of answers that come before the right one
    int reportedLength = -1;      ///< data_len of an answer, when not negative
    std::vector<int> waitResults; ///< replace the model's, from the front
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
        if (sends)
            return ModelBmc::ioctl(fd, request, argument);
        if (std::exchange(emptyHanded, false))
            return fail(EAGAIN);
        return receive(fd, request, *static_cast<ipmi_recv*>(argument));
    }

private:
    static int fail(int error)
    {
        errno = error;
        return -1;
    }

    int receive(int fd, unsigned long request, ipmi_recv& message)
    {
        const bool isAnothers = std::exchange(anothersFirst, false);
        if (strayIds.empty() && reportedLength < 0 && !isAnothers)
            return ModelBmc::ioctl(fd, request, &message);
        message.msgid = isAnothers ? transport::transportState().lastMsgid : 1;
        if (!strayIds.empty()) {
            message.msgid = strayIds.front();
            strayIds.erase(strayIds.begin());
        } else if (isAnothers) {
            message.msg.data_len = 2;
            message.msg.data[0] = 0;
            message.msg.data[1] = 0x99;
        } else {
            message.msg.netfn = 7;
            message.msg.data_len = static_cast<unsigned short>(reportedLength);
        }
        return 0;
    }
};
