#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace common {

struct ConfigEntry {
    std::string key; ///< lower case, without blanks
    std::string value;
    int line = 0; ///< of the file, from 1
};

/// The entry of one line, without its line end; nothing for a comment and for a line that is too short or has no "=".
/// A NUL ends the line.
std::optional<ConfigEntry> parseConfigLine(std::string_view line);

using TakeEntry = std::function<void(const ConfigEntry& entry)>;
using TakeOddLine = std::function<void(int line, const char* why)>;

/// Hands every entry of the file to `take`, in order. Lines that are no comments and hold none, or have 1,024
/// characters and more, are passed over; `takeOdd` is told of them. False if it could not be opened or is no regular
/// file.
bool readConfigFile(const std::string& path, const TakeEntry& take, const TakeOddLine& takeOdd = {});

} // namespace common
