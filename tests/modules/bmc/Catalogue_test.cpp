#include "common/Util.hpp"
#include "modules/bmc/engine/ThrowNames.hpp"
#include "tests/modules/bmc/CatalogueData.hpp"

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

// What a script names must be there, what is there must be named.

using namespace catalogue_data;

namespace {

/// What the code of the subjects sets before it runs a script, or answers by itself.
const Names ofHandlers = {"$/FRU/DEVICE_ID",
                          "$/FRU/INVENTORY/OFFSET_LS",
                          "$/FRU/INVENTORY/OFFSET_MS",
                          "$/FRU/READ_COUNT",
                          "$/SDR/ADDRESS_LS",
                          "$/SDR/ADDRESS_MS",
                          "$/SDR/LEN",
                          "$/SDR/OFFSET",
                          "GET://BMC/FRU",
                          "$/SEL/GET_SEL_ENTRY_LS",
                          "$/SEL/GET_SEL_ENTRY_MS",
                          "GET://BMC/SDR"};

const std::set<Opcode> sends = {Opcode::IPMI, Opcode::IPMI_Without_Throw};
const std::set<Opcode> picks = {Opcode::IPMIResponse, Opcode::Filter, Opcode::Exclude};
const std::set<Opcode> calls = {Opcode::Template, Opcode::Template_with_Catch, Opcode::Poll};
const std::set<Opcode> tests = {Opcode::If, Opcode::While};

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

/// The keys of the list: of templates, and of packets.
std::pair<Names, Names> listedKeys()
{
    std::pair<Names, Names> keys;
    Names* current = &keys.first;
    std::ifstream file(std::filesystem::path(HWAGENT_ENGINE_TESTS) / "catalogue-keys.txt");
    std::string line, branch;
    while (std::getline(file, line)) {
        if (line == "# PACKETS")
            current = &keys.second;
        std::istringstream words(line.starts_with('#') ? "" : line);
        for (std::string word; words >> std::quoted(word);) {
            const bool isBranch = word.starts_with("//"), isWritten = word[0] == '+', isBoth = word[0] == '*';
            const std::string key = branch + word.substr(isWritten || isBoth);
            if (isBranch)
                branch = word.substr(0, word.size() - 1);
            if (!isBranch && !isWritten)
                current->insert("GET:" + key);
            if (isWritten || isBoth)
                current->insert("SET:" + key);
        }
    }
    return keys;
}

/// What a query brings along: subscripts by name and number, a SET's value under its last name, parameters.
Names symbolsOfQuery(const std::string& key)
{
    Names names = {"$FORCE"};
    for (const std::string& name : parameterNames(key))
        names.insert("$" + name);
    for (const std::string& token : Util::split(key.substr(key.find(':') + 1), "/")) {
        const std::string name = "$" + token.substr(0, token.find('['));
        names.insert({name, name + "_NUMBER"});
    }
    return names;
}

/// Symbols that a step reads: all of its operands, or all but the one that it writes.
Names readsOf(Opcode opcode, const std::vector<std::string>& operands)
{
    const std::set<Opcode> writeNothing = {Opcode::If,    Opcode::While, Opcode::Assign, Opcode::Return,
                                           Opcode::Throw, Opcode::Sleep, Opcode::Print};
    Names reads(operands.begin(), operands.end());
    if (!writeNothing.contains(opcode) && !operands.empty())
        reads.erase(operands.back());
    if (const auto packet = stores().packets.find(operands.empty() ? "" : operands.front());
        packet != stores().packets.end() && sends.contains(opcode))
        reads.insert(packet->second.values.begin(), packet->second.values.end());
    std::erase_if(reads, std::not_fn(isSymbol));
    return reads;
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
    Names findings;
    for (const auto& [key, program] : stores().templates) {
        if (program->size() != 1 || static_cast<Opcode>(program->front().opcode) != Opcode::Append ||
            someOnly.contains(key))
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

TEST(Catalogue, EveryNamedEntryExists)
{
    EXPECT_THAT(missing(stores().packets, sends, 0), IsEmpty());
    EXPECT_THAT(missing(stores().filters, picks, 1), IsEmpty());
    EXPECT_THAT(missing(stores().tables, {Opcode::LookupTable}, 1), IsEmpty());
    EXPECT_THAT(missing(stores().templates, calls, 0), IsEmpty());
}

/// By a step of its own script, by any script if its name has a path, by the query, or by code.
TEST(Catalogue, EverySymbolThatIsReadIsSetSomewhere)
{
    Names anywhere = keysOf(stores().symbols);
    anywhere.insert(ofHandlers.begin(), ofHandlers.end());
    for (const ParameterRow& row : parameterRows())
        anywhere.merge(symbolsOfQuery(row.key));
    std::map<std::string, Names> writes, known;
    forEachStep([&](const std::string& key, Opcode, const std::vector<std::string>& operands) {
        if (operands.empty())
            return;
        writes[key].insert({operands.back(), "$" + operands.front(), "$RESULT", "$BMC_COMPLETION_CODE"});
        if (operands.back().starts_with("$/"))
            anywhere.insert(operands.back());
    });
    for (auto& [key, names] : writes) {
        names.merge(symbolsOfQuery(key));
        known[key] = names;
    }
    forEachStep([&](const std::string& key, Opcode opcode, const std::vector<std::string>& operands) {
        if (!calls.contains(opcode))
            return;
        const std::string callee = withoutSubscripts(operands.front());
        known[key].insert(writes[callee].begin(), writes[callee].end());
        known[callee].insert(writes[key].begin(), writes[key].end());
    });
    Names findings;
    forEachStep([&](const std::string& key, Opcode opcode, const std::vector<std::string>& operands) {
        for (const std::string& name : readsOf(opcode, operands))
            if (!known[key].contains(name) && !anywhere.contains(name))
                findings.insert(key + " reads " + name);
    });
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, TheKeysAreTheListedOnes)
{
    const auto [templates, packets] = listedKeys();
    EXPECT_EQ(keysOf(stores().templates), templates);
    EXPECT_EQ(keysOf(stores().packets), packets);
}
