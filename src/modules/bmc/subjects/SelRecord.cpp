#include "modules/bmc/subjects/SelRecord.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/TimeStamp.hpp"
#include "modules/bmc/engine/Text.hpp"

namespace Module::BMCConfig {

namespace {

constexpr std::size_t mostIdDigits = 4, byteDigits = 2;

bool isByte(const std::string& text)
{
    return text.size() <= byteDigits && test_for_hex(text);
}

} // namespace

std::uint32_t SelRecord::seconds() const
{
    return view().isTimestamped() ? view().seconds() : ipmi::unspecifiedTime;
}

std::optional<SelRecord> SelRecord::parse(const std::string& text)
{
    SelRecord record;
    for (const std::string& item : Util::split(text, " ")) {
        if (!isByte(item))
            return std::nullopt;
        record.bytes.push_back(ipmi::parseByte(item));
    }
    if (record.bytes.size() < ipmi::sel::recordSize)
        return std::nullopt;
    return record;
}

std::string selIdText(unsigned id)
{
    return ipmi::hexByte(static_cast<std::uint8_t>(id >> 8)) + ipmi::hexByte(static_cast<std::uint8_t>(id));
}

unsigned parseSelId(const std::string& text)
{
    if (text.size() > mostIdDigits || !test_for_hex(text))
        throwError(ERROR_INVALID_DATAVAL, text, COMMAND_GET);
    return static_cast<unsigned>(Util::string_to_long(text, 16));
}

} // namespace Module::BMCConfig
