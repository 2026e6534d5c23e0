#include "api-netsnmp/MibObjects.hpp"
#include "api-netsnmp/ThresholdWrites.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(TEMPERATURE_DEVICEID),
    strInfo(TEMPERATURE_DESCRIPTION),
    strData(TEMPERATURE_STATUSSTRING),
    intData(TEMPERATURE_STATUS),
    intData(TEMPERATURE_READING),
    intData(TEMPERATURE_UPPERNONRECTHRESHOLD, write_temperatureUpperNonRecoverableThreshold),
    intData(TEMPERATURE_UPPERCRITICALTHRESHOLD, write_temperatureUpperCriticalThreshold),
    intData(TEMPERATURE_UPPERNONCRITHRESHOLD, write_temperatureUpperNonCriticalThreshold),
    intData(TEMPERATURE_LOWERNONCRITHRESHOLD, write_temperatureLowerNonCriticalThreshold),
    intData(TEMPERATURE_LOWERCRITICALTHRESHOLD, write_temperatureLowerCriticalThreshold),
    intData(TEMPERATURE_LOWERNONRECTHRESHOLD, write_temperatureLowerNonRecoverableThreshold),
    intInfo(TEMPERATURE_RESOLUTION),
    intInfo(TEMPERATURE_TOLERANCE),
    intInfo(TEMPERATURE_ACCURACY),
};
AnswerBuffers buffers;
constexpr MibObject object{TEMPERATURE, columns, buffers};
} // namespace

constexpr TableOid temperatureProbeTable_variables_oid = objectOid(600, 40);
constinit Variables<15> temperatureProbeTable_variables = tableVariables(columns, var_temperatureProbeTable);

u_char* var_temperatureProbeTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                  WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_temperatureProbeTable()
{
    registerRows("temperatureProbeTable", temperatureProbeTable_variables, temperatureProbeTable_variables_oid);
}
