#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Text and number routines that the engine's language is made of. All numbers of that language are text.
namespace Util {

/// Fields of `text` between any characters of `separators`; runs of separators yield no empty fields.
std::vector<std::string> split(std::string_view text, std::string_view separators);
/// All values with `separator` between them.
std::string join(std::span<const std::string> values, std::string_view separator);
std::string upcase(std::string text);
/// Every `from` replaced by `to`.
std::string replace_all(std::string text, std::string_view from, std::string_view to);

/// strtol in `base`, 0 on a range error.
long string_to_long(const std::string& text, int base);
/// "%d".
std::string int_to_string(int value);
/// "%x" into a buffer of 8 bytes: at most 7 digits.
std::string dec_to_hex_string(unsigned value);
/// "%lf": always six decimal places.
std::string double_to_string(double value);

} // namespace Util
