#pragma once

#include "modules/bmc/catalogue/Steps.hpp"

namespace Module::BMCConfig {

/// The packet of all commands whose number only the machine's own documentation has: the caller gives it as COMMAND,
/// and what is to be sent as DATA, both hexadecimal. No number is guessed, since another board's may do harm.
inline constexpr char unnumberedCommand[] = "$/BMC/BASE_ADDRESS $/IPMI/ORVEL_PLATFORM_APP 00 $/OEM/COMMAND $/OEM/DATA";

namespace steps {

/// Takes both for the packet; throws 1089 without COMMAND, and 1091 for what are no bytes.
Steps takeCommand();

} // namespace steps

} // namespace Module::BMCConfig
