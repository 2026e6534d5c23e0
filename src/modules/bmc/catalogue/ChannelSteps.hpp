#pragma once

#include "modules/bmc/catalogue/Steps.hpp"

namespace Module::BMCConfig::steps {

/// Asks all channels for their medium and collects those that `table` knows: their numbers, decimal, in the list
/// $CHANNELS, and "`name`[number]" in the list $MEMBERS. $CHANNEL_NUMBER is used up.
Steps findChannels(const std::string& table, const std::string& name);

} // namespace Module::BMCConfig::steps
