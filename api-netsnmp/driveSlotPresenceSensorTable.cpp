#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(DRIVESLOT_PRESENCE_SENSOR_DEVICEID),
    strInfo(DRIVESLOT_PRESENCE_SENSOR_DESCRIPTION),
    strData(DRIVESLOT_PRESENCE_SENSOR_STATUSSTRING),
    intData(DRIVESLOT_PRESENCE_SENSOR_STATUS),
    strData(DRIVESLOT_PRESENCE_SENSOR_PRESENCESTATUSSTRING),
};
AnswerBuffers buffers;
constexpr TextTraces traces{"DriveSlot::agent::DriveSlot description is called\n",
                            "DriveSlot::agent::Status string got called\n"};
constexpr MibObject object{DRIVESLOT, columns, buffers, &traces};
} // namespace

constexpr TableOid driveSlotPresenceSensorTable_variables_oid = objectOid(700, 10);
constinit Variables<6> driveSlotPresenceSensorTable_variables =
    tableVariables(columns, var_driveSlotPresenceSensorTable);

u_char* var_driveSlotPresenceSensorTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                         WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_driveSlotPresenceSensorTable()
{
    registerRows("driveSlotPresenceSensorTable", driveSlotPresenceSensorTable_variables,
                 driveSlotPresenceSensorTable_variables_oid);
}
