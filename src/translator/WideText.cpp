#include "translator/WideText.hpp"

#include <array>
#include <charconv>
#include <cstdio>

namespace translator {

namespace {

std::wstring padded(std::string_view digits, int width)
{
    std::wstring text;
    if (static_cast<int>(digits.size()) < width)
        text.assign(static_cast<std::size_t>(width) - digits.size(), L'0');
    text.append(digits.begin(), digits.end());
    return text;
}

} // namespace

std::string narrowText(std::wstring_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (wchar_t character : text)
        bytes.push_back(static_cast<char>(character));
    return bytes;
}

std::wstring widenText(std::string_view text)
{
    std::wstring wide;
    wide.reserve(text.size());
    for (char byte : text)
        wide.push_back(static_cast<unsigned char>(byte));
    return wide;
}

std::wstring hexText(std::uint32_t value, int width, bool upperCase)
{
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value, 16).ptr;
    for (auto digit = digits.begin(); upperCase && digit != end; ++digit)
        *digit = static_cast<char>(*digit >= 'a' ? *digit - 'a' + 'A' : *digit);
    return padded({digits.begin(), end}, width);
}

std::wstring decimalText(int value, int width)
{
    std::array<char, 12> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
    return padded({digits.begin(), end}, width);
}

std::wstring valueText(double value)
{
    std::array<char, 64> digits{};
    const auto [end, error] = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, 3);
    if (error != std::errc{}) {
        const int length = std::snprintf(digits.data(), digits.size(), "%.6g", value);
        return widenText({digits.data(), static_cast<std::size_t>(length)});
    }
    std::string_view text{digits.begin(), end};
    text.remove_suffix(text.size() - 1 - text.find_last_not_of('0'));
    if (text.back() == '.')
        text.remove_suffix(1);
    return text == "-0" ? L"0" : widenText(text);
}

} // namespace translator
