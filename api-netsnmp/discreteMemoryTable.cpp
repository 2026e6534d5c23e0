#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(DISCRETE_MEMORY_DEVICEID),
    strInfo(DISCRETE_MEMORY_DESCRIPTION),
    strData(DISCRETE_MEMORY_STATUSSTRING),
    intData(DISCRETE_MEMORY_STATUS),
};
AnswerBuffers buffers;
constexpr TextTraces traces{"DiscreteMemory::agent::DiscreteMemory description is called\n",
                            "DiscreteMemory::agent::Status string got called\n"};
constexpr MibObject object{DISCRETE_MEMORY, columns, buffers, &traces};
} // namespace

constexpr TableOid discreteMemoryTable_variables_oid = objectOid(500, 30);
constinit Variables<5> discreteMemoryTable_variables = tableVariables(columns, var_discreteMemoryTable);

u_char* var_discreteMemoryTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_discreteMemoryTable()
{
    registerRows("discreteMemoryTable", discreteMemoryTable_variables, discreteMemoryTable_variables_oid);
}
