#include "transport/OpenIpmi.hpp"

#include "common/Descriptor.hpp"
#include "common/Facts.hpp"
#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "ipmi/Codes.hpp"
#include "transport/Deadline.hpp"
#include "transport/MachineIo.hpp"
#include "transport/MessageRecords.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <linux/ipmi.h>
#include <memory>
#include <span>
#include <string_view>
#include <sys/ioctl.h>

using namespace transport;

static_assert(IPMICTL_SEND_COMMAND == 0x8028690D);
static_assert(IPMICTL_RECEIVE_MSG_TRUNC == 0xC030690B);

namespace {

using namespace std::chrono_literals;

constexpr std::array deviceNodes = {"/dev/ipmi0", "/dev/ipmidev/0"};
constexpr std::chrono::milliseconds selectTime = 10s;
constexpr int selectTries = 10;
constexpr int strayAnswerLimit = 5;
constexpr long lastMsgid = 50;
/// What the driver says of a controller that hangs is not asked for again fifty times.
constexpr long lastLimitedMsgid = 5;
/// Late answers to exchanges that were given up may wait in front of ours.
constexpr int mostLooks = 100;
constexpr auto pauseBetweenOpenings = 1s;
/// Errors of a device that is gone for good; a new one may come.
constexpr std::array goneErrors = {ENODEV, ENXIO, EBADF};

using DriverBuffer = std::array<std::uint8_t, IPMI_MAX_MSG_LENGTH>;

struct ErrorNumber {
    int systemError, result;
};
constexpr ErrorNumber sendErrors[] = {
    {ENOMEM, ipmiNoMemory}, {EFAULT, ipmiBadAddress}, {EINVAL, ipmiInvalidArgument}, {EMSGSIZE, ipmiMessageSize}};
constexpr ErrorNumber receiveErrors[] = {
    {EAGAIN, ipmiTryAgain}, {EFAULT, ipmiBadAddress}, {EINVAL, ipmiInvalidArgument}, {EMSGSIZE, ipmiMessageSize}};

void closeDevice()
{
    if (transportState().openIPMIfd < 0)
        return;
    current<DeviceFile>().close(transportState().openIPMIfd);
    transportState().openIPMIfd = -1;
}

/// The result for the error that a call has just left in errno.
int errorResult(std::span<const ErrorNumber> numbers)
{
    const int systemError = errno;
    if (common::policy().reopensDevice && std::ranges::find(goneErrors, systemError) != goneErrors.end())
        closeDevice();
    const auto row = std::ranges::find(numbers, systemError, &ErrorNumber::systemError);
    return row == numbers.end() ? ipmiTimeout : row->result;
}

union DriverAddress {
    ipmi_system_interface_addr system;
    ipmi_ipmb_addr ipmb;
};
static_assert(sizeof(DriverAddress) == 8);

DriverAddress addressOf(std::uint8_t target, std::uint8_t lun)
{
    DriverAddress address{};
    if (target == ipmi::address::bmc) {
        address.system.addr_type = IPMI_SYSTEM_INTERFACE_ADDR_TYPE;
        address.system.channel = IPMI_BMC_CHANNEL;
        address.system.lun = carriedLun(lun);
        return address;
    }
    address.ipmb = {};
    address.ipmb.addr_type = IPMI_IPMB_ADDR_TYPE;
    address.ipmb.channel = channelOfTarget(target);
    address.ipmb.slave_addr = target;
    address.ipmb.lun = carriedLun(lun);
    return address;
}

int sendCommand(const BMC_MESSAGE& request, long msgid, DriverBuffer& buffer)
{
    std::copy_n(request.data, request.length, buffer.begin());
    DriverAddress address = addressOf(request.target, request.lun);
    ipmi_req driverRequest{};
    driverRequest.addr = reinterpret_cast<unsigned char*>(&address);
    driverRequest.addr_len = sizeof address;
    driverRequest.msgid = msgid;
    driverRequest.msg.netfn = request.netFn;
    driverRequest.msg.cmd = request.cmd;
    driverRequest.msg.data_len = static_cast<unsigned short>(request.length);
    driverRequest.msg.data = buffer.data();
    if (current<DeviceFile>().ioctl(transportState().openIPMIfd, IPMICTL_SEND_COMMAND, &driverRequest) == -1)
        return errorResult(sendErrors);
    return 0;
}

int awaitAnswer()
{
    for (int i = 0; i < selectTries; ++i)
        if (current<DeviceFile>().waitReadable(transportState().openIPMIfd, selectTime) > 0)
            return 0;
    return ipmiTimeout;
}

int receiveMessage(ipmi_recv& received, DriverBuffer& buffer)
{
    std::array<unsigned char, sizeof(ipmi_addr)> address{};
    received = {};
    received.addr = address.data();
    received.addr_len = address.size();
    received.msg.data = buffer.data();
    received.msg.data_len = static_cast<unsigned short>(buffer.size());
    if (current<DeviceFile>().ioctl(transportState().openIPMIfd, IPMICTL_RECEIVE_MSG_TRUNC, &received) == -1)
        return errorResult(receiveErrors);
    return received.msg.data_len > buffer.size() ? ipmiMessageSize : 0;
}

int receiveAnswer(ipmi_recv& received, DriverBuffer& buffer, long msgid)
{
    for (int strays = 0;;) {
        if (const int error = receiveMessage(received, buffer))
            return error;
        if (received.msgid == msgid)
            return 0;
        if (++strays == strayAnswerLimit)
            return ipmiTimeout;
        current<Clock>().sleepFor(1s);
    }
}

/// Waits for a message until the exchange has to be over: 0, or an error number.
int awaitMessage()
{
    using std::chrono::milliseconds;
    const milliseconds limit = std::min(std::chrono::ceil<milliseconds>(Deadline::left()), selectTries * selectTime);
    const int ready = current<DeviceFile>().waitReadable(transportState().openIPMIfd, limit);
    if (ready < 0)
        return errno == EINTR ? ipmiTryAgain : errorResult(receiveErrors);
    return ready > 0 ? 0 : ipmiTimeout;
}

bool answers(const ipmi_recv& received, const BMC_MESSAGE& request, long msgid)
{
    return received.msgid == msgid && received.msg.netfn == (request.netFn | 1) && received.msg.cmd == request.cmd;
}

/// The answer that is ours; those to other messages, and a device that is ready without one, are passed over.
int receiveOurs(ipmi_recv& received, DriverBuffer& buffer, const BMC_MESSAGE& request, long msgid)
{
    for (int looks = 0; looks < mostLooks; ++looks) {
        int error = awaitMessage();
        if (error == 0)
            error = receiveMessage(received, buffer);
        if (error == 0 && answers(received, request, msgid))
            return 0;
        if (error != 0 && error != ipmiTryAgain)
            return error;
    }
    return ipmiTimeout;
}

void fillResponse(BMC_MESSAGE& response, std::uint8_t target, const ipmi_msg& answer, const DriverBuffer& buffer)
{
    response.target = target;
    response.netFn = static_cast<std::uint8_t>(answer.netfn - 1);
    response.lun = 0;
    response.cmd = answer.cmd;
    response.completionCode = buffer[0];
    response.length = answer.data_len - 1U;
    if (answer.data_len > 1)
        std::copy_n(buffer.begin() + 1, response.length, response.data);
}

/// OpenIPMIProcessMessage with a number that no earlier message had, and answers compared with the request.
int exchangeChecked(const BMC_MESSAGE& request, BMC_MESSAGE& response)
{
    if (request.length > IPMI_MAX_MSG_LENGTH)
        return ipmiMessageSize;
    const long msgid = ++transportState().lastMsgid;
    DriverBuffer buffer;
    buffer[0] = 0;
    if (const int error = sendCommand(request, msgid, buffer))
        return error;
    ipmi_recv received;
    if (const int error = receiveOurs(received, buffer, request, msgid))
        return error;
    fillResponse(response, request.target, received.msg, buffer);
    return 0;
}

int exchangeOnce(const BMC_MESSAGE& request, BMC_MESSAGE& response, long msgid)
{
    if (transportState().openIPMIfd < 0 && mayLookAgain())
        openDevice();
    return common::policy().checksDriverAnswers ? exchangeChecked(request, response)
                                                : OpenIPMIProcessMessage(&request, &response, msgid);
}

bool handsOverToUsb()
{
    return transportState().OpenIPMIPresence == 1 && transportState().g_UseUSB == 1;
}

bool isDriverModule(std::string_view name)
{
    return name == "ipmi_si" || name == "ipmi_devintf" || name == "ipmi_msghandler";
}

} // namespace

int init_openipmi()
{
    if (openDevice())
        return 0;
    std::puts("OpenIPMI driver is disabled. Please refer to release note to start OpenIPMI driver and try again.");
    return -1;
}

int deinit_openipmi()
{
    if (!handsOverToUsb())
        return 0;
    current<DeviceFile>().close(transportState().openIPMIfd);
    transportState().openIPMIfd = -1;
    runCommand({"rmmod", "ipmi_si"});
    runCommand({"rmmod", "ipmi_msghandler"});
    return runCommand({"rmmod", "ipmi_devintf"});
}

int reinit_openipmi()
{
    if (!handsOverToUsb())
        return 0;
    for (const char* module : {"ipmi_si", "ipmi_msghandler", "ipmi_devintf"})
        runCommand({"modprobe", module});
    current<Clock>().sleepFor(5s);
    return openDevice() ? 0 : -1;
}

bool transport::openDevice()
{
    for (const char* node : deviceNodes) {
        const int fd = current<DeviceFile>().open(node, O_RDWR);
        transportState().openIPMIfd = fd;
        if (fd < 0)
            continue;
        common::noteFact(common::transportFact, std::string("kernel's driver, ") + node);
        return true;
    }
    return false;
}

bool transport::mayLookAgain()
{
    const Clock::SteadyPoint now = current<Clock>().steady();
    if (!common::policy().reopensDevice || now < transportState().nextOpening)
        return false;
    transportState().nextOpening = now + pauseBetweenOpenings;
    return true;
}

bool DetectOpenIPMIModules()
{
    const common::File file = common::openToRead(systemPath("/proc/modules"));
    if (!file)
        return false;
    int found = 0;
    std::array<char, 80> line;
    while (found < 3 && std::fgets(line.data(), line.size(), file.get())) {
        const std::string_view text(line.data());
        found += isDriverModule(text.substr(0, text.find(' ')));
    }
    return found == 3;
}

int OpenIPMIProcessMessage(const BMC_MESSAGE* request, BMC_MESSAGE* response, long msgid)
{
    if (request->length > IPMI_MAX_MSG_LENGTH)
        return ipmiMessageSize;
    DriverBuffer buffer;
    buffer[0] = 0;
    if (const int error = sendCommand(*request, msgid, buffer))
        return error;
    if (const int error = awaitAnswer())
        return error;
    ipmi_recv received;
    if (const int error = receiveAnswer(received, buffer, msgid))
        return error;
    fillResponse(*response, request->target, received.msg, buffer);
    return 0;
}

int transport::exchangeByDriver(const BMC_MESSAGE* request, BMC_MESSAGE* response)
{
    const long last = common::policy().limitsExchanges ? lastLimitedMsgid : lastMsgid;
    int result = exchangeOnce(*request, *response, 1);
    for (long msgid = 2;
         msgid <= last && response->completionCode == ipmi::completion::unspecified && !Deadline::passed(); ++msgid)
        result = exchangeOnce(*request, *response, msgid);
    return result;
}

int OpenIPMIProcessSendMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, std::uint8_t, std::uint8_t target)
{
    request->target = target;
    return exchangeByDriver(request, response);
}
