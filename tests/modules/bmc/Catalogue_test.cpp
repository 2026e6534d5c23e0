#include "common/Util.hpp"
#include "modules/bmc/catalogue/Catalogue.hpp"
#include "modules/bmc/engine/ThrowNames.hpp"

#include <functional>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The whole catalogue read as data: what a script names must be there, what is there must be named. Each test collects
// its findings, so that one run shows them all.

using namespace Module::BMCConfig;
using testing::IsEmpty;

namespace {

using Names = std::set<std::string>;
using Findings = std::set<std::string>;

const Stores& stores()
{
    static const std::shared_ptr<const Stores> all = catalogue(0, true);
    return *all;
}

/// What the code of the subjects sets before it runs a script, or uses of the catalogue by itself.
const Names ofHandlers = {"$/FRU/DEVICE_ID",
                          "$/FRU/INVENTORY/OFFSET_LS",
                          "$/FRU/INVENTORY/OFFSET_MS",
                          "$/FRU/READ_COUNT",
                          "$/SDR/ADDRESS_LS",
                          "$/SDR/ADDRESS_MS",
                          "$/SDR/LEN",
                          "$/SDR/OFFSET",
                          "$/SEL/GET_SEL_ENTRY_LS",
                          "$/SEL/GET_SEL_ENTRY_MS",
                          "GET://BMC/SDR_RECORD",
                          "GET://BMC/SENSOR_LUN",
                          "GET://BMC/SENSOR_OWNER",
                          "GET://BMC/SENSOR_TYPE_INDEX_RECORD_THREE",
                          "GET://BMC/SENSOR_TYPE_RECORD",
                          "GET://BMC/FRU",
                          "GET://BMC/SDR"};

/// A command that no script sends yet.
const Names standingReady = {"$/SDR/REPOSITORY_ALLOCATION_INFO"};

bool isSymbol(const std::string& text)
{
    return text.size() > 1 && text.front() == '$' && text.find('$', 1) == std::string::npos;
}

std::string withoutSubscripts(std::string query)
{
    for (std::size_t at = 0; (at = query.find('[', at)) != std::string::npos; ++at)
        if (query.compare(at, 2, "[@") != 0)
            query.erase(at + 1, query.find(']', at) - at - 1);
    return query;
}

const std::set<Opcode> sends = {Opcode::IPMI, Opcode::IPMI_Without_Throw};
const std::set<Opcode> picks = {Opcode::IPMIResponse, Opcode::Filter, Opcode::Exclude};
const std::set<Opcode> calls = {Opcode::Template, Opcode::Template_with_Catch, Opcode::Poll};

void forEachStep(const std::function<void(const std::string& key, const Function& step)>& visit)
{
    for (const auto& [key, program] : stores().templates)
        for (const Function& step : *program)
            visit(key, step);
}

/// For each literal that steps of the opcodes name as their operand `place`, whether it is a key of the entries.
template<class Entries>
Findings missing(const Entries& entries, const std::set<Opcode>& opcodes, std::size_t place)
{
    Findings findings;
    forEachStep([&](const std::string& key, const Function& step) {
        if (!opcodes.contains(static_cast<Opcode>(step.opcode)))
            return;
        const std::string& name = step.arguments.values.at(place);
        if (!isSymbol(name) && !entries.contains(withoutSubscripts(name)))
            findings.insert(key + " names " + name);
    });
    return findings;
}

/// Entries that no step of the opcodes names as its operand `place`, nor a handler.
template<class Entries>
Findings unused(const Entries& entries, const std::set<Opcode>& opcodes, std::size_t place)
{
    Names used;
    forEachStep([&](const std::string&, const Function& step) {
        if (opcodes.contains(static_cast<Opcode>(step.opcode)))
            used.insert(step.arguments.values.at(place));
    });
    Findings findings;
    for (const auto& [name, entry] : entries)
        if (!used.contains(name) && !ofHandlers.contains(name) && !standingReady.contains(name))
            findings.insert(name);
    return findings;
}

bool isHexByte(const std::string& text)
{
    return text.size() == 2 && text.find_first_not_of("0123456789ABCDEF") == std::string::npos;
}

/// Whether the packet reads: target, network function, LUN, command, data.
bool hasTheShapeOfARequest(const std::vector<std::string>& packet)
{
    const Names targets = {"$DEVICE_ID_NUMBER", "$/BMC/SENSOR_OWNER"}; // beside the constants
    if (packet.size() < 4)
        return false;
    const bool head = (targets.contains(packet[0]) || packet[0].ends_with("_ADDRESS")) &&
                      (packet[1].ends_with("_NET_FUNCTION") || packet[1].ends_with("_APP")) &&
                      stores().symbols.contains(packet[1]) && (packet[2] == "00" || packet[2] == "$/BMC/SENSOR_LUN") &&
                      stores().symbols.contains(packet[3]);
    return head && std::all_of(packet.begin() + 4, packet.end(),
                               [](const std::string& item) { return isSymbol(item) || isHexByte(item); });
}

} // namespace

/// The kernel driver's road drops the LUN, so that no exchange shows it.
TEST(Catalogue, EveryPacketHasTheShapeOfARequest)
{
    const Names wholeByTheCaller = {"GET://BMC/IPMI/RAW_COMMAND"};
    Findings findings;
    for (const auto& [key, packet] : stores().packets)
        if (!wholeByTheCaller.contains(key) && !hasTheShapeOfARequest(packet.values))
            findings.insert(key + ": " + Util::join(packet.values, " "));
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryNamedEntryExists)
{
    EXPECT_THAT(missing(stores().packets, sends, 0), IsEmpty());
    EXPECT_THAT(missing(stores().filters, picks, 1), IsEmpty());
    EXPECT_THAT(missing(stores().tables, {Opcode::LookupTable}, 1), IsEmpty());
    EXPECT_THAT(missing(stores().templates, calls, 0), IsEmpty());
}

TEST(Catalogue, EveryErrorThatIsThrownHasACode)
{
    const Names symbols = {"$COMPLETION_CODE", "$READ_ERROR"};
    Findings findings;
    forEachStep([&](const std::string& key, const Function& step) {
        if (static_cast<Opcode>(step.opcode) != Opcode::Throw)
            return;
        const std::string& name = step.arguments.values.at(0);
        if (!symbols.contains(name) && throwCode(name) == 0)
            findings.insert(key + " throws " + name);
    });
    EXPECT_THAT(findings, IsEmpty());
    EXPECT_EQ(throwCode("ERROR_LAN_IP_SET"), 1185);
    EXPECT_EQ(throwCode("ERROR_CR_CONFIGURATION_SET"), 1355);
    EXPECT_EQ(throwCode("RESPONSE_ERROR_REQUEST_DATA_TRUNCATED"), 2008);
    EXPECT_EQ(throwCode("ERROR_OF_NO_KIND"), 0);
}

TEST(Catalogue, EveryEntryIsUsed)
{
    EXPECT_THAT(unused(stores().packets, sends, 0), IsEmpty());
    EXPECT_THAT(unused(stores().filters, picks, 1), IsEmpty());
    EXPECT_THAT(unused(stores().tables, {Opcode::LookupTable}, 1), IsEmpty());

    Names read;
    for (const auto& [key, packet] : stores().packets)
        read.insert(packet.values.begin(), packet.values.end());
    forEachStep([&](const std::string&, const Function& step) {
        read.insert(step.arguments.values.begin(), step.arguments.values.end());
    });
    Findings constants;
    for (const auto& [name, value] : stores().symbols)
        if (!read.contains(name) && !ofHandlers.contains(name) && !standingReady.contains(name))
            constants.insert(name);
    EXPECT_THAT(constants, IsEmpty());
}
