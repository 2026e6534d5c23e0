#pragma once

#include <cstdint>

/// The protocol bytes that the transport itself puts on the wire or looks for, one name each. Numbers: IPMI 2.0.
namespace ipmi {

// Network functions, unshifted; an answer carries the request's plus 1 (IPMI 2.0, 5.1).
inline constexpr std::uint8_t netFnApp = 0x06;
inline constexpr std::uint8_t netFnFirmware = 0x08;
inline constexpr std::uint8_t netFnOemGeneral = 0x30;

// Commands of netFnApp (IPMI 2.0, appendix G).
inline constexpr std::uint8_t cmdGetDeviceId = 0x01;
inline constexpr std::uint8_t cmdGetMessage = 0x33;
inline constexpr std::uint8_t cmdSendMessage = 0x34;

// Commands of the flash programming interface.
inline constexpr std::uint8_t cmdProgramData = 0x01;
inline constexpr std::uint8_t cmdProgramSegment = 0x05;
inline constexpr std::uint8_t cmdWriteToArea = 0xA2;
inline constexpr std::uint8_t cmdSatelliteReset = 0x04;

// Completion codes (IPMI 2.0, table 5-2; 0x80 and 0x83 are those of Get Message and Send Message).
inline constexpr std::uint8_t completionOk = 0x00;
inline constexpr std::uint8_t completionQueueEmpty = 0x80;
inline constexpr std::uint8_t completionNakOnWrite = 0x83;
inline constexpr std::uint8_t completionUnspecified = 0xFF;

// Slave addresses in the 8-bit form.
inline constexpr std::uint8_t slaveBmc = 0x20;
inline constexpr std::uint8_t slaveSatellite = 0x22; ///< slow to answer; its reset (command 4) gives no answer at all
inline constexpr std::uint8_t slaveEngine = 0x2C;
inline constexpr std::uint8_t slaveSecondEngine = 0x88;

// Channels (IPMI 2.0, 6.3).
inline constexpr std::uint8_t channelPrimaryIpmb = 0x00;
inline constexpr std::uint8_t channelEngine = 0x06;
inline constexpr std::uint8_t channelSystemInterface = 0x0F;

/// The channel on which the controller at `target` is reached.
constexpr std::uint8_t channelOfTarget(std::uint8_t target)
{
    return target == slaveEngine || target == slaveSecondEngine ? channelEngine : channelPrimaryIpmb;
}

} // namespace ipmi
