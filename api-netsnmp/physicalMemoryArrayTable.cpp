#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(MEMORYARRAY_DEVICEID),
    strInfo(MEMORYARRAY_DESCRIPTION),
    strInfo(MEMORYARRAY_STATUSSTRING),
    intInfo(MEMORYARRAY_STATUS),
    intInfo(MEMORYARRAY_LOCATION),
    intInfo(MEMORYARRAY_MAXCAPACITY),
    intInfo(MEMORYARRAY_NUMOFDEVICE),
    intInfo(MEMORYARRAY_ERRORCORRECTION),
    intInfo(MEMORYARRAY_HANDLE),
    intInfo(MEMORYARRAY_USAGECODE),
    strInfo(MEMORYARRAY_TAG),
    intInfo(MEMORYARRAY_USEDSLOT),
};
AnswerBuffers buffers;
constexpr MibObject object{MEMORYARRAY, columns, buffers};
} // namespace

constexpr TableOid physicalMemoryArrayTable_variables_oid = objectOid(500, 10);
constinit Variables<13> physicalMemoryArrayTable_variables = tableVariables(columns, var_physicalMemoryArrayTable);

u_char* var_physicalMemoryArrayTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                     WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_physicalMemoryArrayTable()
{
    registerRows("physicalMemoryArrayTable", physicalMemoryArrayTable_variables,
                 physicalMemoryArrayTable_variables_oid);
}
