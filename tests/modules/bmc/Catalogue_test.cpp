#include "modules/bmc/engine/ThrowNames.hpp"
#include "tests/modules/bmc/CatalogueData.hpp"

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// What a script names must be there, what is there must be named.

using namespace catalogue_data;
using testing::IsEmpty;

namespace {

const std::filesystem::path here = HWAGENT_ENGINE_TESTS;

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
        if (!used.contains(name) && !ofHandlers.contains(name))
            findings.insert(name);
    return findings;
}

std::map<std::string, Names> keysByArea()
{
    std::map<std::string, Names> areas;
    std::ifstream file(here / "catalogue-keys.txt");
    std::string line, area;
    while (std::getline(file, line)) {
        if (line.starts_with("# "))
            area = line.substr(2);
        std::istringstream words(line.starts_with("# ") ? "" : line);
        for (std::string key; words >> std::quoted(key);)
            areas[area].insert(key);
    }
    return areas;
}

bool isHexByte(const std::string& text)
{
    return text.size() == 2 && text.find_first_not_of("0123456789ABCDEF") == std::string::npos;
}

/// Whether the packet reads: target, network function, LUN, command, data.
bool hasTheShapeOfARequest(const std::vector<std::string>& packet)
{
    const Names targets = {"$CONTROLLER_NUMBER", "$DEVICE_ID_NUMBER", "$/BMC/SENSOR_OWNER"}; // beside the constants
    if (packet.size() < 4)
        return false;
    const bool head = (targets.contains(packet[0]) || packet[0].ends_with("_ADDRESS")) &&
                      (packet[1].ends_with("_NET_FUNCTION") || packet[1].ends_with("_APP")) && isConstant(packet[1]) &&
                      (packet[2] == "00" || packet[2] == "$/BMC/SENSOR_LUN") && isConstant(packet[3]);
    return head && std::all_of(packet.begin() + 4, packet.end(),
                               [](const std::string& item) { return isSymbol(item) || isHexByte(item); });
}

bool isBranch(const Script& program)
{
    return program.size() == 1 && static_cast<Opcode>(program.front().opcode) == Opcode::Append;
}

void addWords(Names& words, const std::string& text)
{
    constexpr std::size_t shortest = 5;
    std::string word;
    for (const char character : text + " ") {
        if (std::isalpha(static_cast<unsigned char>(character))) {
            word += character;
            continue;
        }
        if (word.size() >= shortest)
            words.insert(word);
        word.clear();
    }
}

/// Every word that the catalogue answers with, takes or compares with.
Names allWords()
{
    Names words;
    for (const auto& [key, table] : stores().tables)
        for (const auto& [from, to] : table)
            addWords(words, from + " " + to);
    for (const auto& [key, program] : stores().templates) {
        addWords(words, key);
        for (const Function& step : *program)
            for (const std::string& operand : step.arguments.values)
                addWords(words, operand);
    }
    return words;
}

/// Whether one letter more, less or other makes `one` of `other`; an ending does not count.
bool differByALetter(const std::string& one, const std::string& other)
{
    const auto [at, place] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    if (at == one.end() || place == other.end())
        return false;
    const auto same = [](auto first, auto last, auto from, auto to) { return std::equal(first, last, from, to); };
    return same(at + 1, one.end(), place + 1, other.end()) || same(at + 1, one.end(), place, other.end()) ||
           same(at, one.end(), place + 1, other.end());
}

} // namespace

TEST(Catalogue, EveryPacketHasTheShapeOfARequest)
{
    const Names wholeByTheCaller = {"GET://BMC/IPMI/RAW_COMMAND"};
    Findings findings;
    for (const auto& [key, packet] : stores().packets)
        if (!wholeByTheCaller.contains(key) && !hasTheShapeOfARequest(packet.values))
            findings.insert(key + ": " + Util::join(packet.values, " "));
    EXPECT_THAT(findings, IsEmpty());
}

/// The line's packet with its constants resolved; "-" stands where there is nothing to compare.
std::string resolved(const std::vector<std::string>& packet, std::size_t at)
{
    const auto constant = stores().symbols.find(packet.at(at));
    return constant == stores().symbols.end() ? packet[at] : constant->second.text();
}

TEST(Catalogue, ThePacketsOfTheListAreTheSameByteForByte)
{
    std::ifstream file(here / "packets.txt");
    int compared = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string key, target, netFn, command;
        if (!line.starts_with('"') || !(words >> std::quoted(key) >> target >> netFn >> command >> std::ws))
            continue;
        std::string data;
        std::getline(words, data);
        SCOPED_TRACE(key);
        const auto found = stores().packets.find(key);
        ASSERT_NE(found, stores().packets.end());
        const std::vector<std::string>& packet = found->second.values;
        const std::vector<std::string> head = {target, netFn, command};
        const std::size_t places[] = {0, 1, 3};
        for (std::size_t at = 0; at < head.size(); ++at)
            EXPECT_TRUE(head[at] == "-" || head[at] == resolved(packet, places[at])) << head[at];
        EXPECT_EQ(Util::join({packet.begin() + 4, packet.end()}, " "), data == "-" ? "" : data);
        ++compared;
    }
    EXPECT_EQ(compared, 38);
}

/// Answers and callers' words come to the tables in upper case.
TEST(Catalogue, EveryTableIsLookedUpInUpperCase)
{
    Findings findings;
    for (const auto& [key, table] : stores().tables)
        for (const auto& [from, to] : table)
            if (from != Util::upcase(from))
                findings.insert(key + ": " + from);
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryFieldNumberIsDecimal)
{
    Findings findings;
    for (const auto& [key, filter] : stores().filters)
        for (const std::string& number : filter.values)
            if (number != std::to_string(std::strtoul(number.c_str(), nullptr, 10)))
                findings.insert(key + ": " + number);
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryBranchNamesAllItsChildren)
{
    // What not every BMC can answer would end a walk: the engine's files have the children of these.
    const Names someOnly = {"GET://BMC/INFO", "GET://BMC", "GET://BMC/CHASSIS"};
    // Places that no key names: what is below them stands alone.
    const Names noBranches = {
        "GET:/",
        "GET://BMC/BOOT",
        "GET://BMC/CHANNEL[]/NONVOLATILE/AUTHENTICATIONTYPE",
        "GET://BMC/CONTROLLER[]",
        "GET://BMC/FIRMWARE",
        "GET://BMC/FIRMWARE/SDR",
        "GET://BMC/FRU",
        "GET://BMC/INFO/LOCAL",
        "GET://BMC/IPMI",
        "GET://BMC/LAN[]/AUTHENTICATION_TYPE",
        "GET://BMC/LAN[]/RAW",
        "GET://BMC/OEM[]",
        "GET://BMC/PEF/ALERT_STRING[]",
        "GET://BMC/PEF/ALERT_STRING_KEY[]/FILTER[]",
        "GET://BMC/PG",
        "GET://BMC/PG/DOMAIN[]/POLICY[]",
        "GET://BMC/PG/DOMAIN[]/POLICY_TYPE[]",
        "GET://BMC/PG/STATISTICS_MODE[]/DOMAIN[]/POLICY[]",
        "GET://BMC/SCF",
        "GET://BMC/SDR",
        "GET://BMC/SENSOR[]",
        "GET://BMC/SENSOR[]/OWNER[]/LUN[]",
        "GET://BMC/SERIAL/CHANNEL[]/TERMINALMODE",
        "GET://BMC/SMBIOS",
        "GET://BMC/SOL/CHANNEL[]/USER[]",
        "GET://BMC/SOL/USER[]/CHANNEL[]",
        "GET://BMC/VLN_INFO",
    };
    // Other forms of what a walk tells already, and scripts for scripts.
    const Names standingAlone = {
        "GET://BMC/CHANNEL[]/ACCESS",
        "GET://BMC/CHANNEL[]/ASSERT",
        "GET://BMC/CHANNEL[]/INFO",
        "GET://BMC/LAN[]/ALERT/DESTINATION[]/INFO",
        "GET://BMC/LAN[]/ALERT/DESTINATION[]/SCF",
        "GET://BMC/LAN[]/ALERT/IP",
        "GET://BMC/PEF/CAPABILITIES",
        "GET://BMC/PEF/DATA",
        "GET://BMC/PEF/FILTER[]/RAW",
        "GET://BMC/PEF/INFO_CAPABILITIES",
        "GET://BMC/PEF/POLICY[]/RAW",
        "GET://BMC/SOL/CHANNEL[]/SCF",
        "GET://BMC/USER[]/CHANNEL[]/SCF",
        "GET://BMC/USER[]/NAPX_INFO",
        "GET://BMC/USER[]/SCF",
        "GET://BMC/LAN[]/ASSERT",
        "GET://BMC/LAN[]/IPTYPE_STATUS",
        "GET://BMC/LAN[]/SCF",
    };
    Findings findings;
    for (const auto& [key, program] : stores().templates) {
        if (standingAlone.contains(key))
            continue;
        const std::size_t slash = key.rfind('/');
        const auto parent = stores().templates.find(key.substr(0, slash));
        if (parent == stores().templates.end() && key.starts_with("GET:") && !noBranches.contains(key.substr(0, slash)))
            findings.insert(key);
        if (parent == stores().templates.end() || !isBranch(*parent->second) || someOnly.contains(parent->first))
            continue;
        const std::vector<std::string>& children = parent->second->front().arguments.values;
        if (std::find(children.begin(), children.end(), key.substr(slash + 1, key.find('[', slash) - slash - 1)) ==
            children.end())
            findings.insert(key);
    }
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, NoWordIsAnotherWithALetterWrong)
{
    const std::set<std::pair<std::string, std::string>> wellMeant = {
        {"BLOCK", "CLOCK"},       {"GETBOOTTABLE", "SETBOOTTABLE"},
        {"GETTABLE", "SETTABLE"}, {"INSUFFICENT", "INSUFFICIENT"}, // a word that callers know as it is
        {"ENABLED", "ENABLES"},   {"INTERNAL", "INTERVAL"},
        {"LOWER", "POWER"},       {"PMBUS", "SMBUS"},
        {"STATES", "STATUS"}};
    const Names words = allWords();
    std::set<std::pair<std::string, std::string>> findings;
    for (auto one = words.begin(); one != words.end(); ++one)
        for (auto other = std::next(one); other != words.end(); ++other)
            if (differByALetter(*one, *other) && !wellMeant.contains({*one, *other}))
                findings.insert({*one, *other});
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryStepHasAsManyOperandsAsItsInstructionTakes)
{
    Findings findings;
    forEachStep([&](const std::string& key, const Function& step) {
        const OpcodeInfo info = opcodeInfo(step.opcode);
        const std::size_t count = step.arguments.size();
        if (!info.name || count < info.fewestOperands || count > info.mostOperands)
            findings.insert(key + ": opcode " + std::to_string(step.opcode) + ", operands " + std::to_string(count));
    });
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryConditionIsAChainOfTriples)
{
    const Names operators = {"==", "!=", "<", "<=", ">", ">="};
    Findings findings;
    forEachStep([&](const std::string& key, const Function& step) {
        const auto opcode = static_cast<Opcode>(step.opcode);
        if (opcode != Opcode::If && opcode != Opcode::While)
            return;
        const std::vector<std::string>& operands = step.arguments.values;
        bool good = operands.size() % 4 == 3;
        for (std::size_t at = 0; good && at + 2 < operands.size(); at += 4)
            good = operators.contains(operands[at + 1]) &&
                   (at + 3 >= operands.size() || operands[at + 3] == "AND" || operands[at + 3] == "OR");
        if (!good)
            findings.insert(key + ": " + Util::join(operands, " "));
    });
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Catalogue, EveryBlockHasItsEnd)
{
    Findings findings;
    for (const auto& [key, program] : stores().templates) {
        int depth = 0;
        for (const Function& step : *program) {
            const auto opcode = static_cast<Opcode>(step.opcode);
            depth += opcode == Opcode::If || opcode == Opcode::For || opcode == Opcode::While;
            depth -= opcode == Opcode::End;
            if (depth < 0)
                break;
        }
        if (depth != 0 || program->empty())
            findings.insert(key);
    }
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

    const Names read = symbolsRead();
    Findings constants;
    for (const auto& [name, value] : stores().symbols)
        if (!read.contains(name) && !ofHandlers.contains(name))
            constants.insert(name);
    EXPECT_THAT(constants, IsEmpty());
}

TEST(Catalogue, EveryChildOfABranchIsAnswered)
{
    // Only names: the events' own places are elsewhere in the tree.
    const Names namesOnly = {"GET://BMC/INFO/SUPPORT"};
    Findings findings;
    for (const auto& [key, program] : stores().templates) {
        const Function& first = program->front();
        if (program->size() != 1 || static_cast<Opcode>(first.opcode) != Opcode::Append || namesOnly.contains(key))
            continue;
        const std::vector<std::string>& names = first.arguments.values;
        for (std::size_t at = 0; at + 1 < names.size(); ++at)
            if (const std::string child = key + "/" + names[at];
                !stores().templates.contains(child) && !ofHandlers.contains(child))
                findings.insert(child);
    }
    EXPECT_THAT(findings, IsEmpty());
}

template<class Entries>
Names keysOf(const Entries& entries)
{
    Names keys;
    for (const auto& [key, entry] : entries)
        keys.insert(key);
    return keys;
}

TEST(Catalogue, TheKeysAreTheListedOnes)
{
    Names templates;
    for (const auto& [area, listed] : keysByArea())
        if (area != "PACKETS")
            templates.insert(listed.begin(), listed.end());
    EXPECT_EQ(templates.size(), 725u);
    EXPECT_EQ(keysByArea()["PACKETS"].size(), 230u);
    EXPECT_EQ(keysOf(stores().templates), templates);
    EXPECT_EQ(keysOf(stores().packets), keysByArea()["PACKETS"]);
}
