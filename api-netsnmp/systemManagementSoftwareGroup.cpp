#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    intInfo(SMINFO_HEALTHSTATUS), strInfo(SMINFO_PLATFORMDESC),   intInfo(SMINFO_PLATFORMID),
    intInfo(SMINFO_TRAPSENABLED), intInfo(SMINFO_SETSENABLED),    strInfo(SMINFO_MANUFACTURER),
    strInfo(SMINFO_PRODUCTNAME),  strInfo(SMINFO_PRODUCTVERSION), strInfo(SMINFO_PRODUCTBUILDNUM),
    strInfo(SMINFO_PRODUCTDESC),
};
AnswerBuffers buffers;
constexpr MibObject object{SMINFO, columns, buffers};
} // namespace

constexpr GroupOid systemManagementSoftwareGroup_variables_oid = objectOid(100);
constinit Variables<10> systemManagementSoftwareGroup_variables =
    scalarVariables(columns, var_systemManagementSoftwareGroup);

u_char* var_systemManagementSoftwareGroup(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                          WriteMethod** write_method)
{
    return answerScalars(object, {vp, name, length, exact, var_len, write_method});
}

void init_systemManagementSoftwareGroup()
{
    registerRows("systemManagementSoftwareGroup", systemManagementSoftwareGroup_variables,
                 systemManagementSoftwareGroup_variables_oid);
}
