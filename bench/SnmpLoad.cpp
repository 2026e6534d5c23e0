// snmp_load PEER OPERATION COUNT SECONDS OID...: requests, one at a time, and what they cost.
//
// OPERATION is get, getnext or bulk10. Each request carries all the OIDs; getnext and bulk10 start over from the same
// OIDs each time, so that every request costs the same. Ends after COUNT requests or SECONDS, whichever comes first.
// Prints one line: requests, seconds, requests a second, and the median, the 99.9th percentile and the slowest in
// microseconds.

#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Seconds = std::chrono::duration<double>;

struct Oid {
    oid name[MAX_OID_LEN];
    std::size_t length = MAX_OID_LEN;
};

struct Operation {
    const char* word;
    int pdu;
    long repetitions;
};

constexpr Operation operations[] = {
    {"get", SNMP_MSG_GET, 0},
    {"getnext", SNMP_MSG_GETNEXT, 0},
    {"bulk10", SNMP_MSG_GETBULK, 10},
};

const Operation* findOperation(const char* word)
{
    const auto* found =
        std::ranges::find_if(operations, [&](const Operation& o) { return !std::strcmp(o.word, word); });
    return found == std::end(operations) ? nullptr : found;
}

netsnmp_session* openSession(char* peer)
{
    static unsigned char community[] = "public";
    netsnmp_session settings;
    snmp_sess_init(&settings);
    settings.version = SNMP_VERSION_2c;
    settings.peername = peer;
    settings.community = community;
    settings.community_len = sizeof community - 1;
    settings.timeout = 10'000'000;
    settings.retries = 0;
    return snmp_open(&settings);
}

/// One request; false if it got no proper answer.
bool request(netsnmp_session* session, const Operation& operation, const std::vector<Oid>& oids)
{
    netsnmp_pdu* pdu = snmp_pdu_create(operation.pdu);
    if (operation.repetitions) {
        pdu->non_repeaters = 0;
        pdu->max_repetitions = operation.repetitions;
    }
    for (const Oid& name : oids)
        snmp_add_null_var(pdu, name.name, name.length);
    netsnmp_pdu* response = nullptr;
    const int status = snmp_synch_response(session, pdu, &response);
    const bool good = status == STAT_SUCCESS && response && response->errstat == SNMP_ERR_NOERROR;
    if (response)
        snmp_free_pdu(response);
    return good;
}

void report(std::vector<double>& times, double seconds)
{
    std::ranges::sort(times);
    const auto at = [&](double share) {
        return 1e6 * times[static_cast<std::size_t>(share * double(times.size() - 1))];
    };
    std::printf("requests %zu seconds %.3f rate %.1f median_us %.1f p999_us %.1f slowest_us %.1f\n", times.size(),
                seconds, double(times.size()) / seconds, at(0.5), at(0.999), at(1.0));
}

} // namespace

int main(int argc, char** argv)
{
    const Operation* operation = argc > 5 ? findOperation(argv[2]) : nullptr;
    if (!operation) {
        std::fprintf(stderr, "usage: snmp_load PEER get|getnext|bulk10 COUNT SECONDS OID...\n");
        return 2;
    }
    setenv("MIBS", "", 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
    init_snmp("snmp_load");
    std::vector<Oid> oids(static_cast<std::size_t>(argc - 5));
    for (std::size_t i = 0; i < oids.size(); ++i)
        if (!read_objid(argv[i + 5], oids[i].name, &oids[i].length)) {
            std::fprintf(stderr, "snmp_load: \"%s\" is no OID\n", argv[i + 5]);
            return 2;
        }
    netsnmp_session* session = openSession(argv[1]);
    if (!session)
        return 1;

    const auto most = std::strtoul(argv[3], nullptr, 10);
    const Seconds limit(std::strtod(argv[4], nullptr));
    std::vector<double> times;
    times.reserve(most);
    const auto start = std::chrono::steady_clock::now();
    auto before = start;
    while (times.size() < most && before - start < limit) {
        if (!request(session, *operation, oids)) {
            std::fprintf(stderr, "snmp_load: request %zu got no answer\n", times.size() + 1);
            return 1;
        }
        const auto after = std::chrono::steady_clock::now();
        times.push_back(Seconds(after - before).count());
        before = after;
    }
    report(times, Seconds(before - start).count());
    snmp_close(session);
    return 0;
}
