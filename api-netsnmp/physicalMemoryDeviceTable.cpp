#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(MEMORYDEVICE_DEVICEID),
    strInfo(MEMORYDEVICE_DESCRIPTION),
    strInfo(MEMORYDEVICE_STATUSSTRING),
    intInfo(MEMORYDEVICE_STATUS),
    strInfo(MEMORYDEVICE_TAG),
    intInfo(MEMORYDEVICE_HANDLE),
    intInfo(MEMORYDEVICE_ASSOCIATEDARRAY),
    intInfo(MEMORYDEVICE_TOTALWIDTH),
    intInfo(MEMORYDEVICE_DATAWIDTH),
    intInfo(MEMORYDEVICE_SIZE),
    intInfo(MEMORYDEVICE_FORMFACTOR),
    strInfo(MEMORYDEVICE_LOCATOR),
    strInfo(MEMORYDEVICE_BANKLABEL),
    intInfo(MEMORYDEVICE_MEMORYTYPE),
    intInfo(MEMORYDEVICE_TYPEDETAIL),
    intInfo(MEMORYDEVICE_SPEED),
    strInfo(MEMORYDEVICE_MANUFACTURER),
    strInfo(MEMORYDEVICE_SERIALNUMBER),
    strInfo(MEMORYDEVICE_ASSETTAG),
    strInfo(MEMORYDEVICE_PARTNUMBER),
};
AnswerBuffers buffers;
constexpr MibObject object{MEMORYDEVICE, columns, buffers};
} // namespace

constexpr TableOid physicalMemoryDeviceTable_variables_oid = objectOid(500, 20);
constinit Variables<21> physicalMemoryDeviceTable_variables = tableVariables(columns, var_physicalMemoryDeviceTable);

u_char* var_physicalMemoryDeviceTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                      WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_physicalMemoryDeviceTable()
{
    registerRows("physicalMemoryDeviceTable", physicalMemoryDeviceTable_variables,
                 physicalMemoryDeviceTable_variables_oid);
}
