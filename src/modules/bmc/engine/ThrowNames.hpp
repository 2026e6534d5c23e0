#pragma once

#include <string>
#include <string_view>

namespace Module::BMCConfig {

/// The error code of a name that scripts give to Throw: an error of the catalogue ("ERROR_LAN_IP_SET" 1185) or the name
/// of a completion code as IPMIResponse leaves it ("RESPONSE_ERROR_TIME_OUT" 2004). 0 for a name that is not known.
int throwCode(std::string_view name);

/// The name of a completion code, which comes as decimal text: "193" is "RESPONSE_ERROR_INVALID_COMMAND", one that has
/// no name "IPMI_RESPONSE_ERROR".
std::string completionName(const std::string& code);

} // namespace Module::BMCConfig
