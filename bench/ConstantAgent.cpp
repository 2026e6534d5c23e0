// constant_agent OBJECT:KINDS:ROWS...: the least an AgentX subagent can do, as a yardstick for the real one.
//
// Registers each object below the agent's arc in the same shape (a table when ROWS is not 0, scalars otherwise; KINDS
// has a letter for each column, i or s) and answers every instance with one constant integer or text. Runs until it is
// killed. Net-SNMP's own configuration (hwAgent.conf) names the master's socket.

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
    bool table = false;
};

std::deque<Object>& objects()
{
    static std::deque<Object> all;
    return all;
}

/// The object that `vp` belongs to, told by the part of the name that the registration gave.
const Object* objectOf(const variable* vp)
{
    for (const Object& object : objects())
        if (vp->namelen > object.name.size() &&
            std::memcmp(vp->name, object.name.data(), object.name.size() * sizeof(oid)) == 0)
            return &object;
    return nullptr;
}

unsigned char* answer(variable* vp, oid* name, size_t* length, int exact, size_t* varLength, WriteMethod** writeMethod)
{
    static long value = 42;
    static char text[] = "Constant text";
    const Object* object = objectOf(vp);
    if (!object)
        return nullptr;
    const int missed = object->table
                           ? header_simple_table(vp, name, length, exact, varLength, writeMethod, object->rows)
                           : header_generic(vp, name, length, exact, varLength, writeMethod);
    if (missed)
        return nullptr;
    if (vp->type == ASN_INTEGER)
        return reinterpret_cast<unsigned char*>(&value);
    *varLength = sizeof text - 1;
    return reinterpret_cast<unsigned char*>(text);
}

variable2 column(int number, char kind, bool table)
{
    variable2 row{};
    row.magic = static_cast<u_char>(number);
    row.type = kind == 's' ? ASN_OCTET_STR : ASN_INTEGER;
    row.acl = NETSNMP_OLDAPI_RONLY;
    row.findVar = answer;
    row.namelen = table ? 2 : 1;
    row.name[0] = table ? 1 : static_cast<oid>(number);
    row.name[1] = static_cast<oid>(number);
    return row;
}

/// "600.40:iiss:8" is 8 rows of four columns below <base>.600.40.
bool addObject(const std::string& text)
{
    const std::size_t first = text.find(':'), second = text.find(':', first + 1);
    if (first == 0 || second == std::string::npos || second == first + 1)
        return false;
    Object object;
    object.name.assign(std::begin(base), std::end(base));
    char* end = nullptr;
    object.name.push_back(std::strtoul(text.c_str(), &end, 10));
    if (*end == '.')
        object.name.push_back(std::strtoul(end + 1, nullptr, 10));
    object.table = text[second + 1] != '-';
    object.rows = std::atoi(text.c_str() + second + 1);
    int number = 0;
    for (const char kind : text.substr(first + 1, second - first - 1))
        object.columns.push_back(column(++number, kind, object.table));
    objects().push_back(std::move(object));
    return true;
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
            std::fprintf(stderr, "constant_agent: \"%s\" is not OBJECT:KINDS:ROWS\n", argv[i]);
            return 2;
        }
    snmp_enable_stderrlog();
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE, 1);
    if (init_agent("hwAgent") != 0)
        return 1;
    registerAll();
    init_snmp("hwAgent");
    while (true)
        agent_check_and_process(1);
}
