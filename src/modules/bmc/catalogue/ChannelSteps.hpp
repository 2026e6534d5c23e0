#pragma once

#include "modules/bmc/catalogue/Steps.hpp"

namespace Module::BMCConfig::steps {

/// Asks all channels for their medium and collects those that `table` knows: their numbers, decimal, in the list
/// $CHANNELS, and "`name`[number]" in the list $MEMBERS. $CHANNEL_NUMBER is used up.
Steps findChannels(const std::string& table, const std::string& name);

/// Whether a user may open serial over LAN, payload type 1, on a channel (IPMI 2.0, 24.6): the word in $PAYLOADACCESS.
Script setPayloadAccess(const std::string& packet);

} // namespace Module::BMCConfig::steps
