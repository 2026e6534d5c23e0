#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The small tests and conversions of the template language, whose numbers are all text.
namespace Module::BMCConfig {

/// True if `text` holds hexadecimal digits only; an empty text passes.
bool test_for_hex(std::string_view text);
/// True if `text` holds decimal digits only; an empty text passes.
bool test_for_integer(std::string_view text);
inline bool check_if_number(std::string_view text)
{
    return test_for_integer(text);
}

long toDecimal(const std::string& text);
/// The completion code, in decimal at the head of a reply; -1 without one.
int codeOf(const std::vector<std::string>& reply);
/// Two digits of the lowest byte.
std::string toHex(std::size_t value);
/// "%x" with all its digits.
std::string hexText(unsigned value);
/// Base 10 to "%x".
std::string dec_to_hex(const std::string& text);
/// Base 16 to "%d".
std::string hex_to_dec(const std::string& text);

/// A separator as operands write it: ":SPACE" and ":COMMA" stand for themselves.
std::string separatorText(std::string text);
/// `values` with `separator` between them; in groups other than 1, pairs of values with `separator` between the pairs,
/// a pair every `group` values. `group` must be above 0.
std::string joinGroups(const std::vector<std::string>& values, const std::string& separator, long group);
/// The fields that the decimal `indexes` name, in the indexes' order; the one value "ERROR" if any lies outside.
std::vector<std::string> pickFields(const std::vector<std::string>& fields, const std::vector<std::string>& indexes);

/// True for a text of six hexadecimal bytes parted by ":" or "-"; `normalised` gets two digits a byte, upper case,
/// parted by ":".
bool validate_mac(const std::string& text, std::string& normalised);
/// True for an IPv6 address in any notation of RFC 4291, 2.2; `normalised` gets eight groups of four digits.
bool validate_ipv6(const std::string& text, std::string& normalised);

} // namespace Module::BMCConfig
