#pragma once

#include "api-netsnmp/NetSnmp.hpp"
#include "client/words/Entities.hpp"

#include <array>
#include <cstddef>
#include <span>

namespace mib {

/// What a column is read through; type and access in the MIB follow from it.
enum class ColumnKind { rowNumber, intInfo, intData, strInfo, strData };

/// One column of a table, or one scalar. Its place in its object's list gives magic number and suffix.
struct Column {
    ColumnKind kind;
    _SMAttribute attribute{};
    WriteMethod* write = nullptr;
};

/// A table's first column, which the handler answers from the name itself.
constexpr Column rowNumber()
{
    return {ColumnKind::rowNumber};
}
constexpr Column intInfo(_SMAttribute attribute)
{
    return {ColumnKind::intInfo, attribute};
}
/// With a write method the column is read-write.
constexpr Column intData(_SMAttribute attribute, WriteMethod* write = nullptr)
{
    return {ColumnKind::intData, attribute, write};
}
constexpr Column strInfo(_SMAttribute attribute)
{
    return {ColumnKind::strInfo, attribute};
}
constexpr Column strData(_SMAttribute attribute)
{
    return {ColumnKind::strData, attribute};
}

/// Magic numbers of a table's columns start here: 1 and 2 stand for the table and the entry.
inline constexpr u_char firstTableMagic = 3;
inline constexpr u_char firstScalarMagic = 1;

/// Rows as register_mib takes them.
template<std::size_t count>
using Variables = std::array<variable2, count>;
using GroupOid = std::array<oid, 12>;
using TableOid = std::array<oid, 13>;

/// 1.3.6.1.4.1.44444.2.10.3.5 with `place` behind it: the registered name of an object.
template<class... Place>
constexpr auto objectOid(Place... place)
{
    return std::array<oid, 11 + sizeof...(Place)>{1, 3, 6, 1, 4, 1, 44444, 2, 10, 3, 5, static_cast<oid>(place)...};
}

constexpr variable2 variableRow(const Column& column, std::size_t magic, FindVarMethod* handler)
{
    const bool isText = column.kind == ColumnKind::strInfo || column.kind == ColumnKind::strData;
    variable2 row{};
    row.magic = static_cast<u_char>(magic);
    row.type = isText ? ASN_OCTET_STR : ASN_INTEGER;
    row.acl = column.write ? NETSNMP_OLDAPI_RWRITE : NETSNMP_OLDAPI_RONLY;
    row.findVar = handler;
    return row;
}

/// Rows of a table's columns: column N of the entry has the suffix 1.N.
template<std::size_t count>
constexpr Variables<count> tableVariables(const Column (&columns)[count], FindVarMethod* handler)
{
    Variables<count> rows{};
    for (std::size_t i = 0; i < count; ++i) {
        rows[i] = variableRow(columns[i], i + firstTableMagic, handler);
        rows[i].namelen = 2;
        rows[i].name[0] = 1;
        rows[i].name[1] = i + 1;
    }
    return rows;
}

/// Rows of a group of scalars: suffix N, completed by the instance 0.
template<std::size_t count>
constexpr Variables<count> scalarVariables(const Column (&columns)[count], FindVarMethod* handler)
{
    Variables<count> rows{};
    for (std::size_t i = 0; i < count; ++i) {
        rows[i] = variableRow(columns[i], i + firstScalarMagic, handler);
        rows[i].namelen = 1;
        rows[i].name[0] = i + 1;
    }
    return rows;
}

/// What a handler answers from: Net-SNMP copies the value out before the next call of the same handler.
struct AnswerBuffers {
    static constexpr std::size_t textBytes = 2560;
    long number = 0;
    char text[textBytes] = {};
};

/// Lines that some objects print to stderr when a text is asked for.
struct TextTraces {
    const char* description;
    const char* statusString;
};

/// One MIB object as its handler needs it.
struct MibObject {
    _SMEntity entity;
    std::span<const Column> columns;
    AnswerBuffers& buffers;
    const TextTraces* traces = nullptr;
};

/// A request as Net-SNMP hands it to a handler: a find-variable method's arguments.
struct MibRequest {
    variable* vp;
    oid* name;
    std::size_t* length;
    int exact;
    std::size_t* var_len;
    WriteMethod** write_method;
};

/// Answers one GET (`exact`) or GETNEXT of a table from the flat functions. Returns the value, its length in `var_len`,
/// or null for no such instance. A column that cannot be read answers 0 or the empty text.
u_char* answerTable(const MibObject& object, const MibRequest& request);

/// The same for a group of scalars.
u_char* answerScalars(const MibObject& object, const MibRequest& request);

/// Registers `rows` under `place`. A failure goes to the library's debug channel only.
void registerRows(const char* object, std::span<const variable2> rows, std::span<const oid> place);

} // namespace mib
