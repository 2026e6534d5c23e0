#pragma once

#include <cstdint>

/// Numbers that say what a message is: network functions, commands, completion codes, addresses, channels. One name a
/// number; chapters are those of IPMI 2.0.
namespace ipmi {

/// Network functions of requests, unshifted (5.1); an answer carries the request's plus 1. Those from 30h on are the
/// manufacturer's own, as is the use of `firmware`.
namespace netfn {
inline constexpr std::uint8_t chassis = 0x00, sensorEvent = 0x04, app = 0x06, firmware = 0x08, storage = 0x0A,
                              transport = 0x0C, oemPlatform = 0x30, oemGeneral = 0x3E;
} // namespace netfn

/// Commands, by network function (appendix G).
namespace cmd {

// Chassis (28).
inline constexpr std::uint8_t getChassisCapabilities = 0x00, getChassisStatus = 0x01, chassisControl = 0x02,
                              chassisIdentify = 0x04, setPowerRestorePolicy = 0x06, getSystemRestartCause = 0x07,
                              setSystemBootOptions = 0x08, getSystemBootOptions = 0x09, setFrontPanelEnables = 0x0A;

// Sensor and event (35), event filtering (30).
inline constexpr std::uint8_t getPefCapabilities = 0x10, setPefConfiguration = 0x12, getPefConfiguration = 0x13,
                              alertImmediate = 0x16, petAcknowledge = 0x17, setSensorThresholds = 0x26,
                              getSensorThresholds = 0x27, setSensorEventEnable = 0x28, getSensorEventEnable = 0x29,
                              rearmSensorEvents = 0x2A, getSensorReading = 0x2D;

// Application (20 and 22).
inline constexpr std::uint8_t getDeviceId = 0x01, getSelfTestResults = 0x04, getAcpiPowerState = 0x07,
                              getMessage = 0x33, sendMessage = 0x34, getSystemGuid = 0x37, setChannelAccess = 0x40,
                              getChannelAccess = 0x41, getChannelInfo = 0x42, setUserAccess = 0x43,
                              getUserAccess = 0x44, setUserName = 0x45, getUserName = 0x46, setUserPassword = 0x47,
                              setUserPayloadAccess = 0x4C, getUserPayloadAccess = 0x4D, masterWriteRead = 0x52;

// Storage: inventory (34), sensor data repository (33), event log (31).
inline constexpr std::uint8_t getFruInventoryAreaInfo = 0x10, readFruData = 0x11, writeFruData = 0x12;
inline constexpr std::uint8_t getSdrRepositoryInfo = 0x20, getSdrRepositoryAllocationInfo = 0x21,
                              reserveSdrRepository = 0x22, getSdr = 0x23, partialAddSdr = 0x25,
                              clearSdrRepository = 0x27;
inline constexpr std::uint8_t getSelInfo = 0x40, reserveSel = 0x42, getSelEntry = 0x43, clearSel = 0x47,
                              getSelTime = 0x48;

// LAN and serial over LAN (23 and 26).
inline constexpr std::uint8_t setLanConfiguration = 0x01, getLanConfiguration = 0x02, setSolConfiguration = 0x21,
                              getSolConfiguration = 0x22;

// The manufacturer's own, under `firmware` (1 to 0Fh) and the two OEM functions.
inline constexpr std::uint8_t enterFirmwareTransfer = 0x00, programData = 0x01, satelliteReset = 0x04,
                              programSegment = 0x05, getFirmwareUpdateStatus = 0x0F, writeToArea = 0xA2;
inline constexpr std::uint8_t extendedSelInfo = 0x20, smbiosRegionStatus = 0x20, extendedSelAllocationInfo = 0x21,
                              extendedSelEntry = 0x23, readSmbiosRegion = 0x23, getAdvancedSupport = 0x5A,
                              getAddInSupport = 0x5B, getBufferSize = 0x5C, controlSdrConfiguration = 0x70,
                              writeSdrConfiguration = 0x71, readSdrConfiguration = 0x72, manageSdrConfiguration = 0x73,
                              setLanFailoverMode = 0x67, getLanFailoverMode = 0x68, resolveMacAddress = 0x69,
                              getLedStatus = 0xB0;

} // namespace cmd

/// Completion codes (table 5-2). Those below C0h are a command's own.
namespace completion {
inline constexpr std::uint8_t ok = 0x00, nodeBusy = 0xC0, invalidCommand = 0xC1, invalidForLun = 0xC2, timeout = 0xC3,
                              outOfSpace = 0xC4, reservationLost = 0xC5, requestTruncated = 0xC6,
                              requestLengthInvalid = 0xC7, fieldLengthExceeded = 0xC8, parameterOutOfRange = 0xC9,
                              tooManyBytesRequested = 0xCA, notPresent = 0xCB, invalidDataField = 0xCC,
                              illegalForType = 0xCD, noResponse = 0xCE, sdrUpdating = 0xD0, firmwareUpdating = 0xD1,
                              initializing = 0xD2, destinationUnavailable = 0xD3, insufficientPrivilege = 0xD4,
                              unavailableInState = 0xD5, subFunctionDisabled = 0xD6, unspecified = 0xFF;
inline constexpr std::uint8_t queueEmpty = 0x80;      ///< Get Message: nothing there (22.6)
inline constexpr std::uint8_t writeProtected = 0x80;  ///< Write FRU Data: the offset is (34.3)
inline constexpr std::uint8_t fruBusy = 0x81;         ///< Read and Write FRU Data (34.2 and 34.3)
inline constexpr std::uint8_t lostArbitration = 0x81; ///< Send Message: the bus was another's (22.7)
inline constexpr std::uint8_t nakOnWrite = 0x83;      ///< Send Message: nobody took it (22.7)
} // namespace completion

/// Whether a controller says with `code` that it has no time now, and may have it a moment later.
constexpr bool isBusy(int code)
{
    return code == completion::nodeBusy || code == completion::timeout || code == completion::initializing;
}

/// Slave addresses in the 8-bit form. Only the BMC's is the standard's (IPMB Address Allocation); the others are the
/// manufacturer's satellites.
namespace address {
inline constexpr std::uint8_t bmc = 0x20, frontPanel = 0x22, chipsetEngine = 0x2C, secondEngine = 0x88, hotSwap = 0xC0,
                              secondHotSwap = 0xC2;
} // namespace address

/// Channels (6.3).
namespace channel {
inline constexpr std::uint8_t primaryIpmb = 0x00, engine = 0x06, systemInterface = 0x0F;
} // namespace channel

} // namespace ipmi
