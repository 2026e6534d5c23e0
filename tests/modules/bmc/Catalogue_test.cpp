#include "common/Util.hpp"
#include "modules/bmc/engine/ThrowNames.hpp"
#include "tests/modules/bmc/CatalogueData.hpp"

// What a script names must be there, what is there must be named.

using namespace catalogue_data;

namespace {

/// What the code of the subjects answers by itself.
const Names ofHandlers = {"GET://BMC/FRU", "GET://BMC/SDR"};

const std::set<Opcode> sends = {Opcode::IPMI, Opcode::IPMI_Without_Throw};
const std::set<Opcode> picks = {Opcode::IPMIResponse, Opcode::Filter, Opcode::Exclude};
const std::set<Opcode> calls = {Opcode::Template, Opcode::Template_with_Catch, Opcode::Poll};
const std::set<Opcode> tests = {Opcode::If, Opcode::While};

bool isSymbol(const std::string& text)
{
    return text.size() > 1 && text.front() == '$' && text.find('$', 1) == std::string::npos;
}

/// For each literal that steps of the opcodes name as their operand `place`, whether it is a key of the entries.
template<class Entries>
Names missing(const Entries& entries, const std::set<Opcode>& opcodes, std::size_t place)
{
    Names findings;
    forEachStep([&](const std::string& key, Opcode opcode, const std::vector<std::string>& operands) {
        if (opcodes.contains(opcode) && !isSymbol(operands.at(place)) &&
            !entries.contains(withoutSubscripts(operands.at(place))))
            findings.insert(key + " names " + operands.at(place));
    });
    return findings;
}

template<class Entries>
Names keysOf(const Entries& entries)
{
    Names keys;
    for (const auto& [key, entry] : entries)
        keys.insert(key);
    return keys;
}

} // namespace

/// Answers and callers' words come to the tables in upper case.
TEST(Catalogue, EveryTableIsLookedUpInUpperCase)
{
    Names findings;
    for (const auto& [key, table] : stores().tables)
        for (const auto& [from, to] : table)
            if (from != Util::upcase(from))
                findings.insert(key + ": " + from);
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryBranchNamesAllItsChildrenAndNoOther)
{
    // What not every BMC can answer would end a walk: the engine's files have the children of these.
    const Names someOnly = {"GET://BMC", "GET://BMC/CHASSIS", "GET://BMC/INFO", "GET://BMC/INFO/SUPPORT"};
    // Other forms of what a walk tells already, and scripts for scripts.
    const Names standingAlone = {
        "/ACCESS",    "/ASSERT",       "/INFO", "/SCF", "/RAW", "/IP", "/CAPABILITIES", "/DATA", "/INFO_CAPABILITIES",
        "/NAPX_INFO", "/IPTYPE_STATUS"};
    int branches = 0;
    Names findings;
    for (const auto& [key, program] : stores().templates) {
        branches += isBranch(*program);
        if (!isBranch(*program) || someOnly.contains(key))
            continue;
        Names children(program->front().arguments.values.begin(), program->front().arguments.values.end() - 1);
        for (const std::string& child : children)
            if (!stores().templates.contains(key + "/" + child) && !ofHandlers.contains(key + "/" + child))
                findings.insert(key + " names " + child);
        for (auto below = stores().templates.begin(); below != stores().templates.end(); ++below) {
            if (!below->first.starts_with(key + "/"))
                continue;
            const std::string tail = below->first.substr(key.size() + 1);
            const bool isChild = tail.find('/') == std::string::npos;
            if (isChild && !children.contains(tail.substr(0, tail.find('['))) && !standingAlone.contains("/" + tail))
                findings.insert(key + " lacks " + tail);
        }
    }
    EXPECT_EQ(branches, 76) << "a branch was lost, or a new one has to be counted";
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryStepIsWellFormed)
{
    const Names operators = {"==", "!=", "<", "<=", ">", ">="}, joints = {"AND", "OR"};
    Names findings;
    forEachStep([&](const std::string& key, Opcode opcode, const std::vector<std::string>& operands) {
        const OpcodeInfo info = opcodeInfo(static_cast<std::uint32_t>(opcode));
        bool good = info.name && operands.size() >= info.fewestOperands && operands.size() <= info.mostOperands;
        good = good && (!tests.contains(opcode) || operands.size() % 4 == 3);
        for (std::size_t at = 0; good && tests.contains(opcode) && at < operands.size(); ++at)
            good = (at % 4 != 1 || operators.contains(operands[at])) && (at % 4 != 3 || joints.contains(operands[at]));
        if (!good)
            findings.insert(key + ": " + Util::join(operands, " "));
        const Names symbols = {"$COMPLETION_CODE", "$READ_ERROR"};
        if (opcode == Opcode::Throw && !symbols.contains(operands.at(0)) && throwCode(operands.at(0)) == 0)
            findings.insert(key + " throws " + operands.at(0));
    });
    EXPECT_THAT(findings, IsEmpty());
    EXPECT_EQ(throwCode("ERROR_LAN_IP_SET"), 1185);
    EXPECT_EQ(throwCode("ERROR_CR_CONFIGURATION_SET"), 1355);
    EXPECT_EQ(throwCode("RESPONSE_ERROR_REQUEST_DATA_TRUNCATED"), 2008);
    EXPECT_EQ(throwCode("ERROR_OF_NO_KIND"), 0);
}

TEST(Catalogue, EveryNamedEntryExistsAndEveryPacketIsNamed)
{
    EXPECT_THAT(missing(stores().packets, sends, 0), IsEmpty());
    Names unsent = keysOf(stores().packets);
    forEachStep([&](const std::string&, Opcode, const std::vector<std::string>& operands) {
        for (const std::string& operand : operands)
            unsent.erase(operand);
    });
    EXPECT_THAT(unsent, IsEmpty());
    EXPECT_THAT(missing(stores().filters, picks, 1), IsEmpty());
    EXPECT_THAT(missing(stores().tables, {Opcode::LookupTable}, 1), IsEmpty());
    EXPECT_THAT(missing(stores().templates, calls, 0), IsEmpty());
}
