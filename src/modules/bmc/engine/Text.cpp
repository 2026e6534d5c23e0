#include "modules/bmc/engine/Text.hpp"

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace Module::BMCConfig {

namespace {

constexpr std::size_t bytesOfMac = 6;

bool isByteText(const std::string& text)
{
    return (text.size() == 1 || text.size() == 2) && test_for_hex(text);
}

} // namespace

bool test_for_hex(std::string_view text)
{
    return text.find_first_not_of("0123456789ABCDEFabcdef") == std::string_view::npos;
}

bool test_for_integer(std::string_view text)
{
    return text.find_first_not_of("0123456789") == std::string_view::npos;
}

long toDecimal(const std::string& text)
{
    return std::strtol(text.c_str(), nullptr, 10);
}

int codeOf(const std::vector<std::string>& reply)
{
    constexpr int noAnswer = -1;
    return reply.empty() || reply.front().empty() || !test_for_integer(reply.front())
               ? noAnswer
               : static_cast<int>(toDecimal(reply.front()));
}

std::string toHex(std::size_t value)
{
    return ipmi::hexByte(static_cast<std::uint8_t>(value));
}

std::string hexText(unsigned value)
{
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, 16).ptr;
    return {digits, end};
}

std::string dec_to_hex(const std::string& text)
{
    return hexText(static_cast<unsigned>(toDecimal(text)));
}

std::string hex_to_dec(const std::string& text)
{
    return Util::int_to_string(static_cast<int>(std::strtol(text.c_str(), nullptr, 16)));
}

std::string separatorText(std::string text)
{
    if (text == ":SPACE")
        return " ";
    if (text == ":COMMA")
        return ",";
    return text;
}

std::string joinGroups(const std::vector<std::string>& values, const std::string& separator, long group)
{
    if (group == 1)
        return Util::join(values, separator);
    const std::size_t step = static_cast<std::size_t>(group);
    std::string text;
    for (std::size_t at = 0; at < values.size(); at += step) {
        if (at > 0)
            text += separator;
        text += values[at];
        if (at + 1 == values.size())
            break;
        const std::string& second = values[at + 1];
        if (second.size() == 1)
            text += '0';
        text += second;
    }
    return text;
}

std::vector<std::string> pickFields(const std::vector<std::string>& fields, const std::vector<std::string>& indexes)
{
    std::vector<std::string> picked;
    for (const std::string& index : indexes) {
        const unsigned long at = std::strtoul(index.c_str(), nullptr, 10);
        if (at >= fields.size())
            return {"ERROR"};
        picked.push_back(fields[at]);
    }
    return picked;
}

bool validate_mac(const std::string& text, std::string& normalised)
{
    std::vector<std::string> bytes = Util::split(text, ":-");
    if (bytes.size() != bytesOfMac || !std::all_of(bytes.begin(), bytes.end(), isByteText))
        return false;
    for (std::string& byte : bytes)
        if (byte.size() == 1)
            byte.insert(0, 1, '0');
    normalised = Util::upcase(Util::join(bytes, ":"));
    return true;
}

bool validate_ipv6(const std::string& text, std::string& normalised)
{
    std::array<std::uint8_t, 16> address{};
    if (inet_pton(AF_INET6, text.c_str(), address.data()) != 1)
        return false;
    normalised.clear();
    for (std::size_t at = 0; at < address.size(); at += 2) {
        char group[8];
        std::snprintf(group, sizeof group, "%s%02x%02x", at ? ":" : "", address[at], address[at + 1]);
        normalised += group;
    }
    return true;
}

} // namespace Module::BMCConfig
