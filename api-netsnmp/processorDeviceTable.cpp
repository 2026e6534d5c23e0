#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(PROC_DEVICEID),
    strInfo(PROC_DESCRIPTION),
    strInfo(PROC_STATUSSTRING),
    intInfo(PROC_STATUS),
    intInfo(PROC_TYPE),
    strInfo(PROC_PARTNUMBER),
    strInfo(PROC_MANUFACTURERNAME),
    intInfo(PROC_FAMILY),
    strInfo(PROC_VERSIONNAME),
    intInfo(PROC_MAXSPEED),
    intInfo(PROC_CURRENTSPEED),
    intInfo(PROC_EXTCLOCKSPEED),
    intInfo(PROC_VOLTAGE),
    intInfo(PROC_UPGRADEMETHOD),
    strInfo(PROC_SOCKETDESIGNATION),
    strInfo(PROC_PROCESSORID),
};
AnswerBuffers buffers;
constexpr MibObject object{PROCESSOR, columns, buffers};
} // namespace

constexpr TableOid processorDeviceTable_variables_oid = objectOid(300, 10);
constinit Variables<17> processorDeviceTable_variables = tableVariables(columns, var_processorDeviceTable);

u_char* var_processorDeviceTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                 WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_processorDeviceTable()
{
    registerRows("processorDeviceTable", processorDeviceTable_variables, processorDeviceTable_variables_oid);
}
