#include "api-netsnmp/MibObjects.hpp"

using namespace mib;

namespace {
constexpr Column columns[] = {
    rowNumber(),
    intInfo(DISCRETE_PROCESSOR_DEVICEID),
    strInfo(DISCRETE_PROCESSOR_DESCRIPTION),
    strData(DISCRETE_PROCESSOR_STATUSSTRING),
    intData(DISCRETE_PROCESSOR_STATUS),
};
AnswerBuffers buffers;
constexpr TextTraces traces{"DiscreteProcessor::agent::DiscreteProcessor description is called\n",
                            "DiscreteProcessor::agent::Status string got called\n"};
constexpr MibObject object{DISCRETE_PROCESSOR, columns, buffers, &traces};
} // namespace

constexpr TableOid discreteProcessorTable_variables_oid = objectOid(300, 20);
constinit Variables<5> discreteProcessorTable_variables = tableVariables(columns, var_discreteProcessorTable);

u_char* var_discreteProcessorTable(variable* vp, oid* name, size_t* length, int exact, size_t* var_len,
                                   WriteMethod** write_method)
{
    return answerTable(object, {vp, name, length, exact, var_len, write_method});
}

void init_discreteProcessorTable()
{
    registerRows("discreteProcessorTable", discreteProcessorTable_variables, discreteProcessorTable_variables_oid);
}
