#include "transport/BmcMessage.hpp"

#include "common/Facts.hpp"
#include "common/Policy.hpp"
#include "ipmi/Codes.hpp"
#include "transport/Deadline.hpp"
#include "transport/Kcs.hpp"
#include "transport/MachineIo.hpp"
#include "transport/MessageRecords.hpp"
#include "transport/OpenIpmi.hpp"
#include "transport/Patience.hpp"
#include "transport/TransportState.hpp"
#include "transport/Usb.hpp"

#include <algorithm>
#include <array>
#include <string.h>

using namespace transport;

namespace {

constexpr std::uint32_t maxRequestData = 65535;
constexpr std::size_t presetResponseLength = 256;
constexpr int usbFromDataLength = 129;
constexpr unsigned bridgeTimeoutMs = 10000;

constexpr std::size_t kcsFrameSize = 65535;
constexpr std::size_t kcsRequestHeader = 2;  // network function, command
constexpr std::size_t kcsResponseHeader = 3; // the same and the completion code

bool driverInForce()
{
    return transportState().OpenIPMIPresence != 0 && transportState().g_UseUSB != 1;
}

int bridgeMessage(BMC_MESSAGE* request, BMC_MESSAGE* response)
{
    return ProcessSendMessage(request, response, channelOfTarget(request->target), request->target, bridgeTimeoutMs);
}

using Frame = std::array<std::uint8_t, kcsFrameSize>;

/// One frame out, one frame in: the number of bytes that came, 0 for a failure.
unsigned exchangeFrames(const _IMBPREQUESTDATA& request, Frame& frame)
{
    frame[0] = static_cast<std::uint8_t>(request.netFn << 2 | transport::carriedLun(request.lun));
    frame[1] = request.cmd;
    std::copy_n(request.data, request.dataLength, frame.begin() + kcsRequestHeader);
    if (KCSSendMessage(frame.data(), static_cast<unsigned>(request.dataLength + kcsRequestHeader)) != kcsDone)
        return 0;
    unsigned count = 0;
    return KCSReadBMCData(frame.data(), kcsFrameSize, &count) == kcsDone ? count : 0;
}

/// Whether the frame holds an answer, and to this request (IPMI 2.0, 9.3).
bool answers(const Frame& frame, unsigned count, const _IMBPREQUESTDATA& request)
{
    return count >= kcsResponseHeader && frame[0] >> 2 == (request.netFn | 1) && frame[1] == request.cmd;
}

int exchangeByKcs(const _IMBPREQUESTDATA& request, std::uint8_t* data, int* length, std::uint8_t* completionCode)
{
    Frame frame;
    if (request.dataLength < 0 || request.dataLength + kcsRequestHeader > frame.size())
        return 1;
    *length = 0;
    unsigned count = exchangeFrames(request, frame);
    if (count >= kcsResponseHeader && !answers(frame, count, request)) // another's answer: ours may yet be had
        count = exchangeFrames(request, frame);
    if (!answers(frame, count, request))
        return 1;
    *completionCode = frame[2];
    *length = static_cast<int>(count - kcsResponseHeader);
    std::copy_n(frame.begin() + kcsResponseHeader, *length, data);
    return 0;
}

int exchangeDirectly(const BMC_MESSAGE& request, BMC_MESSAGE& response, unsigned timeout)
{
    const _IMBPREQUESTDATA direct{request.cmd,
                                  ipmi::address::bmc,
                                  0,
                                  request.netFn,
                                  request.lun,
                                  request.data,
                                  static_cast<std::int32_t>(request.length)};
    int length = presetResponseLength;
    std::uint8_t completionCode = 0;
    const int result = SendTimedImbpRequest_t(&direct, timeout, response.data, &length, &completionCode);
    response.target = request.target;
    response.netFn = request.netFn;
    response.lun = request.lun;
    response.cmd = request.cmd;
    response.completionCode = completionCode;
    response.length = static_cast<std::uint32_t>(length);
    return result;
}

void copyRequest(BMC_MESSAGE& message, const BMC_REQUEST& request)
{
    message.target = request.target;
    message.netFn = request.netFn;
    message.lun = request.lun;
    message.cmd = request.cmd;
    message.length = request.length;
    std::copy_n(request.data, request.length, message.data);
}

void fillResponse(BMC_RESPONSE& response, const BMC_MESSAGE& answer)
{
    response.length = static_cast<std::uint8_t>(answer.length);
    response.completionCode = answer.completionCode;
    response.cmd = answer.cmd;
    response.netFn = answer.netFn;
    response.slave = answer.target;
    std::copy_n(answer.data, answer.length, response.data);
}

/// Looks for an interface: 0 or noBmcInterface.
int search(bool driverOpened)
{
    transportState().OpenIPMIPresence = driverOpened ? 1 : 0;
    if (driverOpened)
        return 0;
    const bool answers = MainInit() == 0;
    common::noteFact(common::transportFact, answers ? "KCS port, without the kernel's driver" : "none");
    return answers ? 0 : noBmcInterface;
}

/// A driver that was loaded later owns the ports from then on; where there was nothing at all, the ports may answer by
/// now.
void searchAgain(int& result)
{
    if (transportState().OpenIPMIPresence == 1 || !mayLookAgain())
        return;
    const bool opened = openDevice();
    if (opened || result != 0)
        result = search(opened);
}

/// Whether a try gave what the caller can be handed.
bool isUsableAnswer(int result, const BMC_MESSAGE& answer)
{
    return result == 0 && answer.length <= maxResponseData;
}

bool askWithTries(BMC_MESSAGE& message, BMC_MESSAGE& answer, int retries)
{
    for (int tries = 0; tries <= retries && !Deadline::passed(); ++tries)
        if (isUsableAnswer(ProcessMessage(&message, &answer, 1), answer))
            return true;
    return false;
}

} // namespace

int BmcLibInitialize()
{
    TransportState& state = transportState();
    if (state.libInitialized)
        return 0;
    state.libInitialized = true;
    return search(init_openipmi() == 0);
}

int BmcLibDeinitialize()
{
    if (transportState().g_Mbmcsupport == 2)
        endIPMI();
    return 0;
}

int InitilizeIPMB_Interface()
{
    std::optional<int>& result = transportState().initializeResult;
    if (!result)
        result = BmcLibInitialize();
    else
        searchAgain(*result);
    if (*result != 0)
        return 1;
    SelectInterface(IPMI_INTERFACE_KCS);
    return 0;
}

bool Freelibrary()
{
    BmcLibDeinitialize();
    return BmcLibInitialize() != 0;
}

bool SelectInterface(_IPMI_INTERFACE_TYPE type)
{
    return SelectIPMIInterface(type) != 0;
}

int SelectIPMIInterface(int type)
{
    TransportState& state = transportState();
    if (type == IPMI_INTERFACE_KCS) {
        if (state.g_UseUSB == 1)
            UsbLibDeinitialize();
        state.g_UseUSB = 0;
        state.eInterface = IPMI_INTERFACE_KCS;
        return 1;
    }
    if ((type != IPMI_INTERFACE_USB && type != IPMI_INTERFACE_MIXED) || state.g_UseUSB)
        return 0;
    state.g_UseUSB = UsbLibInitialize();
    if (state.g_UseUSB != 1)
        return 0;
    state.eInterface = type;
    return 1;
}

int Reinitialize_OpenIPMI()
{
    return reinit_openipmi();
}

int SendRequest_Linux(const BMC_REQUEST* request, BMC_RESPONSE* response, int retries)
{
    return sendRequest(*request, *response, retries) ? 0 : 1;
}

std::uint8_t transport::carriedLun(std::uint8_t lun)
{
    return common::policy().carriesLun ? lun & 3 : 0;
}

std::optional<std::uint32_t> transport::sendRequest(const BMC_REQUEST& request, BMC_RESPONSE& response, int retries)
{
    if (request.length > maxRequestData)
        return std::nullopt;
    Patience patience(request);
    const Deadline deadline;
    BMC_MESSAGE message;
    copyRequest(message, request);
    BMC_MESSAGE answer;
    clearHeader(answer);

    bool answered = askWithTries(message, answer, retries);
    while (answered && patience.asksAgain(answer.completionCode))
        answered = askWithTries(message, answer, retries);
    patience.note(answered, answer.completionCode);
    // The data may be a password.
    explicit_bzero(message.data, message.length);
    if (!answered)
        return std::nullopt;
    fillResponse(response, answer);
    return answer.length;
}

int ProcessMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, unsigned timeoutSeconds)
{
    if (!driverInForce())
        return ProcessTimedMessage(request, response, timeoutSeconds);
    if (request->target != ipmi::address::bmc)
        return bridgeMessage(request, response);
    const int result = exchangeByDriver(request, response);
    return common::policy().reportsDriverErrors ? result : 0;
}

int ProcessTimedMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, unsigned timeoutSeconds)
{
    std::fill_n(response->data, presetResponseLength, std::uint8_t{0});
    // The kernel grants the privilege to the calling thread only, and any thread may come here.
    current<PortIo>().acquire();
    if (request->target != ipmi::address::bmc)
        return bridgeMessage(request, response);
    return exchangeDirectly(*request, *response, timeoutSeconds);
}

int SendTimedImbpRequest_t(const _IMBPREQUESTDATA* request, unsigned timeout, std::uint8_t* data, int* length,
                           std::uint8_t* completionCode)
{
    if (!request)
        return 1;
    if (transportState().g_UseUSB == 1) {
        const int interface = transportState().eInterface;
        if (interface == IPMI_INTERFACE_USB)
            return SendTimedUsbRequest(request, timeout, data, length, completionCode);
        if (interface == IPMI_INTERFACE_MIXED && request->dataLength >= usbFromDataLength &&
            SendTimedUsbRequest(request, timeout, data, length, completionCode) == 0)
            return 0;
    }
    return exchangeByKcs(*request, data, length, completionCode);
}
