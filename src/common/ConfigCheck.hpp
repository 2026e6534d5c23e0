#pragma once

#include <string>
#include <vector>

namespace common {

/// What is odd about a line of hwagent.conf.
struct ConfigRemark {
    int line = 0; ///< from 1
    std::string text;
};

/// All that is odd about the file, in the order of its lines: unknown keys, values that are not what a key takes, keys
/// that come again, lines that are passed over. None for a file that cannot be read.
std::vector<ConfigRemark> checkConfigFile(const std::string& path);

} // namespace common
