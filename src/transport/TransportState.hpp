#pragma once

#include "common/Seams.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/SilenceWatch.hpp"

#include <array>
#include <cstdint>
#include <optional>

namespace transport {

/// Sequence number of hand-made bridging: 1 to 3Fh, never 0.
class BridgeSequence {
public:
    std::uint8_t current() const { return value; }
    void advance() { value = value == 0x3F ? 1 : static_cast<std::uint8_t>(value + 1); }

private:
    std::uint8_t value = 1;
};

/// What tells a request from others: target, network function, LUN, command, first data byte.
using RequestKey = std::array<std::uint8_t, 5>;

/// Everything the transport remembers between calls. One per process, guarded by the callers' exchange lock.
struct TransportState {
    int OpenIPMIPresence = 0; ///< 1 when the kernel driver's device opened
    int openIPMIfd = -1;
    long lastMsgid = 0;               ///< of the messages with numbers of their own
    Clock::SteadyPoint nextOpening{}; ///< when a device that is not there may be looked for again
    int g_UseUSB = 0;                 ///< 1 while a USB session is open
    int eInterface = IPMI_INTERFACE_KCS;
    int g_Mbmcsupport = 0;            ///< 1: SMBIOS names an interface other than KCS; 2: a service owns the BMC
    std::uint32_t kcsBaseAddress = 0; ///< found by SMBIOS, for the presence probe alone
    std::uint32_t g_bmcType = 0;
    std::uint32_t g_ipmiVersion = 0;

    BridgeSequence processSendSequence;
    BridgeSequence sendMessageSequence;
    BridgeSequence sendMessagePxSequence;
    bool incTestCount = false; ///< SendMessagePX_Linux met code 83h once
    bool libInitialized = false;
    std::optional<int> initializeResult; ///< of the one BmcLibInitialize that InitilizeIPMB_Interface makes

    std::uint8_t Status = 0; ///< last KCS state read

    SilenceWatch silence;
    SatelliteWatch satellites;
    std::array<RequestKey, 64> lostRequests{}; ///< that used their time up in vain; the oldest gives way
    std::size_t nextLostRequest = 0;

    void* hUsbSession = nullptr;
    std::array<std::uint8_t, 55> sessionHandle{};
};

TransportState& transportState();

/// Puts all module state back to its values at load time. For tests: nothing is closed, so a test that opened a device
/// or a USB session closes it first.
void resetTransportForTests();

} // namespace transport
