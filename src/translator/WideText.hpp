#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace translator {

/// Wide texts of the translator: each character stands for one byte.

/// The low byte of each character.
std::string narrowText(std::wstring_view text);
/// Each byte as one character.
std::wstring widenText(std::string_view text);

/// `value` in hexadecimal digits of the case of "%x" (or "%X"), padded with zeros on the left to `width`.
std::wstring hexText(std::uint32_t value, int width = 1, bool upperCase = false);
/// `value` in decimal, padded with zeros on the left to `width`.
std::wstring decimalText(int value, int width = 1);
/// A sensor's value with at most three decimal places and no trailing zeros.
std::wstring valueText(double value);

} // namespace translator
