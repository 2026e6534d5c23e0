#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(DISCRETEVOLTAGE_DEVICEID),
    strInfo(DISCRETEVOLTAGE_DESCRIPTION),
    strData(DISCRETEVOLTAGE_STATUSSTRING),
    intData(DISCRETEVOLTAGE_STATUS),
    intData(DISCRETEVOLTAGE_PERFORMANCE),
};
AnswerBuffers buffers;
constexpr MibObject object{DISCRETEVOLTAGE, columns, buffers};
} // namespace

constexpr TableOid discreteVoltageProbeTable_variables_oid = objectOid(400, 40);
constinit Variables<6> discreteVoltageProbeTable_variables = tableVariables(columns, var_discreteVoltageProbeTable);

u_char* var_discreteVoltageProbeTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                      WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_discreteVoltageProbeTable()
{
    registerRows("discreteVoltageProbeTable", discreteVoltageProbeTable_variables,
                 discreteVoltageProbeTable_variables_oid);
}
