#include "ipmi/Codes.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/MessageRecords.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>
#include <array>
#include <bit>

using namespace transport;

namespace {

constexpr unsigned deviceIdTimeoutSeconds = 5;

// Answer to Get Device ID (IPMI 2.0, 20.1), counted behind the completion code.
constexpr std::uint32_t deviceIdIpmiVersion = 4;
constexpr std::uint32_t deviceIdProduct = 9;

constexpr std::array<unsigned, 3> type2Products = {0x4311, 0x4312, 0x4315};

constexpr std::uint8_t ipmi15 = 0x51;
constexpr std::uint8_t ipmi20 = 0x02;

constexpr std::uint32_t driverTransport = 2, driverSize = 64;
constexpr std::uint32_t portTransport = 0, portSize = 128;

int getDeviceId(BMC_MESSAGE& answer)
{
    BMC_MESSAGE request;
    fillPlainRequest(request, ipmi::netfn::app, ipmi::cmd::getDeviceId);
    clearHeader(answer);
    return ProcessMessage(&request, &answer, deviceIdTimeoutSeconds);
}

std::uint32_t typeOf(const BMC_MESSAGE& deviceId)
{
    const unsigned product = dataByte(deviceId, deviceIdProduct) | dataByte(deviceId, deviceIdProduct + 1) << 8;
    return std::ranges::find(type2Products, product) != type2Products.end() ? 2 : 1;
}

void noteIpmiVersion(const BMC_MESSAGE& deviceId)
{
    const std::uint8_t version = dataByte(deviceId, deviceIdIpmiVersion);
    if (version == ipmi15)
        transportState().g_ipmiVersion = 1;
    else if (version == ipmi20)
        transportState().g_ipmiVersion = 2;
}

int readTypeVersion()
{
    TransportState& state = transportState();
    BMC_MESSAGE answer;
    if (getDeviceId(answer) != 0)
        return deviceIdFailed;
    state.g_bmcType = typeOf(answer);
    if (const int error = getDeviceId(answer)) {
        state.g_bmcType = 0;
        return error;
    }
    noteIpmiVersion(answer);
    return 0;
}

} // namespace

int GetBmcType(std::uint32_t* type)
{
    BMC_MESSAGE answer;
    const int result = getDeviceId(answer);
    *type = result == 0 ? typeOf(answer) : 0;
    return result;
}

int GetBmcTypeVersion(std::uint32_t* type, std::uint32_t* version)
{
    const TransportState& state = transportState();
    if (state.g_bmcType == 0)
        if (const int error = readTypeVersion())
            return error;
    *type = state.g_bmcType;
    *version = state.g_ipmiVersion;
    return 0;
}

int GetKCSTransportandSize(std::uint32_t* transport, std::uint32_t* size)
{
    const bool byDriver = transportState().OpenIPMIPresence == 1;
    *transport = byDriver ? driverTransport : portTransport;
    *size = byDriver ? driverSize : portSize;
    return 1;
}

std::uint32_t GetDriverBufferSize(std::uint8_t target)
{
    std::uint32_t transport = 0;
    std::uint32_t size = 0;
    GetKCSTransportandSize(&transport, &size);
    if (target == ipmi::address::bmc || target == ipmi::address::chipsetEngine)
        return size;
    return transport == 1 || transport == 2 ? size / 2 : size;
}

unsigned lowestp2(unsigned value)
{
    return std::bit_floor(value);
}
