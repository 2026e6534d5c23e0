#include "api-netsnmp/MibObject.hpp"

#include "client/door/Functions.hpp"
#include "client/words/Trace.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace mib {

namespace {
struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

u_char* answerNumber(AnswerBuffers& buffers)
{
    return reinterpret_cast<u_char*>(&buffers.number);
}

u_char* readNumber(const MibObject& object, const Column& column, int row)
{
    object.buffers.number = 0;
    const auto read = column.kind == ColumnKind::intInfo ? getIntInfo : getIntData;
    read(object.entity, column.attribute, row, object.buffers.number);
    return answerNumber(object.buffers);
}

u_char* readText(const MibObject& object, const Column& column, int row, std::size_t& length)
{
    char* text = nullptr;
    const auto read = column.kind == ColumnKind::strInfo ? getStrInfo : getStrData;
    const int result = read(object.entity, column.attribute, row, text);
    const std::unique_ptr<char, FreeText> owned(text);
    length = result == 0 && text ? strnlen(text, AnswerBuffers::textBytes - 1) : 0;
    std::copy_n(text, length, object.buffers.text);
    object.buffers.text[length] = '\0';
    return reinterpret_cast<u_char*>(object.buffers.text);
}

void printTrace(const MibObject& object, const Column& column)
{
    if (object.traces)
        client::words::trace("%s", column.kind == ColumnKind::strInfo ? object.traces->description
                                                                      : object.traces->statusString);
}

u_char* readColumn(const MibObject& object, const Column& column, int row, const MibRequest& request)
{
    switch (column.kind) {
    case ColumnKind::rowNumber:
        object.buffers.number = row + 1;
        return answerNumber(object.buffers);
    case ColumnKind::intInfo:
    case ColumnKind::intData:
        if (column.write)
            *request.write_method = column.write;
        return readNumber(object, column, row);
    case ColumnKind::strInfo:
    case ColumnKind::strData:
        printTrace(object, column);
        return readText(object, column, row, *request.var_len);
    }
    return nullptr;
}

u_char* answerColumn(const MibObject& object, int firstMagic, int row, const MibRequest& request)
{
    const int place = request.vp->magic - firstMagic;
    if (place < 0 || place >= static_cast<int>(object.columns.size())) {
        snmp_set_detail("");
        return nullptr;
    }
    return readColumn(object, object.columns[static_cast<std::size_t>(place)], row, request);
}
} // namespace

u_char* answerTable(const MibObject& object, const MibRequest& request)
{
    const int count = getCount(object.entity);
    if (header_simple_table(request.vp, request.name, request.length, request.exact, request.var_len,
                            request.write_method, count) == MATCH_FAILED)
        return nullptr;
    // The library compares row numbers as int, so 0 and everything from 2^31 up comes through as well.
    const oid row = request.name[*request.length - 1];
    if (row < 1 || row > static_cast<oid>(std::max(count, 0)))
        return nullptr;
    return answerColumn(object, firstTableMagic, static_cast<int>(row) - 1, request);
}

u_char* answerScalars(const MibObject& object, const MibRequest& request)
{
    if (header_generic(request.vp, request.name, request.length, request.exact, request.var_len,
                       request.write_method) == MATCH_FAILED)
        return nullptr;
    return answerColumn(object, firstScalarMagic, 0, request);
}

void registerRows(const char* object, std::span<const variable2> rows, std::span<const oid> place)
{
    // variable2 is variable with a shorter name; the size of a row tells the library which one it walks over.
    const auto* first = reinterpret_cast<const variable*>(rows.data());
    if (register_mib(object, first, sizeof(variable2), rows.size(), place.data(), place.size()) != MIB_REGISTERED_OK)
        DEBUGMSGTL(("register_mib", "%s registration failed\n", object));
}

} // namespace mib
