#include "tests/fuzz/World.hpp"

#include "platform/IpmiExchange.hpp"
#include "transport/MachineIo.hpp"

#include <cerrno>
#include <cstring>
#include <linux/ipmi.h>
#include <memory>
#include <sys/ioctl.h>

// What the kernel's driver may give back: errors, late answers, messages of any size, and lengths that do not fit the
// bytes.

namespace {

enum Trait : std::uint8_t { FAILS = 0x01, OTHER_ID = 0x02, CLAIMS_LENGTH = 0x04, NOT_READY = 0x08 };

class InputDriver : public transport::DeviceFile {
public:
    explicit InputDriver(Input& input_) : input(input_) {}

    int open(const char*, int) override { return 1000; }
    int close(int) override { return 0; }
    int waitReadable(int, std::chrono::milliseconds) override { return input.byte() & NOT_READY ? -1 : 1; }

    int ioctl(int, unsigned long request, void* argument) override
    {
        const std::uint8_t traits = input.byte();
        if (request == IPMICTL_SEND_COMMAND)
            id = static_cast<const ipmi_req*>(argument)->msgid;
        else
            fill(*static_cast<ipmi_recv*>(argument), traits);
        return traits & FAILS ? fail() : 0;
    }

private:
    void fill(ipmi_recv& message, std::uint8_t traits)
    {
        message.recv_type = traits >> 4;
        message.msgid = id + (traits & OTHER_ID ? 1 : 0);
        message.msg.netfn = input.byte();
        message.msg.cmd = input.byte();
        const Input::Bytes bytes = traits & CLAIMS_LENGTH ? input.bytes(input.word()) : input.part();
        const std::size_t count = std::min<std::size_t>(bytes.size(), message.msg.data_len);
        if (count > 0)
            std::memcpy(message.msg.data, bytes.data(), count);
        message.msg.data_len =
            static_cast<unsigned short>(traits & CLAIMS_LENGTH ? input.word() : static_cast<unsigned>(count));
    }

    int fail()
    {
        static constexpr int errors[] = {EAGAIN, EFAULT, EINVAL, EMSGSIZE, ENOMEM, ENODEV, EINTR, EIO};
        errno = errors[input.byte() % std::size(errors)];
        return -1;
    }

    Input& input;
    long id = 0;
};

void checkReply(const std::vector<std::string>& reply)
{
    require(!reply.empty() && reply.size() <= 1 + transport::maxResponseData);
    for (const std::string& item : reply)
        require(!item.empty() && item.size() <= 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    World world(input);
    InputDriver driver(input);
    const ScopedSeam<transport::DeviceFile> useDriver(driver);
    const std::vector<std::string> requests[] = {
        {"20", "06", "00", "01"}, {"2C", "04", "01", "2D", "33"}, std::vector<std::string>(300, "20")};
    for (const std::vector<std::string>& request : requests) {
        try {
            std::vector<std::string> reply;
            Platform::exchangeIpmi(request, {.retries = 3}, reply);
            checkReply(reply);
        } catch (const ResultStatus&) { // no usable answer
        }
    }
    return 0;
}
