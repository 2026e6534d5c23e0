#include "api-netsnmp/MibObjects.hpp"
#include "api-netsnmp/ThresholdWrites.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(COOLINGDEVICE_DEVICEID),
    strInfo(COOLINGDEVICE_DESCRIPTION),
    strData(COOLINGDEVICE_STATUSSTRING),
    intData(COOLINGDEVICE_STATUS),
    intData(COOLINGDEVICE_READING),
    intData(COOLINGDEVICE_UPPERNONRECTHRESHOLD, write_coolingDeviceUpperNonRecoverableThreshold),
    intData(COOLINGDEVICE_UPPERCRITICALTHRESHOLD, write_coolingDeviceUpperCriticalThreshold),
    intData(COOLINGDEVICE_UPPERNONCRITHRESHOLD, write_coolingDeviceUpperNonCriticalThreshold),
    intData(COOLINGDEVICE_LOWERNONCRITHRESHOLD, write_coolingDeviceLowerNonCriticalThreshold),
    intData(COOLINGDEVICE_LOWERCRITICALTHRESHOLD, write_coolingDeviceLowerCriticalThreshold),
    intData(COOLINGDEVICE_LOWERNONRECTHRESHOLD, write_coolingDeviceLowerNonRecoverableThreshold),
    intInfo(COOLINGDEVICE_RESOLUTION),
    intInfo(COOLINGDEVICE_TOLERANCE),
    intInfo(COOLINGDEVICE_ACCURACY),
};
AnswerBuffers buffers;
constexpr MibObject object{COOLINGDEVICE, columns, buffers};
} // namespace

constexpr TableOid coolingDeviceTable_variables_oid = objectOid(600, 20);
constinit Variables<15> coolingDeviceTable_variables = tableVariables(columns, var_coolingDeviceTable);

u_char* var_coolingDeviceTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                               WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_coolingDeviceTable()
{
    registerRows("coolingDeviceTable", coolingDeviceTable_variables, coolingDeviceTable_variables_oid);
}
