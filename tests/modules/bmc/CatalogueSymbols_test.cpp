#include "tests/modules/bmc/CatalogueData.hpp"

#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The symbols of all scripts: each is set on every way to where it is read, and still its own there.

using namespace catalogue_data;
using testing::IsEmpty;

namespace {

/// Symbols that a script and all it calls may write.
Names writesOf(const std::string& key, Names& visited)
{
    Names writes;
    const auto found = stores().templates.find(key);
    if (found == stores().templates.end() || !visited.insert(key).second)
        return writes;
    for (const Function& step : *found->second) {
        for (const std::string& name : effectOf(step).writes)
            writes.insert(name);
        if (isCall(step))
            writes.merge(writesOf(withoutSubscripts(step.arguments.values[0]), visited));
    }
    return writes;
}

Names writesOf(const std::string& key)
{
    Names visited;
    return writesOf(key, visited);
}

/// Symbols that a query brings along: its subscripts by name and number, a SET's value under its last name, parameters.
Names symbolsOfQuery(const std::string& key)
{
    Names names;
    std::string lastPlain;
    for (const std::string& token : Util::split(key.substr(key.find(':') + 1), "/")) {
        const std::string name = token.substr(0, token.find('['));
        if (name == token)
            lastPlain = "$" + name;
        else
            names.insert({"$" + name, "$" + name + "_NUMBER"});
    }
    names.insert(lastPlain);
    names.merge(parametersOf(key));
    return names;
}

/// What is set before a script begins: by its query, by the scripts that call it, by code.
Names symbolsAtStart(const std::string& key, const std::map<std::string, Names>& callers, Names& visited)
{
    Names names = symbolsOfQuery(key);
    if (!visited.insert(key).second || !callers.contains(key))
        return names;
    for (const std::string& caller : callers.at(key)) {
        names.merge(writesOf(caller));
        names.merge(symbolsAtStart(caller, callers, visited));
    }
    return names;
}

} // namespace

TEST(Catalogue, EveryConstantThatIsReadExistsOrIsSetSomewhere)
{
    Names known;
    for (const auto& [name, value] : stores().symbols)
        known.insert(name);
    for (const ParameterRow& row : parameterRows())
        known.merge(parametersOf(row.key));
    forEachStep([&](const std::string&, const Function& step) {
        for (const std::string& name : effectOf(step).writes)
            known.insert(name);
    });
    Findings findings;
    for (const std::string& name : symbolsRead())
        if (name.starts_with("$/") && !known.contains(name) && !ofHandlers.contains(name))
            findings.insert(name);
    EXPECT_THAT(findings, IsEmpty());
}

/// Follows a script's paths: what a read finds written whichever way the script came there.
class PathWalk {
public:
    PathWalk(const Script& script_, Names atStart, std::function<void(const std::string&)> report_)
        : script(script_), report(std::move(report_))
    {
        walk(std::move(atStart));
    }

private:
    /// From `at` to the block's end, or the script's; what is written then. A block that ends the script adds nothing.
    Names walk(Names written)
    {
        for (; at < script.size(); ++at) {
            const Function& step = script[at];
            const auto opcode = static_cast<Opcode>(step.opcode);
            if (opcode == Opcode::End)
                return written;
            const Effect effect = effectOf(step);
            for (const std::string& name : effect.reads)
                if (isSymbol(name) && !written.contains(name))
                    report(name);
            written.insert(effect.writes.begin(), effect.writes.end());
            if (isCall(step))
                written.merge(writesOf(withoutSubscripts(step.arguments.values[0])));
            if (opcode == Opcode::Return || opcode == Opcode::Throw)
                over = true;
            if (opcode == Opcode::If || opcode == Opcode::For || opcode == Opcode::While)
                written = walkBody(opcode, std::move(written));
        }
        return written;
    }

    Names walkBody(Opcode opcode, Names before)
    {
        ++at;
        over = false;
        Names inside = walk(before);
        const bool ends = std::exchange(over, false);
        if (opcode != Opcode::If)
            return inside; // a loop's body runs once at least
        if (ends)
            return before;
        // A symbol that only one way writes is there for the steps under the same test: callers' values, mostly.
        std::erase_if(inside, [&](const std::string& name) { return !before.contains(name); });
        return inside;
    }

    const Script& script;
    std::function<void(const std::string&)> report;
    std::size_t at = 0;
    bool over = false;
};

TEST(Catalogue, NoLocalIsReadOnAPathThatDoesNotWriteIt)
{
    std::map<std::string, Names> callers;
    forEachStep([&](const std::string& key, const Function& step) {
        if (isCall(step))
            callers[withoutSubscripts(step.arguments.values[0])].insert(key);
    });
    // Tests that between them leave no way out: two lengths of a text, the two orders of thresholds, a table's answer.
    const std::map<std::string, Names> byTheirTests = {
        {"GET://BMC/INFO/VERSION", {"$TEMP", "$TEMP_VERSION"}},
        {"GET://BMC/SENSOR[]/NAME", {"$NEXT"}},
        {"GET://BMC/SENSOR[]/OWNER[]/LUN[]/NAME", {"$NEXT"}},
        {"SET://BMC/FIRMWARE/XFERMODE", {"$BUFFER", "$COMPLETION_CODE"}},
        {"SET://BMC/SENSOR[]/THRESHOLD", {"$BYTE1", "$BYTE2", "$BYTE3", "$BYTE4", "$BYTE5", "$BYTE6"}},
    };
    Findings findings;
    for (const auto& [key, program] : stores().templates) {
        Names visited;
        const auto known = byTheirTests.find(key);
        PathWalk(*program, symbolsAtStart(key, callers, visited), [&](const std::string& name) {
            if (!name.starts_with("$/") && !isConstant(name) && !ofHandlers.contains(name) &&
                (known == byTheirTests.end() || !known->second.contains(name)))
                findings.insert(key + " reads " + name);
        });
    }
    EXPECT_THAT(findings, IsEmpty());
}

/// A script and what it calls have one memory: after a call, what it has written over is not read as though it were
/// still the caller's.
TEST(Catalogue, NoLocalIsReadThatACallHasWrittenOver)
{
    const Names answers = {"$RESULT", "$COMPLETION_CODE", "$BMC_COMPLETION_CODE", "$MEMBERS", "$CHANNELS"};
    Findings findings;
    for (const auto& [key, program] : stores().templates) {
        Names own, spoilt;
        for (const Function& step : *program) {
            const Effect effect = effectOf(step);
            for (const std::string& name : effect.reads)
                if (spoilt.contains(name) && !answers.contains(name) && !name.starts_with("$/"))
                    findings.insert(key + " reads " + name);
            for (const std::string& name : effect.writes) {
                own.insert(name);
                spoilt.erase(name);
            }
            if (isCall(step))
                for (const std::string& name : writesOf(withoutSubscripts(step.arguments.values[0])))
                    if (own.contains(name))
                        spoilt.insert(name);
        }
    }
    EXPECT_THAT(findings, IsEmpty());
}
