#pragma once

#include "tests/support/FakeClock.hpp"
#include "transport/MachineIo.hpp"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <vector>

/// One IPMI request as the BMC sees it.
struct IpmiRequest {
    std::uint8_t target = 0x20; ///< slave address, 0x20 for the BMC itself
    std::uint8_t channel = 0x0F;
    std::uint8_t lun = 0;
    std::uint8_t netFn = 0;
    std::uint8_t cmd = 0;
    std::vector<std::uint8_t> data;
};

/// The answer's bytes, completion code first. An empty answer stands for a BMC that does not answer.
using IpmiAnswer = std::vector<std::uint8_t>;

/// A BMC behind the kernel driver's ioctl interface, modelled in process: install with
/// `ScopedSeam<transport::DeviceFile> use(bmc);`. Every exchange goes through the real driver code of src/transport.
class ModelBmc : public transport::DeviceFile {
public:
    using Handler = std::function<IpmiAnswer(const IpmiRequest&)>;

    /// Answers for one command; later calls replace earlier ones. Commands without a handler get completion code C1h.
    void on(std::uint8_t netFn, std::uint8_t cmd, Handler handler);
    /// The same with a fixed answer.
    void on(std::uint8_t netFn, std::uint8_t cmd, IpmiAnswer answer);
    /// Answers for the commands without a handler.
    void onOthers(Handler handler) { others = std::move(handler); }

    /// Every request so far, in order.
    std::vector<IpmiRequest> requests;
    /// False: no device node opens.
    bool present = true;
    /// With a clock answers take their time, which passes while they are waited for; one that was given up waits in
    /// front of later ones.
    FakeClock* clock = nullptr;
    std::chrono::nanoseconds answerTime{0};

    int open(const char* path, int flags) override;
    int ioctl(int fd, unsigned long request, void* argument) override;
    int waitReadable(int fd, std::chrono::milliseconds limit) override;
    int close(int fd) override;

protected:
    struct Reply {
        long msgid;
        std::uint8_t netFn, cmd;
        IpmiAnswer bytes;
        Clock::SteadyPoint ready;
    };
    std::deque<Reply> replies; ///< that wait to be received

private:
    int send(void* argument);
    int receive(void* argument);

    IpmiAnswer answerTo(const IpmiRequest& request) const;

    std::map<std::uint16_t, Handler> handlers;
    Handler others;
};
