#pragma once

#include "common/XNode.hpp"

#include <string>

namespace Module::BIOSConfig {

/// Queries of the "BIOS" tree that SMBIOS does not answer. The firmware's settings are out of reach here; what is told
/// is the model of the board.
class BIOSSettingsMgr {
public:
    /// "/BIOS/PlatformID": the platform's id, or without one the product name of the base board. Error 1001 for every
    /// other path, and when the model is not known. Throws what the reader and the platform throw.
    void ProcessXQuery(const std::string& query, ResultMap& results);
};

} // namespace Module::BIOSConfig
