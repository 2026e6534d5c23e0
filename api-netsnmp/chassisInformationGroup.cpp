#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    intData(CHASSIS_STATUS),        intData(CHASSIS_SECURITYSTATE), intData(CHASSIS_BOOTSTATE),
    intData(CHASSIS_THERMALSTATE),  intData(CHASSIS_POWERSTATE),    intData(CHASSIS_LOCKSTATE),
    intInfo(CHASSIS_KBDPWDSTATUS),  intInfo(CHASSIS_POPWDSTATUS),   intInfo(CHASSIS_ADMINPWDSTATUS),
    intInfo(CHASSIS_FPRESETSTATUS), intInfo(CHASSIS_CONTAINERTYPE), strInfo(CHASSIS_PARTNUMBER),
    strInfo(CHASSIS_SERIALNUMBER),  strInfo(CHASSIS_NAME),          strInfo(CHASSIS_ASSETTAG),
};
AnswerBuffers buffers;
constexpr MibObject object{CHASSIS, columns, buffers};
} // namespace

constexpr GroupOid chassisInformationGroup_variables_oid = objectOid(200);
constinit Variables<15> chassisInformationGroup_variables = scalarVariables(columns, var_chassisInformationGroup);

u_char* var_chassisInformationGroup(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                    WriteMethod** write_method)
{
    return answerScalars(object, {vp, name, length, exact, var_len, write_method});
}

void init_chassisInformationGroup()
{
    registerRows("chassisInformationGroup", chassisInformationGroup_variables, chassisInformationGroup_variables_oid);
}
