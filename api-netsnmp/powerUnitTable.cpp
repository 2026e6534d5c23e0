#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(POWERUNIT_DEVICEID),
    strInfo(POWERUNIT_DESCRIPTION),
    strData(POWERUNIT_STATUSSTRING),
    intData(POWERUNIT_STATUS),
    intData(POWERUNIT_REDUNDANCYSTATUS),
};
AnswerBuffers buffers;
constexpr MibObject object{POWERUNIT, columns, buffers};
} // namespace

constexpr TableOid powerUnitTable_variables_oid = objectOid(400, 10);
constinit Variables<6> powerUnitTable_variables = tableVariables(columns, var_powerUnitTable);

u_char* var_powerUnitTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                           WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_powerUnitTable()
{
    registerRows("powerUnitTable", powerUnitTable_variables, powerUnitTable_variables_oid);
}
