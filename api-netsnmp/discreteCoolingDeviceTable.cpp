#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(DISCRETECOOLING_DEVICEID),
    strInfo(DISCRETECOOLING_DESCRIPTION),
    strData(DISCRETECOOLING_STATUSSTRING),
    intData(DISCRETECOOLING_STATUS),
    intData(DISCRETECOOLING_PERFORMANCE),
};
AnswerBuffers buffers;
constexpr MibObject object{DISCRETECOOLING, columns, buffers};
} // namespace

constexpr TableOid discreteCoolingDeviceTable_variables_oid = objectOid(600, 30);
constinit Variables<6> discreteCoolingDeviceTable_variables = tableVariables(columns, var_discreteCoolingDeviceTable);

u_char* var_discreteCoolingDeviceTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                       WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_discreteCoolingDeviceTable()
{
    registerRows("discreteCoolingDeviceTable", discreteCoolingDeviceTable_variables,
                 discreteCoolingDeviceTable_variables_oid);
}
