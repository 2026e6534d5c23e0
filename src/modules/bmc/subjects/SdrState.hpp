#pragma once

#include <optional>
#include <string>

namespace Module::BMCConfig {

/// What a controller says of its repository as a whole (Get SDR Repository Info, IPMI 2.0, 33.9).
struct SdrState {
    unsigned count = 0; ///< of records
    /// Count and time stamps as text, which is another one after each change; empty if the controller keeps no stamps.
    std::string mark;
};

/// One exchange; nothing if the controller does not tell. Errors of the message layer pass through as ResultStatus.
std::optional<SdrState> readSdrState();

/// Which controller it is, and with which firmware: the answers to Get Device ID and Get System GUID (20.1, 22.14) as
/// text; empty if it does not tell. Two exchanges.
std::string readControllerIdentity();

} // namespace Module::BMCConfig
