#include "ipmi/Hex.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <algorithm>
#include <bit>
#include <utility>

// The two ways between a setting's text and its bytes.

namespace Module::BMCConfig::steps {

namespace {

std::string lowestBit(const Field& field)
{
    return std::to_string(std::countr_zero(field.mask));
}

/// The field's bits of the one byte in `symbol`, brought down to bit 0.
Steps cutOut(const Field& field, const std::string& symbol)
{
    const Steps masked = Map(symbol, "MASK", ipmi::hexByte(static_cast<std::uint8_t>(field.mask)), symbol);
    return field.inPlace ? masked : script({masked, Map(symbol, "RIGHT_SHIFT", lowestBit(field), symbol)});
}

/// Hexadecimal bytes of two digits with `separator`, `group` of them together.
Steps joinBytes(const std::string& separator, const std::string& group)
{
    return script({Prepend("$FIELD", "0", "2", "$FIELD"), Join("$FIELD", separator, group, "$RESULT")});
}

Steps decodeNumber(const Field& field)
{
    return script({
        field.mask == wholeByte ? Steps{} : cutOut(field, "$FIELD"),
        Prepend("$FIELD", "0", "2", "$FIELD"),
        Flatten("$FIELD", "$FIELD"),
        Map("$FIELD", "HEX2DEC", "$RESULT"),
    });
}

/// Refuses a list in `symbol` that has not `count` values.
Steps requireCount(const std::string& symbol, unsigned count)
{
    return script({Size(symbol, "$SIZE"), If("$SIZE != " + std::to_string(count), {refuse(symbol)})});
}

Steps assertBytes(const std::string& symbol)
{
    return Assert(symbol, "RANGE_CHECK", "0", "255", "$ASSERT_VALUE");
}

Steps encodeRaw(const std::string& symbol, const Field& field)
{
    return script({encodeBytes(symbol), requireCount(symbol, field.count)});
}

/// The hexadecimal number in `symbol` as a list of bytes, low one first.
Steps cutIntoBytes(const std::string& symbol, unsigned count)
{
    constexpr unsigned bitsOfByte = 8;
    Steps cut = Copy(":NULL", "$BYTES");
    for (unsigned at = 0; at < count; ++at)
        cut = script({
            std::move(cut),
            at == 0 ? Copy(symbol, "$BYTE") : Map(symbol, "RIGHT_SHIFT", hexText(at * bitsOfByte), "$BYTE"),
            Map("$BYTE", "MASK", "FF", "$BYTE"),
            Append("$BYTE", "$BYTES"),
        });
    return script({cut, Copy("$BYTES", symbol)});
}

Steps encodeNumber(const std::string& symbol, const Field& field)
{
    const Steps bytes =
        field.count == 1 ? Map(symbol, "LEFT_SHIFT", lowestBit(field), symbol) : cutIntoBytes(symbol, field.count);
    const unsigned most = field.count == 1 ? field.mask >> std::countr_zero(field.mask) : field.high;
    const std::string high = std::to_string(std::min(field.high, most));
    return script({
        field.rangeError ? If(symbol + " > " + high, {Throw(field.rangeError)}) : Steps{},
        Assert(symbol, "RANGE_CHECK", std::to_string(field.low), high, "$ASSERT_VALUE"),
        Map(symbol, "DEC2HEX", symbol),
        bytes,
    });
}

Steps encodeWord(const std::string& symbol, const Field& field)
{
    const Steps found = LookupTable(symbol, std::string("SET://BMC/") + field.table, symbol);
    return field.inPlace ? found : script({found, Map(symbol, "LEFT_SHIFT", lowestBit(field), symbol)});
}

Steps encodeText(const std::string& symbol, const Field& field)
{
    const std::string size = std::to_string(field.count);
    return script({
        Assert(symbol, "STR_SIZE_CHECK", size, "$ASSERT_VALUE"),
        Map(symbol, "STR2HEX", symbol),
        If(symbol + " == ERROR", {refuse(symbol)}),
        Pad(symbol, "0", size, symbol),
    });
}

Steps encodeIp(const std::string& symbol)
{
    return script({
        Split(symbol, ".", symbol),
        requireCount(symbol, 4),
        assertBytes(symbol),
        Map(symbol, "DEC2HEX", symbol),
    });
}

Steps encodeMac(const std::string& symbol)
{
    return script({
        Map(symbol, "VALIDATE_MAC", symbol),
        If(symbol + " == FAILURE", {refuse(symbol)}),
        Split(symbol, ":", symbol),
    });
}

/// Eight groups of two bytes each.
Steps encodeIpv6(const std::string& symbol)
{
    return script({
        Map(symbol, "VALIDATE_IPV6", symbol),
        If(symbol + " == FAILURE", {refuse(symbol)}),
        Split(symbol, ":", "$GROUPS"),
        Copy(":NULL", symbol),
        For("PLACE", "0", "7",
            {
                Read("$GROUPS", "$PLACE", "$GROUP"),
                Map("$GROUP", "RIGHT_SHIFT", "8", "$HIGH"),
                Map("$GROUP", "MASK", "FF", "$LOW"),
                Append("$HIGH", "$LOW", symbol),
            }),
    });
}

} // namespace

Steps encodeBytes(const std::string& symbol)
{
    return script({
        Split(symbol, " ,", symbol),
        Map(symbol, "HEX2DEC", symbol),
        assertBytes(symbol),
        Map(symbol, "DEC2HEX", symbol),
    });
}

Steps decode(const Field& field)
{
    switch (field.codec) {
    case Codec::raw:
        return joinBytes(":SPACE", "1");
    case Codec::number:
        return decodeNumber(field);
    case Codec::word:
        return script({
            cutOut(field, "$FIELD"),
            LookupTable("$FIELD", std::string("GET://BMC/") + field.table, "$RESULT"),
        });
    case Codec::text:
        return script({Map("$FIELD", "HEX2STR", "$FIELD"), Flatten("$FIELD", "$RESULT")});
    case Codec::ip:
        return script({Map("$FIELD", "HEX2DEC", "$FIELD"), Join("$FIELD", ".", "$RESULT")});
    case Codec::ipv6:
        return joinBytes(":", "2");
    case Codec::mac:
        return joinBytes(":", "1");
    }
    return {};
}

Steps encode(const std::string& symbol, const Field& field)
{
    switch (field.codec) {
    case Codec::raw:
        return encodeRaw(symbol, field);
    case Codec::number:
        return encodeNumber(symbol, field);
    case Codec::word:
        return encodeWord(symbol, field);
    case Codec::text:
        return encodeText(symbol, field);
    case Codec::ip:
        return encodeIp(symbol);
    case Codec::ipv6:
        return encodeIpv6(symbol);
    case Codec::mac:
        return encodeMac(symbol);
    }
    return {};
}

} // namespace Module::BMCConfig::steps
