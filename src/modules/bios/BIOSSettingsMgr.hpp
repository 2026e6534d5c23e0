#pragma once

#include "common/XNode.hpp"

#include <string>

namespace Module::BIOSConfig {

/// Queries of the "BIOS" tree that SMBIOS does not answer. The firmware's settings are out of reach here; what is told
/// is the model of the board.
class BIOSSettingsMgr {
public:
    /// "/BIOS/PlatformID": the platform's id, without one the product name of the base board, or "Unknown". Error 1001
    /// for every other path.
    void ProcessXQuery(const std::string& query, ResultMap& results);
};

} // namespace Module::BIOSConfig
