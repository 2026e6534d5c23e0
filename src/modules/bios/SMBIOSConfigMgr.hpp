#pragma once

#include "common/XNode.hpp"

#include <string>

namespace Module::BIOSConfig {

/// Queries of the "SMBIOS" tree.
class SMBIOSConfigMgr {
public:
    /// Answers `query`, with the words of memory types set right: tables of newer platforms call "Other" what is DDR3.
    /// A last token "@children" asks for the paths right below. Throws what the reader and the platform throw, and 1029
    /// when there is no platform layer.
    void ResolveQuery(const std::string& query, ResultMap& results);
};

} // namespace Module::BIOSConfig
