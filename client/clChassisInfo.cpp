#include "client/clChassisInfo.hpp"

namespace {

constexpr IntField<ChassisInfo> intFields[] = {
    {CHASSIS_KBDPWDSTATUS, &ChassisInfo::nKbdPwdStatus},     {CHASSIS_POPWDSTATUS, &ChassisInfo::nPOPwdStatus},
    {CHASSIS_ADMINPWDSTATUS, &ChassisInfo::nAdminPwdStatus}, {CHASSIS_FPRESETSTATUS, &ChassisInfo::nFPResetStatus},
    {CHASSIS_CONTAINERTYPE, &ChassisInfo::nContainerType},
};

constexpr TextField<ChassisInfo> textFields[] = {
    {CHASSIS_PARTNUMBER, &ChassisInfo::stPartNumber},
    {CHASSIS_SERIALNUMBER, &ChassisInfo::stSerialNumber},
    {CHASSIS_NAME, &ChassisInfo::stName},
    {CHASSIS_ASSETTAG, &ChassisInfo::stAssetTag},
};

} // namespace

int chassisInfo::init()
{
    if (const int result = allocTable(1); result != CLIENT_SUCCESS)
        return result;
    ChassisInfo& chassis = mElementArray[0];
    chassis.nContainerType = CONTAINER_TYPE_UNKNOWN;
    chassis.nKbdPwdStatus = STATUS_UNKNOWN;
    chassis.nPOPwdStatus = STATUS_UNKNOWN;
    chassis.nAdminPwdStatus = STATUS_UNKNOWN;
    chassis.nFPResetStatus = STATUS_UNKNOWN;
    return CLIENT_SUCCESS;
}

int chassisInfo::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const ChassisInfo* const chassis = getAddress(row);
    return chassis ? answerInt(intFields, *chassis, attribute, out) : CLIENT_ERROR_NO_ROW;
}

int chassisInfo::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const ChassisInfo* const chassis = getAddress(row);
    return chassis ? answerText(textFields, *chassis, attribute, out) : CLIENT_ERROR_NO_ROW;
}
