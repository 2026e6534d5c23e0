#pragma once

#include "common/XNode.hpp"

#include <map>
#include <string>

namespace Module::BIOSConfig {

/// What the director sees of the "BIOS" and "SMBIOS" trees. Built for one query and destroyed after it. Neither tree is
/// served: every query is refused with error 1001.
class BIOSConfigModule {
public:
    /// GET.
    void ProcessXQuery(const std::string& query, ResultMap& results);
    /// SET of a whole map of query to value.
    void ProcessXQuery(const std::map<std::string, std::string>& values, bool flag);
    /// SET with named parameters.
    void ProcessXQuery(const std::string& query, const std::map<std::string, std::string>& parameters);
};

} // namespace Module::BIOSConfig
