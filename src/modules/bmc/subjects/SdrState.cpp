#include "modules/bmc/subjects/SdrState.hpp"

#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"
#include "platform/IpmiExchange.hpp"

#include <cstdint>
#include <span>
#include <vector>

namespace Module::BMCConfig {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t countAt = 1, additionAt = 5, erasureAt = 9, infoBytes = 13, stampBytes = 4;
/// In the answer to Get Device ID: set while the controller is busy with itself.
constexpr std::size_t availabilityAt = 2;
constexpr std::uint8_t revisionMask = 0x7F;

/// The answer's data; empty when it has a completion code.
Bytes ask(std::uint8_t netFn, std::uint8_t cmd)
{
    std::vector<std::string> reply;
    Platform::exchangeIpmi({ipmi::hexByte(ipmi::address::bmc), ipmi::hexByte(netFn), "00", ipmi::hexByte(cmd)}, {},
                           reply);
    if (reply.empty() || reply.front() != "0")
        return {};
    reply.erase(reply.begin());
    return ipmi::parseBytes(reply);
}

bool isStamp(std::span<const std::uint8_t> bytes)
{
    const std::uint32_t seconds =
        bytes[0] | bytes[1] << 8U | bytes[2] << 16U | static_cast<std::uint32_t>(bytes[3]) << 24;
    return seconds != 0 && seconds != 0xFFFFFFFF;
}

} // namespace

std::optional<SdrState> readSdrState()
{
    const Bytes info = ask(ipmi::netfn::storage, ipmi::cmd::getSdrRepositoryInfo);
    if (info.size() < infoBytes)
        return std::nullopt;
    const std::span<const std::uint8_t> bytes(info);
    const auto addition = bytes.subspan(additionAt, stampBytes), erasure = bytes.subspan(erasureAt, stampBytes);
    SdrState state{.count = static_cast<unsigned>(bytes[countAt] | bytes[countAt + 1] << 8), .mark = {}};
    if (isStamp(addition) || isStamp(erasure))
        state.mark = std::to_string(state.count) + " " + ipmi::hexBytes(addition) + " " + ipmi::hexBytes(erasure);
    return state;
}

std::string readControllerIdentity()
{
    Bytes device = ask(ipmi::netfn::app, ipmi::cmd::getDeviceId);
    if (device.size() <= availabilityAt)
        return {};
    device[availabilityAt] &= revisionMask;
    return ipmi::hexBytes(device) + "/" + ipmi::hexBytes(ask(ipmi::netfn::app, ipmi::cmd::getSystemGuid));
}

} // namespace Module::BMCConfig
