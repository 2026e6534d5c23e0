// constant_agent OBJECT:COLUMNS:ROWS...: the least an AgentX subagent can do, as a yardstick for the real one.
//
// Registers each object below the agent's arc in the same shape (a table when ROWS is not 0, scalars otherwise) and
// answers every instance with one constant integer. Runs until it is killed. Net-SNMP's own configuration
// (hwAgent.conf) names the master's socket.

#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>

#include <net-snmp/agent/net-snmp-agent-includes.h>
#include <net-snmp/agent/util_funcs/header_generic.h>
#include <net-snmp/agent/util_funcs/header_simple_table.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

namespace {

constexpr oid base[] = {1, 3, 6, 1, 4, 1, 44444, 2, 10, 3, 5};

struct Object {
    std::vector<oid> name;
    std::vector<variable2> columns;
    int rows = 0;
};

std::deque<Object>& objects()
{
    static std::deque<Object> all;
    return all;
}

/// Rows of the object that `vp` belongs to, told by the part of the name that the registration gave.
int rowsOf(const variable* vp)
{
    for (const Object& object : objects())
        if (vp->namelen > object.name.size() &&
            std::memcmp(vp->name, object.name.data(), object.name.size() * sizeof(oid)) == 0)
            return object.rows;
    return 0;
}

unsigned char* answer(variable* vp, oid* name, size_t* length, int exact, size_t* varLength, WriteMethod** writeMethod)
{
    static long value = 42;
    const int rows = rowsOf(vp);
    const int missed = rows ? header_simple_table(vp, name, length, exact, varLength, writeMethod, rows)
                            : header_generic(vp, name, length, exact, varLength, writeMethod);
    return missed ? nullptr : reinterpret_cast<unsigned char*>(&value);
}

variable2 column(int number, bool table)
{
    variable2 row{};
    row.magic = static_cast<u_char>(number);
    row.type = ASN_INTEGER;
    row.acl = NETSNMP_OLDAPI_RONLY;
    row.findVar = answer;
    row.namelen = table ? 2 : 1;
    row.name[0] = table ? 1 : static_cast<oid>(number);
    row.name[1] = static_cast<oid>(number);
    return row;
}

/// "600.40:15:8" is 8 rows of 15 columns below <base>.600.40.
bool addObject(const char* text)
{
    Object object;
    object.name.assign(std::begin(base), std::end(base));
    char* end = nullptr;
    object.name.push_back(std::strtoul(text, &end, 10));
    if (*end == '.')
        object.name.push_back(std::strtoul(end + 1, &end, 10));
    if (*end != ':')
        return false;
    const long columns = std::strtol(end + 1, &end, 10);
    if (*end != ':' || columns < 1)
        return false;
    object.rows = static_cast<int>(std::strtol(end + 1, &end, 10));
    for (int number = 1; number <= columns; ++number)
        object.columns.push_back(column(number, object.rows != 0));
    objects().push_back(std::move(object));
    return *end == '\0';
}

void registerAll()
{
    for (Object& object : objects())
        register_mib("constant", reinterpret_cast<variable*>(object.columns.data()), sizeof(variable2),
                     object.columns.size(), object.name.data(), object.name.size());
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (!addObject(argv[i])) {
            std::fprintf(stderr, "constant_agent: \"%s\" is not OBJECT:COLUMNS:ROWS\n", argv[i]);
            return 2;
        }
    snmp_enable_stderrlog();
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
    if (init_agent("hwAgent") != 0)
        return 1;
    registerAll();
    init_snmp("hwAgent");
    while (true)
        agent_check_and_process(1);
}
