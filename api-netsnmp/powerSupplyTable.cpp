#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(POWERSUPPLY_DEVICEID),
    strInfo(POWERSUPPLY_DESCRIPTION),
    strData(POWERSUPPLY_STATUSSTRING),
    intData(POWERSUPPLY_STATUS),
};
AnswerBuffers buffers;
constexpr MibObject object{POWERSUPPLY, columns, buffers};
} // namespace

constexpr TableOid powerSupplyTable_variables_oid = objectOid(400, 20);
constinit Variables<5> powerSupplyTable_variables = tableVariables(columns, var_powerSupplyTable);

u_char* var_powerSupplyTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                             WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_powerSupplyTable()
{
    registerRows("powerSupplyTable", powerSupplyTable_variables, powerSupplyTable_variables_oid);
}
