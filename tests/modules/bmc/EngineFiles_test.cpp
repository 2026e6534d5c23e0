// Runs the files of tests/modules/bmc/engine/ (see EngineFile.hpp): queries through the engine against a scripted BMC.
// One test a file.

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "modules/bmc/subjects/Cache.hpp"
#include "tests/modules/bmc/CatalogueData.hpp"
#include "tests/modules/bmc/EngineFile.hpp"
#include "tests/support/BmcTest.hpp"

#include <algorithm>
#include <filesystem>
#include <set>

namespace {

using engine::Exchange;
using engine::Query;

engine::Texts textOf(const IpmiRequest& request)
{
    ipmi::Bytes bytes{request.target, request.netFn, request.lun, request.cmd};
    bytes.insert(bytes.end(), request.data.begin(), request.data.end());
    return Util::split(ipmi::hexBytes(bytes), " ");
}

/// The BMC of one query: answers what the file says, and keeps what came against it.
class ScriptedBmc {
public:
    explicit ScriptedBmc(const std::vector<Exchange>& exchanges)
    {
        for (const Exchange& exchange : exchanges)
            (exchange.repeats ? repeating : expected).push_back(exchange);
        bmc.onOthers([this](const IpmiRequest& request) { return answer(textOf(request)); });
    }

    /// What did not come as the file says.
    std::string complaints() const
    {
        std::string text = unexpected;
        for (std::size_t at = next; at < expected.size(); ++at)
            text += "did not come: " + Util::join(expected[at].request, " ") + "\n";
        return text;
    }

private:
    IpmiAnswer answer(const engine::Texts& request)
    {
        const auto fits = [&](const Exchange& exchange) {
            return std::ranges::equal(
                exchange.request, request,
                [](const std::string& wanted, const std::string& byte) { return wanted == ".." || wanted == byte; });
        };
        if (next < expected.size() && fits(expected[next]))
            return expected[next++].answer;
        if (const auto found = std::ranges::find_if(repeating, fits); found != repeating.end())
            return found->answer;
        unexpected += "not in the file, or out of turn: " + Util::join(request, " ") + "\n";
        return {0xC1};
    }

    std::vector<Exchange> expected, repeating;
    std::size_t next = 0;
    std::string unexpected;
    ModelBmc bmc;
    ScopedSeam<transport::DeviceFile> use{bmc};
};

std::map<std::string, std::string> readParameters(const std::string& text)
{
    std::map<std::string, std::string> parameters;
    for (const std::string& pair : Util::split(text, " "))
        parameters.insert(cutAt(pair, "="));
    return parameters;
}

void ask(const Query& query, ResultMap& results)
{
    Module::BMCConfig::BMCConfigModule module;
    const bool hasParameters = query.value.find('=') != std::string::npos;
    if (query.isSet() && hasParameters)
        module.ProcessXQuery(query.path, readParameters(query.value));
    else if (query.isSet())
        module.ProcessXQuery(query.path, query.value, false);
    else if (hasParameters)
        module.ProcessXQuery(query.path, readParameters(query.value), results, 0);
    else
        module.Process(query.path, results);
}

/// What came of a query: its nodes as lines, or its failure, and what the BMC did not get as the file says.
struct Outcome {
    std::vector<std::string> lines;
    std::string failure, complaints;

    std::string values() const { return Util::join(lines, ";"); }
};

Outcome outcomeOf(const Query& query)
{
    ScriptedBmc bmc(query.exchanges);
    Outcome outcome;
    const Failure failure = failureOf([&] {
        ResultMap results;
        ask(query, results);
        for (const auto& [path, node] : results)
            outcome.lines.push_back(path + (node.mType == NODE_LEAF ? " = " : ": ") + Util::join(node.mXNodeList, " "));
    });
    const bool withDetail = query.failure.find(' ') != std::string::npos;
    outcome.failure = failure.code == 0 || withDetail ? failure.text() : std::to_string(failure.code);
    outcome.complaints = bmc.complaints();
    return outcome;
}

std::vector<std::filesystem::path> engineFiles()
{
    std::vector<std::filesystem::path> files;
    const auto folder = std::filesystem::path(HWAGENT_ENGINE_TESTS) / "engine";
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".txt")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

class EngineFiles : public BmcTest {
protected:
    EngineFiles()
    {
        Platform::PlatformImpl::CreateInstance()->platformName(); // so that queries cost their own exchanges only
        Module::BMCConfig::Cache::instance().Clear();
    }

    std::set<std::string> findings;
};

class EngineFile : public EngineFiles, public testing::WithParamInterface<std::filesystem::path> {};

TEST_P(EngineFile, AnswersAsWritten)
{
    for (const Query& query : engine::FileReader(GetParam()).read()) {
        if (query.verb == "clear") {
            Module::BMCConfig::Cache::instance().Clear();
            continue;
        }
        const Outcome outcome = outcomeOf(query);
        SCOPED_TRACE(GetParam().filename().string() + ":" + std::to_string(query.line) + ": " + query.path);
        EXPECT_EQ(outcome.failure, query.failure);
        EXPECT_EQ(outcome.complaints, "");
        EXPECT_THAT(outcome.lines, testing::UnorderedElementsAreArray(query.expected));
    }
}

INSTANTIATE_TEST_SUITE_P(Engine, EngineFile, testing::ValuesIn(engineFiles()),
                         [](const auto& file) { return file.param.stem().string(); });

/// The key of the template that a query asks for: with its scheme, and its subscripts emptied.
std::string keyOf(const Query& query)
{
    const std::string key = catalogue_data::withoutSubscripts((query.isSet() ? "SET:/" : "GET:/") + query.path);
    return key.substr(0, key.find("/@children"));
}

/// The query against a BMC whose every answer has been through `change`, in whatever order it is asked.
template<class Change>
Outcome outcomeWith(Query query, Change change)
{
    for (Exchange& exchange : query.exchanges) {
        change(exchange.answer);
        exchange.repeats = true;
    }
    Module::BMCConfig::Cache::instance().Clear();
    return outcomeOf(query);
}

/// Values that say of themselves that there is none.
bool admitsAbsence(const std::string& values)
{
    return values.find("NOT_SUPPORTED") != std::string::npos || values.find("NOT SUPPORTED") != std::string::npos ||
           values.ends_with("= NONE") || values.ends_with("= ") || values.ends_with(": ");
}

/// Of each template the first query of the files that succeeds.
std::map<std::string, Query> goodQueries()
{
    const auto& templates = catalogue_data::stores().templates;
    std::map<std::string, Query> queries;
    for (const auto& file : engineFiles())
        for (const Query& query : engine::FileReader(file).read())
            if (query.failure.empty() && !query.exchanges.empty() && templates.contains(keyOf(query)))
                queries.emplace(keyOf(query), query);
    return queries;
}

/// Queries whose answer is a status of its own, or the whole reply, completion code and all.
const std::set<std::string> tellTheFailure = {
    "GET://BMC/FRU/READ",
    "GET://BMC/INFO/VERSION", // "0.0"
    "GET://BMC/IPMI/RAW_COMMAND",
    "GET://BMC/SDR/RESERVE",
    "GET://BMC/SEL", // walks until it is let
    "GET://BMC/SENSOR[]/OWNER[]/LUN[]/THRESHOLD_STATUS",
    "GET://BMC/SENSOR[]/THRESHOLD_STATUS",
};

/// What a short answer leaves out: lists of what there is, and the sensors' bytes that the standard lets a BMC omit.
bool mayLackParts(const std::string& key)
{
    return key.find("/SCF") != std::string::npos || key.starts_with("GET://BMC/SENSOR[]/") ||
           tellTheFailure.contains(key);
}

/// One of each kind that anything here tells apart: commands' own, busy, unknown, by the standard, of nobody.
constexpr std::uint8_t refusals[] = {0x01, 0x80, 0x81, 0x82, 0xC0, 0xC1, 0xC3,
                                     0xC5, 0xC9, 0xCB, 0xCC, 0xD3, 0xD5, 0xFF};

TEST_F(EngineFiles, ARefusalIsNeverTakenForAnAnswer)
{
    for (const auto& [key, query] : goodQueries()) {
        if (tellTheFailure.contains(key))
            continue;
        for (const std::uint8_t code : refusals) {
            const Outcome outcome = outcomeWith(query, [&](IpmiAnswer& answer) { answer = {code}; });
            if (outcome.failure.empty() && (query.isSet() || !admitsAbsence(outcome.values())))
                findings.insert(key + " at " + ipmi::hexByte(code) + ": " + outcome.values());
        }
    }
    EXPECT_THAT(findings, testing::IsEmpty());
}

TEST_F(EngineFiles, AShortAnswerIsNeverTakenForAWholeOneAndALongOneChangesNoWrite)
{
    for (const auto& [key, query] : goodQueries()) {
        const Outcome tooMuch = outcomeWith(query, [](IpmiAnswer& answer) { answer.resize(250, 0x5A); });
        // the repository's subject reserves anew when it doubts an answer
        if (query.isSet() && !key.starts_with("SET://BMC/SDR/") && tooMuch.failure.empty() &&
            !tooMuch.complaints.empty())
            findings.insert(key + " after 250 bytes: " + tooMuch.complaints);
        if (mayLackParts(key))
            continue;
        const Outcome whole = outcomeWith(query, [](IpmiAnswer&) {});
        std::size_t longest = 1;
        for (const Exchange& exchange : query.exchanges)
            longest = std::max(longest, exchange.answer.size());
        for (std::size_t length = 1; length < longest; ++length) {
            const Outcome cut =
                outcomeWith(query, [&](IpmiAnswer& answer) { answer.resize(std::min(answer.size(), length)); });
            // raw data may end where the answer ends; a write must be the same or not come
            const bool good = !cut.failure.empty() || admitsAbsence(cut.values()) ||
                              (query.isSet() ? cut.complaints.empty() : whole.values().starts_with(cut.values()));
            if (!good)
                findings.insert(key + " of " + std::to_string(length) + " bytes: " + cut.values() + cut.complaints);
        }
    }
    EXPECT_THAT(findings, testing::IsEmpty());
}

TEST_F(EngineFiles, AskEveryTemplate)
{
    // Run by the subjects' code with operands of its own, or of a name that no line of a file can end in.
    std::set<std::string> asked = {"GET://BMC/SDR/READ", "GET://BMC/SEL/RECORD", "GET://BMC/SEL/EXTENDED_RECORD",
                                   "GET://BMC/INFO/ZRA_VERSION "};
    for (const auto& file : engineFiles())
        for (const Query& query : engine::FileReader(file).read())
            asked.insert(keyOf(query));
    std::set<std::string> missing;
    for (const auto& [key, program] : catalogue_data::stores().templates)
        if (!asked.contains(key) && !catalogue_data::isBranch(*program)) // Catalogue.EveryBranch... has the branches
            missing.insert(key);
    EXPECT_THAT(missing, testing::IsEmpty());
}

} // namespace
