#include "api-netsnmp/TrapSender.hpp"

#include "api-netsnmp/Signals.hpp"
#include "client/traps/TrapQueue.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Seams.hpp"
#include "common/Stopwatch.hpp"

#include <chrono>
#include <cstdio>
#include <limits>
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
using namespace std::chrono_literals;

static_assert(sizeof(oid) == sizeof(SubId));

constexpr std::size_t everyTrap = std::numeric_limits<std::size_t>::max();

/// A master agent that lives answers within its own time-out, or the library closes the session.
constexpr auto patienceForAnswers = 60s;
/// At the end, when nobody waits for more.
constexpr auto lastPatience = 500ms;
constexpr auto napForAnswers = 5ms;

bool hasSession = false;
bool lossIsTold = false;
u_int answersCounted = 0;
Clock::SteadyPoint lastMove; ///< a trap went, or an answer came

/// Each notification is answered, in order (RFC 2741, 7.1.10). The library tells of that only by its statistics: what
/// came in are requests and those answers, what went out are responses, one to each request, and notifications. Each
/// request is counted and answered within one call of the library, as no handler here delegates: between turns of the
/// loop, and when the session ends, there is none that came in and has no response, to pass for an answer.
u_int countAnswers()
{
    const u_int responses = snmp_get_statistic(STAT_SNMPOUTPKTS) - snmp_get_statistic(STAT_SNMPOUTTRAPS);
    return snmp_get_statistic(STAT_SNMPINPKTS) - responses;
}

std::size_t takeAnswers()
{
    const u_int counted = countAnswers();
    const u_int before = std::exchange(answersCounted, counted);
    return counted > before ? counted - before : 0;
}

/// A stream loses nothing: what the library sends once more to a master agent that is only slow is told twice. One try
/// gets the patience of all of them.
void askOnce(netsnmp_session& session)
{
    session.timeout *= session.retries + 1;
    session.retries = 0;
}

int noteSession(int, int event, void* session, void*)
{
    const bool had = std::exchange(hasSession, event == SNMPD_CALLBACK_INDEX_START);
    if (hasSession && session && common::policy().pacesTrapsApart)
        askOnce(*static_cast<netsnmp_session*>(session));
    if (hasSession != had)
        common::report(hasSession ? common::Gravity::notice : common::Gravity::warning,
                       hasSession ? "connected to the master agent" : "the master agent is gone");
    if (hasSession)
        lossIsTold = false;
    else
        trapsArrived(takeAnswers()); // of this very turn; what is still on its way is sent again
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

/// Sends what may leave; says whether there was something.
bool sendSome()
{
    const std::deque<Trap> taken = takeTraps();
    for (const Trap& trap : taken) {
        if (!hasSession)
            tellLoss();
        send(trap);
    }
    std::fflush(stderr);
    if (!taken.empty())
        lastMove = current<Clock>().steady();
    return !taken.empty();
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
    const bool sent = sendSome();
    if (!common::policy().pacesTrapsApart)
        trapsArrived(everyTrap);
    else if (sent)
        agent::wakeEventThread(); // for the next trap's turn
}

void noteArrivedTraps()
{
    std::size_t arrived = takeAnswers();
    if (trapStanding().onTheirWay == 0)
        return;
    const auto now = current<Clock>().steady();
    if (arrived > 0)
        lastMove = now;
    else if (now - lastMove <= patienceForAnswers)
        return;
    else
        arrived = everyTrap;
    trapsArrived(arrived);
    agent::wakeEventThread(); // the mark follows
}

void sendLastTraps()
{
    sendQueuedTraps();
    const common::Stopwatch wait;
    while (trapStanding().onTheirWay > 0 && hasSession && wait.elapsed() < lastPatience) {
        current<Clock>().sleepFor(napForAnswers);
        agent_check_and_process(0);
        noteArrivedTraps();
    }
}

} // namespace mib
