#pragma once

#include "modules/bmc/engine/Stores.hpp"

#include <string>
#include <vector>

/// What a script does with values, in words, as its steps say it.
namespace Module::BMCConfig {

/// What a caller writes for the value in `symbol`: "DISABLE or ENABLE", "0 to 255", "IPv4 address". Empty if the script
/// and those that it calls never look at it.
std::string formOfValue(const Stores& stores, const std::string& key, const std::string& symbol);
/// What a script's answer looks like: "number", "OFF or ON".
std::string formOfAnswer(const Stores& stores, const std::string& key);
/// The subscripts of a key with the numbers that they take, "LAN 1 to 14", or "LAN" where it takes any.
std::vector<std::string> subscriptsOf(const Stores& stores, const std::string& key);

} // namespace Module::BMCConfig
