#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(MISCELLANEOUS_SENSOR_DEVICEID),
    strInfo(MISCELLANEOUS_SENSOR_DESCRIPTION),
    strData(MISCELLANEOUS_SENSOR_STATUSSTRING),
    intData(MISCELLANEOUS_SENSOR_STATUS),
};
AnswerBuffers buffers;
constexpr TextTraces traces{"Miscellaneous::agent::Miscellaneous description is called\n",
                            "Miscellaneous::agent::Status string got called\n"};
constexpr MibObject object{MISCELLANEOUS, columns, buffers, &traces};
} // namespace

constexpr TableOid miscellaneousSensorTable_variables_oid = objectOid(800, 10);
constinit Variables<5> miscellaneousSensorTable_variables = tableVariables(columns, var_miscellaneousSensorTable);

u_char* var_miscellaneousSensorTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                     WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_miscellaneousSensorTable()
{
    registerRows("miscellaneousSensorTable", miscellaneousSensorTable_variables,
                 miscellaneousSensorTable_variables_oid);
}
