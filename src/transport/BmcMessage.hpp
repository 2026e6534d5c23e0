#pragma once

#include <cstdint>
#include <optional>

/// The one door through which in-band IPMI requests pass. It picks the road to the BMC at the first use (kernel driver,
/// KCS ports, USB session) and bridges requests for other controllers. Nothing here locks or throws: callers hold
/// "IPMI_EXEC_LOCK" around each exchange and judge by the results below.

namespace transport {

/// Results besides 0 (success) and 1 (failure).
inline constexpr int deviceIdFailed = -400;      ///< Get Device ID failed
inline constexpr int noBmcInterface = -502;      ///< nothing answers as a BMC
inline constexpr int ipmiTimeout = -504;         ///< time-out, or a driver error without a number of its own
inline constexpr int ipmiInvalidArgument = -516; ///< driver: EINVAL
inline constexpr int ipmiTryAgain = -517;        ///< driver: EAGAIN on receive
inline constexpr int ipmiBadAddress = -518;      ///< driver: EFAULT
inline constexpr int ipmiMessageSize = -519;     ///< driver: EMSGSIZE, or a request that no message can hold
inline constexpr int ipmiNoMemory = -520;        ///< driver: ENOMEM on send

} // namespace transport

/// An IPMI message, request or response. 64 KiB of data stand on the stack of whoever declares one, so it has no
/// initialisers, and only the header and `length` bytes of `data` are ever copied or read.
struct BMC_MESSAGE {
    std::uint8_t target; ///< responder's slave address, 8-bit form; 0x20 is the BMC
    std::uint8_t netFn;  ///< not shifted
    std::uint8_t lun;
    std::uint8_t cmd;
    std::uint8_t data[65536]; ///< without the completion code
    std::uint32_t length;     ///< valid bytes in `data`; 0xFFFFFFFF when the driver delivered an empty answer
    std::uint8_t completionCode;
};

/// A request as callers fill it; `data` stays theirs.
struct BMC_REQUEST {
    std::uint8_t target;
    std::uint8_t cmd;
    std::uint8_t netFn;
    std::uint8_t lun;
    std::uint32_t length; ///< bytes at `data`, at most 65535
    const std::uint8_t* data;
};

namespace transport {

/// The most data bytes that a BMC_RESPONSE is ever given.
inline constexpr std::uint32_t maxResponseData = 1023;

} // namespace transport

/// A response as callers get it.
struct BMC_RESPONSE {
    std::uint8_t length; ///< low 8 bits of the number of data bytes
    std::uint8_t completionCode;
    std::uint8_t cmd;
    std::uint8_t unused3;
    std::uint8_t netFn;
    std::uint8_t slave;
    std::uint8_t unused6;
    std::uint8_t data[transport::maxResponseData + 1];
};
static_assert(sizeof(BMC_RESPONSE) == 1031);

/// One direct exchange with the BMC, as the KCS and USB roads take it.
struct _IMBPREQUESTDATA {
    std::uint8_t cmd;
    std::uint8_t slave; ///< always 0x20
    std::uint8_t bus;   ///< always 0
    std::uint8_t netFn;
    std::uint8_t lun;
    const std::uint8_t* data;
    std::int32_t dataLength;
};

enum _IPMI_INTERFACE_TYPE : int {
    IPMI_INTERFACE_KCS = 0,
    IPMI_INTERFACE_USB = 1,
    IPMI_INTERFACE_MIXED = 2, ///< USB for requests of 129 data bytes and more, KCS for the rest
};

// --- Finding and choosing the interface -----------------------------------------------------------------------------

/// Opens the kernel driver, or else looks for a BMC by SMBIOS. Works once; every later call returns 0, also after a
/// failure. 0 or noBmcInterface.
int BmcLibInitialize();
/// Counterpart of BmcLibInitialize; 0.
int BmcLibDeinitialize();
/// Proves by SMBIOS and one port read that a KCS interface is there: 0, -1 or noBmcInterface.
int MainInit();
/// Hooks for a management service that would own the BMC; there is none, so both return 0.
int startIPMI();
int endIPMI();
/// Makes the layer ready, by BmcLibInitialize on the first call, and puts KCS (or the driver) in force: 0, or 1 when
/// there is no interface. Callers run it before their first request.
int InitilizeIPMB_Interface();
/// SelectIPMIInterface by type; true when the interface is selected.
bool SelectInterface(_IPMI_INTERFACE_TYPE type);
/// Changes between KCS (0), USB (1) and mixed (2). 1 when selected. 0 when there is no USB session to be had, a USB
/// session is already open, or the number is none of the three; what was in force stays then.
int SelectIPMIInterface(int type);
/// Loads the driver's modules again while USB is in use (see reinit_openipmi): 0 or -1.
int Reinitialize_OpenIPMI();

// --- Exchanges ------------------------------------------------------------------------------------------------------

/// One request with up to `retries` further tries. 0 with `response` filled (a completion code other than 0 is no
/// failure here), 1 when every try failed or the request is longer than 65535 bytes. Answers of 1024 data bytes and
/// more count as failed.
int SendRequest_Linux(const BMC_REQUEST* request, BMC_RESPONSE* response, int retries);

namespace transport {

/// The bits of the LUN that a direct request, or one that the driver addresses, bears on its way; by the policy, else
/// 0.
std::uint8_t carriedLun(std::uint8_t lun);

/// The same as SendRequest_Linux, with the number of data bytes as the result: `length` of the response holds only its
/// low 8 bits.
std::optional<std::uint32_t> sendRequest(const BMC_REQUEST& request, BMC_RESPONSE& response, int retries);

} // namespace transport

/// One exchange by the road in force; bridges when the target is not 0x20. 0, 1 or one of the numbers above. On the
/// driver's direct road it is always 0: a caller that must see a failure clears `length` and `completionCode` of the
/// response first. `timeoutSeconds` counts for USB only.
int ProcessMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, unsigned timeoutSeconds);
/// ProcessMessage without the kernel driver's direct road.
int ProcessTimedMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, unsigned timeoutSeconds);

/// Bridges one request by the kernel driver or by Send Message and Get Message (IPMI 2.0, 22.6 and 22.7), within a
/// fixed budget of 5 s. 0, or ipmiTimeout; ipmiMessageSize for a request that does not fit into a Send Message. A BMC
/// that keeps refusing the Send Message holds the caller here. `timeoutMs` is ignored.
int ProcessSendMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, std::uint8_t channel, std::uint8_t target,
                       unsigned timeoutMs);

/// One direct exchange by USB or KCS. `data` must have room for 65535 bytes; `length` gets the number of data bytes.
/// 0, or 1 on failure, which a frame without a completion code is as well. (USB only: 1 or 3.)
int SendTimedImbpRequest_t(const _IMBPREQUESTDATA* request, unsigned timeout, std::uint8_t* data, int* length,
                           std::uint8_t* completionCode);

/// Two's complement of the sum of `count` bytes (IPMI 2.0, 13.8); 0 for a count under 1.
std::uint8_t CalculateChecksum(const std::uint8_t* bytes, int count);

// --- What the BMC is ------------------------------------------------------------------------------------------------

/// Transport 2 and size 64 with the kernel driver, 0 and 128 without. Always 1.
int GetKCSTransportandSize(std::uint32_t* transport, std::uint32_t* size);
/// Bytes that a partial read of `target` should ask for.
std::uint32_t GetDriverBufferSize(std::uint8_t target);

// --- For other callers -----------------------------------------------------------------------------------------------
// The agent itself calls nothing of what follows.

/// BmcLibDeinitialize and BmcLibInitialize; true when the latter failed.
bool Freelibrary();
/// The unrestricted form: up to 200 rounds. 0, also when no answer came; 1 when memory runs out.
int SendMessage_Linux(const BMC_REQUEST* request, BMC_RESPONSE* response, std::uint8_t channel, std::uint8_t target);
/// Type 2 for the product ids 4311h, 4312h and 4315h, else 1; 0 with the error as result when Get Device ID failed.
int GetBmcType(std::uint32_t* type);
/// The type and the IPMI version (1 for 1.5, 2 for 2.0), read once and cached: 0, deviceIdFailed or another error.
int GetBmcTypeVersion(std::uint32_t* type, std::uint32_t* version);
/// The highest power of two not above `value`; 0 for 0.
unsigned lowestp2(unsigned value);

// Firmware programming. The senses of success differ from one another; the flash tools count on it.

/// Bridges by hand for firmware traffic: 5 attempts (23 for netFn 8) instead of a clock. Fills length, completionCode
/// and data of `response`. 0 with an answer, else 1.
int SendMessagePX_Linux(const BMC_REQUEST* request, BMC_RESPONSE* response, std::uint8_t channel, std::uint8_t target);
/// Writes `count` bytes to a flash area by SendMessagePX_Linux, up to 4 tries 2000 s apart. 0 only after a try for
/// which that returned 1 with completion code 0 in the buffer, else 1.
int WriteToAreaCmd(std::uint8_t target, std::uint8_t area, const std::uint8_t* data, std::uint32_t count);
/// Selects a flash segment, up to 4 tries. The completion code of the answer, 0 when there was none.
int ProgramSegment(std::uint8_t target, std::uint16_t segment);
/// Writes `count` bytes at `offset` of the segment, up to 4 tries. 1 with an answer, else 0.
int ProgramData(std::uint8_t target, std::uint16_t offset, const std::uint8_t* data, std::uint32_t count);
