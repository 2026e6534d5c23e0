#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Protocol::SMBIOS {

using Bytes = std::span<const std::uint8_t>;

/// Structure types of the SMBIOS standard (DSP0134, 7) that something here asks for by name.
enum : std::uint8_t {
    TYPE_PROCESSOR = 4,
    TYPE_MEMORY_ARRAY = 16,
    TYPE_MEMORY_DEVICE = 17,
    TYPE_END_OF_TABLE = 127,
    TYPE_BIOS_RESERVED_MEMORY = 133
};

/// The catalogues, by minor version of SMBIOS 2, and the newest, which only the policy selects.
enum Catalogue : std::uint8_t { v2_3 = 3, v2_4 = 4, v2_5 = 5, v2_6 = 6, v2_7 = 7, v3_7 = 17 };

/// Storage form of a field: the number of its bytes, or the index of a string.
enum FieldType : std::uint8_t {
    FIELD_BYTE = 1,
    FIELD_WORD = 2,
    FIELD_DWORD = 4,
    FIELD_QWORD = 8,
    FIELD_RUN_15 = 15,
    FIELD_UUID = 16,
    FIELD_STRING = 17
};

/// How a field reads as text.
enum FieldInterpretation : std::uint8_t {
    INTERPRET_PLAIN = 1,   ///< decimal
    INTERPRET_STRING = 2,  ///< out of the structure's string list
    INTERPRET_VALUES = 3,  ///< a word for the value, or one entry for each bit, by the field's value map
    INTERPRET_SPECIAL = 4, ///< a renderer of its own
};

/// A code and its text. In the map of a bit field the code is the bit's number plus 1, and code 0 may hold the mask of
/// the bits: the lowest first, a 0 for each that is reserved.
struct ValueText {
    std::uint16_t code;
    const char* text;
    Catalogue since = v2_3; ///< the first catalogue that knows the code
};

/// One parsed structure. The bytes belong to the table it was parsed from.
struct SMBRecordInfo {
    std::uint8_t type = 0;
    std::uint16_t handle = 0;
    Bytes formatted; ///< the formatted area with its header, as long as the length byte says
    std::vector<std::string> strings;

    /// The unsigned little-endian number of `size` bytes (at most 8) at `offset`; 0 if the structure is shorter.
    std::uint64_t number(std::size_t offset, std::size_t size) const;
    bool holds(std::size_t offset, std::size_t size) const { return offset + size <= formatted.size(); }
    /// String `index` of the list, counted from 1; empty for 0 and for an index that the list does not have.
    const std::string& string(std::size_t index) const;
};

/// Paths below a structure's own path, and their values.
using FieldValues = std::vector<std::pair<std::string, std::string>>;

/// "path[index]".
std::string subscripted(std::string_view path, std::size_t index);

struct FieldInfo;

/// Adds the values of one field of one structure.
using Renderer = void (*)(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue,
                          FieldValues& values);

/// One field of a structure.
struct FieldInfo {
    std::string_view name;
    std::uint8_t offset;
    FieldType type;
    FieldInterpretation interpretation;
    Renderer special = nullptr; ///< of INTERPRET_SPECIAL, and of the bit fields among INTERPRET_VALUES
    std::span<const ValueText> values = {};
    std::uint8_t shift = 0; ///< of a part of a packed number: its lowest bit
    std::uint8_t width = 0; ///< and how many it has; 0 for the whole number

    std::size_t size() const { return type == FIELD_STRING ? 1 : type; }
};

/// A form that a structure takes when one of its fields has a certain value: further fields, or other readings of a
/// field that goes by the same name.
struct _SubTypeInformation {
    std::uint8_t offset;
    std::uint8_t size; ///< 0: every structure that is long enough has this form
    std::uint32_t value;
    FieldInfo field;

    bool describes(const SMBRecordInfo& record) const
    {
        return size == 0 || (record.holds(offset, size) && record.number(offset, size) == value);
    }
};

/// What is known of one structure type: its fields in the order of the formatted area, and its sub-forms.
struct SMBTable {
    std::vector<FieldInfo> fields;
    std::vector<_SubTypeInformation> subTypes;
};

/// Structure types by number.
using SMBCatalogue = std::unordered_map<std::uint8_t, SMBTable>;

} // namespace Protocol::SMBIOS
