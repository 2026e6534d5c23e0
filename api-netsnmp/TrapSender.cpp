#include "api-netsnmp/TrapSender.hpp"

#include "api-netsnmp/Signals.hpp"
#include "client/traps/TrapQueue.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"

#include <cstdio>
#include <utility>

// The library's headers want this one first and lean on each other's order.
// clang-format off
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <net-snmp/agent/net-snmp-agent-includes.h>
#include <net-snmp/agent/agent_callbacks.h>
// clang-format on

namespace mib {

namespace {

using namespace client::traps;

static_assert(sizeof(oid) == sizeof(SubId));

bool hasSession = false;
bool lossIsTold = false;

int noteSession(int, int event, void*, void*)
{
    const bool had = std::exchange(hasSession, event == SNMPD_CALLBACK_INDEX_START);
    if (hasSession != had)
        common::report(hasSession ? common::Gravity::notice : common::Gravity::warning,
                       hasSession ? "connected to the master agent" : "the master agent is gone");
    if (hasSession)
        lossIsTold = false;
    client::traps::sessionIs(hasSession);
    return 0;
}

void addVarbind(netsnmp_variable_list*& list, const Varbind& varbind, u_char type, const void* value, std::size_t bytes)
{
    std::vector<oid> name(varbind.name.begin(), varbind.name.end());
    snmp_varlist_add_variable(&list, name.data(), name.size(), type, value, bytes);
}

/// Adds the varbind with the ASN.1 type of its value.
class Adder {
public:
    Adder(netsnmp_variable_list*& all, const Varbind& one) : list(all), varbind(one) {}

    void operator()(long number) const { addVarbind(list, varbind, ASN_INTEGER, &number, sizeof number); }
    void operator()(const std::string& text) const
    {
        addVarbind(list, varbind, ASN_OCTET_STR, text.data(), text.size());
    }
    void operator()(const std::vector<SubId>& name) const
    {
        addVarbind(list, varbind, ASN_OBJECT_ID, name.data(), name.size() * sizeof(oid));
    }

private:
    netsnmp_variable_list*& list;
    const Varbind& varbind;
};

void send(const Trap& trap)
{
    netsnmp_variable_list* list = nullptr;
    for (const Varbind& varbind : trap)
        std::visit(Adder(list, varbind), varbind.value);
    send_v2trap(list);
    snmp_free_varbind(list);
}

void tellLoss()
{
    if (!lossIsTold)
        std::fputs("No session to the master agent: traps are lost until it is back\n", stderr);
    lossIsTold = true;
}

} // namespace

void startTrapSender()
{
    for (const int event : {SNMPD_CALLBACK_INDEX_START, SNMPD_CALLBACK_INDEX_STOP})
        snmp_register_callback(SNMP_CALLBACK_APPLICATION, event, noteSession, nullptr);
    client::traps::sessionIs(false);
}

void sendQueuedTraps()
{
    const std::deque<Trap> taken = takeTraps();
    for (const Trap& trap : taken) {
        if (!hasSession)
            tellLoss();
        send(trap);
    }
    std::fflush(stderr);
    if (taken.empty())
        return;
    trapsAreSent();
    if (common::policy().pacesTrapsApart)
        agent::wakeEventThread(); // for the next trap's turn, and to note that these are told
}

} // namespace mib
