#include "api-netsnmp/MibObjects.hpp"
#include "api-netsnmp/ThresholdWrites.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(VOLTAGE_DEVICEID),
    strInfo(VOLTAGE_DESCRIPTION),
    strData(VOLTAGE_STATUSSTRING),
    intData(VOLTAGE_STATUS),
    intData(VOLTAGE_READING),
    intData(VOLTAGE_UPPERNONRECTHRESHOLD, write_voltageUpperNonRecoverableThreshold),
    intData(VOLTAGE_UPPERCRITICALTHRESHOLD, write_voltageUpperCriticalThreshold),
    intData(VOLTAGE_UPPERNONCRITHRESHOLD, write_voltageUpperNonCriticalThreshold),
    intData(VOLTAGE_LOWERNONCRITHRESHOLD, write_voltageLowerNonCriticalThreshold),
    intData(VOLTAGE_LOWERCRITICALTHRESHOLD, write_voltageLowerCriticalThreshold),
    intData(VOLTAGE_LOWERNONRECTHRESHOLD, write_voltageLowerNonRecoverableThreshold),
    intInfo(VOLTAGE_RESOLUTION),
    intInfo(VOLTAGE_TOLERANCE),
    intInfo(VOLTAGE_ACCURACY),
};
AnswerBuffers buffers;
constexpr MibObject object{VOLTAGE, columns, buffers};
} // namespace

constexpr TableOid voltageProbeTable_variables_oid = objectOid(400, 30);
constinit Variables<15> voltageProbeTable_variables = tableVariables(columns, var_voltageProbeTable);

u_char* var_voltageProbeTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                              WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_voltageProbeTable()
{
    registerRows("voltageProbeTable", voltageProbeTable_variables, voltageProbeTable_variables_oid);
}
