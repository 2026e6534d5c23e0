#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(COOLINGUNIT_DEVICEID),
    strInfo(COOLINGUNIT_DESCRIPTION),
    strData(COOLINGUNIT_STATUSSTRING),
    intData(COOLINGUNIT_STATUS),
    intData(COOLINGUNIT_REDUNDANCYSTATUS),
    strInfo(COOLINGUNIT_CAPTION),
};
AnswerBuffers buffers;
constexpr MibObject object{COOLINGUNIT, columns, buffers};
} // namespace

constexpr TableOid coolingUnitTable_variables_oid = objectOid(600, 10);
constinit Variables<7> coolingUnitTable_variables = tableVariables(columns, var_coolingUnitTable);

u_char* var_coolingUnitTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                             WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_coolingUnitTable()
{
    registerRows("coolingUnitTable", coolingUnitTable_variables, coolingUnitTable_variables_oid);
}
