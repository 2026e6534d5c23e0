#pragma once

#include "ipmi/Codes.hpp"
#include "transport/BmcMessage.hpp"

namespace transport {

/// Small routines over a BMC_MESSAGE that the files of the message layer share.

/// Clears what a caller may look at before an answer has come, which on the driver's direct road may be never. With a
/// length of 0 nobody looks at the data.
inline void clearHeader(BMC_MESSAGE& message)
{
    message.target = message.netFn = message.lun = message.cmd = 0;
    message.length = 0;
    message.completionCode = 0;
}

/// Makes a request to the BMC without data.
inline void fillPlainRequest(BMC_MESSAGE& message, std::uint8_t netFn, std::uint8_t cmd)
{
    clearHeader(message);
    message.target = ipmi::address::bmc;
    message.netFn = netFn;
    message.cmd = cmd;
}

/// The channel on which the controller at `target` is reached.
constexpr std::uint8_t channelOfTarget(std::uint8_t target)
{
    const bool onEngine = target == ipmi::address::chipsetEngine || target == ipmi::address::secondEngine;
    return onEngine ? ipmi::channel::engine : ipmi::channel::primaryIpmb;
}

/// Data byte `index`, or 0 where the answer is too short to have it.
inline std::uint8_t dataByte(const BMC_MESSAGE& message, std::uint32_t index)
{
    return message.length <= sizeof message.data && index < message.length ? message.data[index] : std::uint8_t{0};
}

} // namespace transport
