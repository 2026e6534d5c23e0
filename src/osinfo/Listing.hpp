#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace osinfo {

/// Lines and numbers of the texts that the inventory is read from.

/// The lines of the file, each cut to 255 characters; none if it can't be read.
std::vector<std::string> linesOfFile(const std::string& absolutePath);

/// The lines that a program prints in English, of both its streams, each cut to 255 characters; none if it could not be
/// run. They pass through memory of this process alone, so that no file of others can stand in their place.
std::vector<std::string> linesOfCommand(std::vector<std::string> argv);

/// The words between blanks.
std::vector<std::string> wordsOf(std::string_view line);

/// A whole number without sign, and nothing behind it.
std::optional<unsigned long long> parseNumber(std::string_view text);

} // namespace osinfo
