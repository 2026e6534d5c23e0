#pragma once

#include "modules/bmc/catalogue/Steps.hpp"
#include "modules/bmc/engine/Stores.hpp"

#include <span>
#include <string>

/// Settings by what they are in an answer's bytes: one row makes the GET, the SET, their filter, and for a parameter of
/// a configuration command its packets too. All keys are below "GET://BMC/" and "SET://BMC/".
namespace Module::BMCConfig {

/// How bytes read, and what a caller writes for them.
enum class Codec {
    raw,    ///< each byte as two hexadecimal digits, parted by blanks; a caller may part them by commas too
    number, ///< decimal, up to four bytes, of which the low one comes first on the wire
    word,   ///< a word of the row's table
    text,   ///< printable characters, filled up with zeros
    ip,     ///< "10.0.0.5"
    ipv6,   ///< eight groups of four digits; any notation of RFC 4291 is taken
    mac,    ///< "00:1E:67:0A:0B:0C"
};

enum class Access { readWrite, read, write };

/// Bytes that one command answers and another takes.
struct Record {
    const char* path;                 ///< of its fields: "PEF/POLICY[]"
    const char* get;                  ///< packet that asks for it, "PEF/ALERT_POLICY_ENTRY"
    unsigned size = 1;                ///< in bytes
    const char* set = nullptr;        ///< packet that writes it; its data hold "$RECORD", or a whole field's own symbol
    unsigned first = 1;               ///< field of the reply where it begins: 2 behind a parameter's revision
    const char* given = "";           ///< what both packets find set: "$/PEF/SELECTOR 01, $/PEF/BLOCK 00", or by a
                                      ///< function of Map's "$/PG/SUBJECT $POLICY_TYPE_NUMBER BIT_OR 10"
    const char* subscripts = "";      ///< what the query's subscripts may be: "USER 1 63, CHANNEL 0 15"
    const char* assertion = nullptr;  ///< or the template that checks them: "LAN[]/ASSERT"
    const char* absentCode = nullptr; ///< decimal completion code by which a BMC that lacks it says so: reads as
                                      ///< "NOT_SUPPORTED", as do commands that it does not know at all
    const char* kind = nullptr; ///< of a record of several layouts "BYTE MASK VALUE", as in "1 F0 0": what has another
                                ///< value there reads as "NONE", and is not written over
    steps::Steps (*finish)() = nullptr; ///< makes the write packet's own operands of $RECORD
    bool mayEndEarly = false;           ///< a reply that ends before a field reads as "NOT_SUPPORTED"
};

/// The mask of a field that is no part of a byte.
inline constexpr unsigned wholeByte = 0xFF;

/// A configuration parameter: behind its revision, and absent at completion code 80h.
constexpr Record parameterRecord(const char* path, const char* get, const char* set, unsigned size,
                                 const char* subscripts = "")
{
    return {
        .path = path, .get = get, .size = size, .set = set, .first = 2, .subscripts = subscripts, .absentCode = "128"};
}

/// A part of a record.
struct Field {
    const char* name; ///< its path below the record's; the last token is the parameter's name of a write of several
    unsigned byte = 0, count = 1;
    Codec codec = Codec::raw;
    unsigned mask = wholeByte;    ///< of a single byte; what lies beside it stays as it is
    const char* table = "FLAG";   ///< of words: DISABLE and ENABLE unless given
    unsigned low = 0, high = 255; ///< of numbers; no more than the mask holds
    Access access = Access::readWrite;
    const char* getError = "$COMPLETION_CODE";
    const char* setError = "$COMPLETION_CODE";
    const char* rangeError = nullptr; ///< thrown for a number above `high` in place of 1091
    unsigned marks = 0;               ///< bits that a write sets in the byte beside the value
    bool inPlace = false;             ///< the table's texts are not shifted down to bit 0
    const char* parameter = nullptr;  ///< the parameter's name where it is not `name`
};

/// Adds the templates of all fields. A field that fills its record is written as it is; for any other one the record is
/// read, changed and written back.
void addFields(Stores& stores, const Record& record, std::span<const Field> fields);
/// The same, and the branch over all that can be read.
void addFieldBranch(Stores& stores, const Record& record, std::span<const Field> fields);
/// SET of the record's path itself: any number of its fields in one write, each a parameter of the caller's.
void addUpdate(Stores& stores, const Record& record, std::span<const Field> fields, const char* error);

/// A pair of commands that read and write parameters by a selector.
struct ParameterFamily {
    const char* path; ///< "LAN[]"
    const char* getCommand;
    const char* setCommand;
    const char* subject; ///< data before the selector: "$LAN_NUMBER"
    const char* subscripts = "";
    const char* assertion = nullptr;
};

/// A parameter that is one setting as a whole.
struct Parameter {
    const char* name;
    const char* selector; ///< two hexadecimal digits
    unsigned size = 1;
    Codec codec = Codec::number;
    const char* getError = "$COMPLETION_CODE";
    const char* setError = "$COMPLETION_CODE"; ///< null: only read
    const char* packet = nullptr;              ///< the packets' name where it is not the parameter's
    const char* table = nullptr;
    unsigned low = 0, high = 255;
};

/// Adds packets and templates of all parameters. Completion code 80h, which says that the BMC lacks a parameter, reads
/// as "NOT_SUPPORTED".
void addParameters(Stores& stores, const ParameterFamily& family, std::span<const Parameter> parameters);

/// A parameter's read and write packets: "GET://BMC/" and "SET://BMC/" + path; `set` are the data behind the selector.
void addParameterPackets(Stores& stores, const ParameterFamily& family, const char* path, const char* selector,
                         const char* set);

/// Templates of two further paths over a list of settings below `parent`, names separated by blanks. SET of `path`
/// writes, in the list's order, those whose last token the caller gives as a parameter; each checks its value before it
/// is sent.
void addConfigure(Stores& stores, const char* parent, const char* path, const char* names);
/// The same, and a GET of `path` that reads them all as one text "NAME=VALUE;NAME=VALUE", those left out that the
/// machine lacks.
void addProfile(Stores& stores, const char* parent, const char* path, const char* names);

namespace steps {

/// Turns the caller's text in `symbol` into the bytes of a request, in place; throws 1089, 1091 or 1092 if it cannot.
Steps encode(const std::string& symbol, const Field& field);
/// The same for any number of hexadecimal bytes, parted by blanks or commas.
Steps encodeBytes(const std::string& symbol);
/// Turns the bytes in $FIELD into text in $RESULT.
Steps decode(const Field& field);
/// What addProfile reads, in $RESULT, and what it writes, which ends the script.
Steps readProfile(const std::string& parent, const std::string& names);
Steps writeProfile(const std::string& parent, const std::string& names);
/// The steps before an exchange: subscripts checked, `given` symbols set.
Steps prepare(const Record& record);

} // namespace steps

} // namespace Module::BMCConfig
