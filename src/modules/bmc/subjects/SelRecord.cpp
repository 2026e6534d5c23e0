#include "modules/bmc/subjects/SelRecord.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <cstdio>

namespace Module::BMCConfig {

namespace {

constexpr std::uint32_t unspecifiedTime = 0xFFFFFFFF;
constexpr std::size_t timeSize = 4, mostIdDigits = 4, byteDigits = 2;

bool isByte(const std::string& text)
{
    return text.size() <= byteDigits && test_for_hex(text);
}

} // namespace

std::uint32_t SelRecord::seconds() const
{
    return type() >= firstTimelessType ? unspecifiedTime
                                       : littleEndian(std::span(bytes).subspan(SelByte::time, timeSize));
}

std::string SelRecord::text(std::span<const std::uint8_t> bytes)
{
    std::string line;
    line.reserve(bytes.size() * (byteDigits + 1));
    for (const std::uint8_t byte : bytes) {
        char item[byteDigits + 1];
        std::snprintf(item, sizeof item, "%02X", byte);
        if (!line.empty())
            line += ' ';
        line += item;
    }
    return line;
}

std::optional<SelRecord> SelRecord::parse(const std::string& text)
{
    SelRecord record;
    for (const std::string& item : Util::split(text, " ")) {
        if (!isByte(item))
            return std::nullopt;
        record.bytes.push_back(static_cast<std::uint8_t>(Util::string_to_long(item, 16)));
    }
    if (record.bytes.size() < size)
        return std::nullopt;
    return record;
}

std::uint32_t littleEndian(std::span<const std::uint8_t> bytes)
{
    std::uint32_t number = 0;
    for (std::size_t at = bytes.size(); at-- > 0;)
        number = number << 8 | bytes[at];
    return number;
}

std::string selIdText(unsigned id)
{
    char text[mostIdDigits + 1];
    std::snprintf(text, sizeof text, "%04X", id & 0xFFFF);
    return text;
}

unsigned parseSelId(const std::string& text)
{
    if (text.size() > mostIdDigits || !test_for_hex(text))
        throwError(ERROR_INVALID_DATAVAL, text, COMMAND_GET);
    return static_cast<unsigned>(Util::string_to_long(text, 16));
}

} // namespace Module::BMCConfig
