#include "api-netsnmp/MibObjects.hpp"
#include "api-netsnmp/ThresholdWrites.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(CURRENT_DEVICEID),
    strInfo(CURRENT_DESCRIPTION),
    strData(CURRENT_STATUSSTRING),
    intData(CURRENT_STATUS),
    intData(CURRENT_READING),
    intData(CURRENT_UPPERNONRECTHRESHOLD, write_currentUpperNonRecoverableThreshold),
    intData(CURRENT_UPPERCRITICALTHRESHOLD, write_currentUpperCriticalThreshold),
    intData(CURRENT_UPPERNONCRITHRESHOLD, write_currentUpperNonCriticalThreshold),
    intData(CURRENT_LOWERNONCRITHRESHOLD, write_currentLowerNonCriticalThreshold),
    intData(CURRENT_LOWERCRITICALTHRESHOLD, write_currentLowerCriticalThreshold),
    intData(CURRENT_LOWERNONRECTHRESHOLD, write_currentLowerNonRecoverableThreshold),
    intInfo(CURRENT_RESOLUTION),
    intInfo(CURRENT_TOLERANCE),
    intInfo(CURRENT_ACCURACY),
};
AnswerBuffers buffers;
constexpr MibObject object{CURRENT, columns, buffers};
} // namespace

constexpr TableOid currentProbeTable_variables_oid = objectOid(400, 50);
constinit Variables<15> currentProbeTable_variables = tableVariables(columns, var_currentProbeTable);

u_char* var_currentProbeTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                              WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_currentProbeTable()
{
    registerRows("currentProbeTable", currentProbeTable_variables, currentProbeTable_variables_oid);
}
