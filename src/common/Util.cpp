#include "common/Util.hpp"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace Util {

std::vector<std::string> split(std::string_view text, std::string_view separators)
{
    const auto separates = [separators](char c) {
        return separators.size() == 1 ? c == separators.front() : separators.find(c) != std::string_view::npos;
    };
    std::vector<std::string> fields;
    for (auto at = std::ranges::find_if_not(text, separates); at != text.end();) {
        const auto end = std::find_if(at, text.end(), separates);
        fields.emplace_back(at, end);
        at = std::find_if_not(end, text.end(), separates);
    }
    return fields;
}

std::string join(std::span<const std::string> values, std::string_view separator)
{
    std::string text;
    for (const std::string& value : values) {
        if (&value != values.data())
            text += separator;
        text += value;
    }
    return text;
}

std::string upcase(std::string text)
{
    for (char& c : text)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return text;
}

std::string replace_all(std::string text, std::string_view from, std::string_view to)
{
    for (std::size_t at = 0; !from.empty() && (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

long string_to_long(const std::string& text, int base)
{
    errno = 0;
    const long value = std::strtol(text.c_str(), nullptr, base);
    return errno == ERANGE ? 0 : value;
}

std::string int_to_string(int value)
{
    return std::to_string(value);
}

std::string dec_to_hex_string(unsigned value)
{
    constexpr std::size_t mostDigits = 7;
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, 16).ptr;
    return {digits, std::min<std::size_t>(static_cast<std::size_t>(end - digits), mostDigits)};
}

std::string double_to_string(double value)
{
    // 309 digits before the point, six behind it, sign and terminator
    char text[320];
    const int length = std::snprintf(text, sizeof text, "%f", value);
    return {text, static_cast<std::size_t>(std::clamp<int>(length, 0, sizeof text - 1))};
}

} // namespace Util
