#include "modules/bmc/catalogue/SensorSteps.hpp"

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

namespace Module::BMCConfig::steps {

namespace {

/// Where a record's name begins, and with it the end of the record's fixed part, depends on the type of the record. The
/// byte before the name holds coding and length.
Table namePlaces(std::size_t behind, const char* range)
{
    Table places;
    for (const ipmi::NamePlace& place : ipmi::namePlaces)
        if (place.recordType <= ipmi::sdrtype::eventOnly)
            places.emplace(ipmi::hexByte(place.recordType), std::to_string(place.typeLength + behind) + range);
    return places;
}

Table bcdPlusDigits()
{
    Table digits;
    for (unsigned code = 0; code < ipmi::bcdPlusCharacters.size(); ++code)
        digits.emplace(Util::upcase(Util::dec_to_hex_string(code)), std::string(1, ipmi::bcdPlusCharacters[code]));
    return digits;
}

/// Runs `body` for each byte of the name, in $BYTE.
Steps forEachByte(const Steps& body)
{
    return For("INDEX", "0", "$NAME_SIZE",
               {
                   Map("$INDEX", "HEX2DEC", "$INDEX_IN_DEC"),
                   If("$INDEX_IN_DEC < $NAME_SIZE", {Read("$NAME_BYTES", "$INDEX_IN_DEC", "$BYTE"), body}),
               });
}

Steps returnName()
{
    return script({Copy("$NAME_TEXT", "$RESULT"), Return("$RESULT")});
}

/// A byte that is no printable character adds nothing.
Steps plainName()
{
    return script({
        Map("$NAME_BYTES", "HEX2STR", "$NAME_TEXT"),
        Flatten("$NAME_TEXT", "$NAME_TEXT"),
        returnName(),
    });
}

/// Two digits a byte, the upper half first.
Steps bcdName()
{
    return script({
        forEachByte(script({
            Map("$BYTE", "RIGHT_SHIFT", "4", "$UPPER"),
            Map("$BYTE", "MASK", "F", "$LOWER"),
            LookupTable("$UPPER", "GET://BMC/SENSOR/BCD_PLUS", "$UPPER"),
            LookupTable("$LOWER", "GET://BMC/SENSOR/BCD_PLUS", "$LOWER"),
            FormatString("$NAME_TEXT", "$UPPER", "$LOWER", "$NAME_TEXT"),
        })),
        returnName(),
    });
}

/// Adds the character of the 6-bit code in `code`: the codes run from the blank on.
Steps addSixBit(const std::string& code)
{
    return script({
        Mathematical("ADD", code, "20", "$CHARACTER"),
        Map("$CHARACTER", "DEC2HEX", "$CHARACTER"),
        Map("$CHARACTER", "HEX2STR", "$CHARACTER"),
        FormatString("$NAME_TEXT", "$CHARACTER", "$NAME_TEXT"),
    });
}

/// One of three bytes: its bits in `mask`, above what the byte before has left, make a character; the bits above are
/// left to the next.
Steps sixBitPhase(const char* phase, const char* mask, const char* left, const char* rest, const char* next,
                  const Steps& then)
{
    return If(std::string("$PHASE == ") + phase, {
                                                     Map("$BYTE", "MASK", mask, "$CODE"),
                                                     Map("$CODE", "LEFT_SHIFT", left, "$CODE"),
                                                     Map("$CODE", "BIT_OR", "$CARRY", "$CODE"),
                                                     Map("$BYTE", "RIGHT_SHIFT", rest, "$CARRY"),
                                                     addSixBit("$CODE"),
                                                     then,
                                                     Copy(next, "$NEXT"),
                                                 });
}

/// Four characters in three bytes, the first in the lowest bits.
Steps sixBitName()
{
    return script({
        Copy("0", "$PHASE"),
        Copy("0", "$CARRY"),
        forEachByte(script({
            sixBitPhase("0", "3F", "0", "6", "1", {}),
            sixBitPhase("1", "0F", "2", "4", "2", {}),
            sixBitPhase("2", "03", "4", "2", "0", script({addSixBit("$CARRY"), Copy("0", "$CARRY")})),
            Copy("$NEXT", "$PHASE"),
        })),
        returnName(),
    });
}

} // namespace

Steps returnNothing()
{
    return script({Copy(":NULL", "$RESULT"), Return("$RESULT")});
}

Steps addressSensor(const Form& form)
{
    const Steps checked = script({
        Map("$SENSOR_NUMBER", "HEX2DEC", "$SENSOR_NUMBER_IN_DEC"),
        Assert("$SENSOR_NUMBER_IN_DEC", "RANGE_CHECK", "0", "255", "$ASSERT_VALUE"),
        Copy("$SENSOR_NUMBER", "$/BMC/SENSOR/NUMBER"),
    });
    if (!form.hasOwner)
        return script({
            checked,
            Copy("$/BMC/BASE_ADDRESS", "$/BMC/SENSOR_OWNER"),
            Copy("00", "$/BMC/SENSOR_LUN"),
        });
    // The other bits of the LUN's byte are the channel.
    return script({
        checked,
        Map("$OWNER_NUMBER", "HEX2DEC", "$OWNER_IN_DEC"),
        Assert("$OWNER_IN_DEC", "RANGE_CHECK", "0", "255", "$ASSERT_VALUE"),
        Map("$LUN_NUMBER", "HEX2DEC", "$LUN_IN_DEC"),
        Assert("$LUN_IN_DEC", "RANGE_CHECK", "0", "255", "$ASSERT_VALUE"),
        Copy("$OWNER_NUMBER", "$/BMC/SENSOR_OWNER"),
        Map("$LUN_NUMBER", "MASK", "3", "$/BMC/SENSOR_LUN"),
    });
}

Steps refuseOnFir(const Form& form, const Steps& refusal)
{
    if (!form.hasOwner)
        return {};
    return If("$OWNER_IN_DEC == 33 OR $OWNER_IN_DEC == 1",
              {
                  Template_with_Catch("GET://BMC/INFO/PRODUCT"),
                  LookupTable("$RESULT", "GET://BMC/SENSOR/PLATFORM", "$PLATFORM"),
                  If("$PLATFORM == Fir", {refusal}),
              });
}

Steps findRecord(const Form& form, const Steps& absent)
{
    const Steps query = form.hasOwner
                            ? FormatString("GET://BMC/SDR/SENSOR_NUMBER[", "$SENSOR_NUMBER_IN_DEC", "]/OWNER[",
                                           "$OWNER_IN_DEC", "]/LUN[", "$LUN_IN_DEC", "]", "$QUERY")
                            : FormatString("GET://BMC/SDR/SENSOR_NUMBER[", "$SENSOR_NUMBER_IN_DEC", "]", "$QUERY");
    return script({
        query,
        Template("$QUERY"),
        FormatString("$", "$QUERY", "$FOUND"), // the symbol that holds the list of records
        Copy("$FOUND", "$FOUND"),
        Size("$FOUND", "$FOUND_SIZE"),
        If("$FOUND_SIZE == 0", {absent}),
        Read("$FOUND", "0", "$FOUND"),
        FormatString("GET:/", "$FOUND", "$QUERY"),
        Template("$QUERY"),
        Copy("$RESULT", "$RECORD"),
    });
}

Steps sendForWord(const std::string& packet)
{
    return script({
        send(packet),
        If("$COMPLETION_CODE == 0", {returnText("SUCCESS")}),
        returnText("FAILURE"),
    });
}

Script readName(const Form& form)
{
    return script({
        addressSensor(form),
        findRecord(form, returnNothing()),
        Filter("$RECORD", "GET://BMC/SENSOR_TYPE_RECORD", "$RECORD_TYPE"),
        Split("$RECORD", ":SPACE", "$RECORD"),
        Size("$RECORD", "$RECORD_SIZE"),
        LookupTable("$RECORD_TYPE", "GET://BMC/SENSOR/NAME_CODE", "$PLACE"),
        LookupTable("$RECORD_TYPE", "GET://BMC/SENSOR/NAME_TEXT", "$RANGE"),
        If("$PLACE == ERROR", {returnNothing()}),
        If("$RECORD_SIZE <= $PLACE", {returnNothing()}),
        Read("$RECORD", "$PLACE", "$NAME_CODE"),
        Read("$RECORD", "$RANGE", "$NAME_BYTES"),
        Map("$NAME_CODE", "MASK", "1F", "$LENGTH"),
        Map("$LENGTH", "HEX2DEC", "$LENGTH"),
        FormatString("0-", "$LENGTH", "$RANGE"),
        Read("$NAME_BYTES", "$RANGE", "$NAME_BYTES"),
        Size("$NAME_BYTES", "$NAME_SIZE"),
        If("$NAME_SIZE == 0", {returnNothing()}),
        Copy(":NULL", "$NAME_TEXT"),
        Map("$NAME_CODE", "MASK", "C0", "$CODING"),
        If("$CODING == 80", {sixBitName()}),
        If("$CODING == 40", {bcdName()}),
        plainName(),
    });
}

void addNames(Stores& stores)
{
    addTable(stores, "GET://BMC/SENSOR/NAME_CODE", namePlaces(0, ""));
    addTable(stores, "GET://BMC/SENSOR/NAME_TEXT", namePlaces(1, "-SIZE"));
    addTable(stores, "GET://BMC/SENSOR/BCD_PLUS", bcdPlusDigits());
}

} // namespace Module::BMCConfig::steps
