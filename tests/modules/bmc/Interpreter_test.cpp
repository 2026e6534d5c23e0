#include "modules/bmc/catalogue/Catalogue.hpp"
#include "tests/modules/bmc/EngineFixture.hpp"

namespace Module::BMCConfig {
namespace {

using namespace steps;

class InterpreterTest : public EngineTest {
protected:
    /// Runs `script` and gives the text that it gathered in $OUT.
    std::string outOf(const Script& script)
    {
        run(script);
        return table["$OUT"].text();
    }

    static Steps note(const std::string& what) { return FormatString("$OUT", what, "$OUT"); }
};

TEST_F(InterpreterTest, ConditionsCompareDigitsAsNumbersAndOtherTextsAsBytes)
{
    const std::pair<const char*, bool> rows[] = {
        {"$A == $B", true},
        {"010 == 10", true},
        {"10 == 0A", false},
        {"9 < 10", true},
        {"9 < A", true},
        {"B > A", true},
        {"2 >= 2 AND 2 <= 1", false},
        {"1 == 2 OR 1 == 1", true},
        {"1 == 1 OR 1 == 2 AND 1 == 2", true},
        {"1 == 2 AND 1 == 1 OR 1 == 1", false},
        {"1 == 2 XOR 1 == 1", true},
        {"1 ~ 1", false},
        {"1 != 2", true},
    };
    for (const auto& [test, truth] : rows) {
        SCOPED_TRACE(test);
        machine();
        table["$OUT"] = "";
        EXPECT_EQ(outOf(script({If(test, {note("y")})})), truth ? "y" : "");
    }
}

TEST_F(InterpreterTest, SkippedIfFindsItsOwnEnd)
{
    EXPECT_EQ(outOf(script({
                  If("1 == 2", {note("a"), For("X", "0", "1", {If("1 == 1", {note("b")})}), note("c")}),
                  note("d"),
              })),
              "d");
}

TEST_F(InterpreterTest, ForRunsUpToAndIncludingItsLastInHexadecimal)
{
    EXPECT_EQ(outOf(For("X", "0", "0", {note("$X")})), "0");
    machine();
    table["$OUT"] = "";
    EXPECT_EQ(outOf(For("X", "8", "11", {note("$X")})), "89ab");
}

TEST_F(InterpreterTest, EmptyLoopsRunTheirBodyOnceAsPlainCode)
{
    EXPECT_EQ(outOf(script({For("X", "2", "1", {note("["), note("$X"), note("]")}), note("!")})), "[]!");
    EXPECT_EQ(table.read("$X"), Symbol());
    EXPECT_EQ(outOf(script({While("1 == 2", {note("w")}), note("!")})), "[]!w!");
}

TEST_F(InterpreterTest, ReturnEndsTheScriptFromWithinNestedLoops)
{
    const SymbolMap symbols = run(script({
        For("X", "0", "5", {For("Y", "0", "5", {note("x"), If("$Y == 1", {Return("$Y")})})}),
        note("never"),
    }));
    EXPECT_EQ(table["$OUT"].text(), "xx");
    EXPECT_EQ(symbols.at("GET://BMC/TEST").text(), "1");
    EXPECT_EQ(table["$GET://BMC/TEST"].text(), "1");
}

TEST_F(InterpreterTest, StrayEndAndUnnamedOpcodesAreHarmless)
{
    const Script stray{Function{19, {}}, Function{7, {}}, Function{99, {}}};
    EXPECT_EQ(failureOf([&] { run(stray); }), "");
}

TEST_F(InterpreterTest, ScriptsThatNeverEndAreEnded)
{
    const Script noEnd{Function{10, Symbol(NODE_LEAF, {"1", "==", "1"})}};
    const Script noEndSkipped{Function{10, Symbol(NODE_LEAF, {"1", "==", "2"})}};
    const Script broken{Function{10, Symbol(NODE_LEAF, {"1", "==", "2", "OR"})}};
    const Script deep(500, Function{10, Symbol(NODE_LEAF, {"1", "==", "1"})});
    addScript("GET://BMC/SELF", Template("GET://BMC/SELF"));
    const std::pair<Script, const char*> rows[] = {
        {noEnd, "a block has no end"},
        {noEndSkipped, "a block has no end"},
        {broken, "a condition breaks off"},
        {deep, "nested too deeply"},
        {While("1 == 1", {}), "too many steps"},
        {script({Copy("x", "$A"), While("1 == 1", {FormatString("$A", "$A", "$A")})}), "a value has grown too large"},
        {For("X", "9223372036854775806", "9223372036854775807", {}), ""},
        {script({Copy("$B", "$A"), Assign("$C", "$NAME"), Copy("$A", "$D")}), ""},
    };
    for (const auto& [program, reason] : rows) {
        SCOPED_TRACE(reason);
        machine().limitSteps(1000);
        const std::string failure = failureOf([&, &code = program] { run(code); });
        EXPECT_EQ(failure, *reason ? "1184 GET://BMC/TEST: " + std::string(reason) : "");
    }
    machine().limitSteps(1000);
    SymbolMap symbols;
    EXPECT_EQ(failureOf([&] { machine().router(symbols, "GET://BMC/SELF"); }),
              "1184 GET://BMC/SELF: nested too deeply");
}

TEST_F(InterpreterTest, RingOfNamesIsRefused)
{
    machine();
    table["$A"] = "$B";
    table["$B"] = "$A";
    EXPECT_EQ(failureOf([&] { run(Copy("$A", "$D")); }), "1184 GET://BMC/TEST: symbols name one another without end");
}

TEST_F(InterpreterTest, PacketSendsEveryValueOfItsSymbols)
{
    stores->packets["P"] = Symbol(NODE_LEAF, {"$TARGET", "0A", "00", "11", "7", "$DATA"});
    bmc.on(0x0A, 0x11, IpmiAnswer{0x00, 0x2A, 0x0B});
    machine();
    table["$TARGET"] = "20";
    table["$DATA"] = std::vector<std::string>{"1", "FF", "c"};
    run(IPMI("P", "$D"));
    ASSERT_EQ(bmc.requests.size(), 1U);
    EXPECT_EQ(bmc.requests[0].data, (std::vector<std::uint8_t>{7, 1, 0xFF, 0x0C}));
    EXPECT_EQ(table["$D"], Symbol("0 2A B"));
    std::vector<std::string> reply;
    machine().GetIPMI("20 0A 00 11", reply);
    EXPECT_EQ(reply, (std::vector<std::string>{"0", "2a", "b"}));
    run(script({Copy("8", "$TARGET"), IPMI("P", "$D")}));
    EXPECT_EQ(table["$D"], Symbol("CC"));
    EXPECT_EQ(bmc.requests.size(), 2U);
}

TEST_F(InterpreterTest, RequestThatIsNoneOrGetsNoAnswerFails)
{
    stores->packets["SHORT"] = Symbol(NODE_LEAF, {"20", "06", "00"});
    stores->packets["SILENT"] = Symbol(NODE_LEAF, {"2C", "2E", "00", "01"});
    EXPECT_EQ(failureOf([&] { run(IPMI("SHORT", "$D")); }), "1184 20 06 00");
    EXPECT_EQ(failureOf([&] { run(IPMI("NONE", "$D")); }), "1184 ");
    bmc.on(0x2E, 0x01, IpmiAnswer{});
    EXPECT_EQ(failureOf([&] { run(IPMI("SILENT", "$D")); }), "1026 2C 2E 00 01");
    run(script({IPMI_Without_Throw("SILENT", "$D"), FormatString("$D", "!", "$OUT")}));
    EXPECT_EQ(table["$OUT"].text(), "CC!");
}

TEST_F(InterpreterTest, MachineWithoutInterfaceFailsAsSuch)
{
    transport::resetTransportForTests();
    bmc.present = false;
    stores->packets["P"] = Symbol(NODE_LEAF, {"20", "06", "00", "01"});
    EXPECT_EQ(failureOf([&] { run(IPMI("P", "$D")); }), "1274 20 06 00 01");
}

TEST_F(InterpreterTest, SatellitesGetNoRetriesButOnThreePlatforms)
{
    bmc.on(0x06, 0x02, IpmiAnswer{});
    const auto requestsTo = [&](const std::string& target) {
        std::vector<std::string> reply;
        bmc.requests.clear();
        EXPECT_NE(failureOf([&] { machine().GetIPMI(target + " 06 00 02", reply); }), "");
        return bmc.requests.size();
    };
    const std::size_t once = requestsTo("C0");
    EXPECT_EQ(requestsTo("2C"), 4 * once);
    EXPECT_EQ(requestsTo("22"), once);
}

TEST_F(InterpreterTest, MemoAnswersTheSameRequestOnce)
{
    memo = true;
    stores->packets["P"] = Symbol(NODE_LEAF, {"20", "06", "00", "01", "$N"});
    run(script({IPMI("P", "$A"), IPMI("P", "$B"), Copy("2", "$N"), IPMI("P", "$C")}));
    EXPECT_EQ(bmc.requests.size(), 2U);
    EXPECT_EQ(table["$A"], table["$B"]);
    SymbolMap from{{"$localhost@20 06 00 01", Symbol("0")}, {"GET://X", Symbol("1")}}, to;
    machine().add(from, to);
    EXPECT_EQ(to.size(), 1U);
}

TEST_F(InterpreterTest, CaughtFailureGoesOnInTheCallersScript)
{
    addScript("GET://BMC/BAD", script({For("X", "0", "3", {Throw("ERROR_LAN_IP_GET")}), note("callee went on")}));
    EXPECT_EQ(outOf(script({If("1 == 1", {Template_with_Catch("GET://BMC/BAD"), note("$RESULT")}), note("!")})),
              "FAILURE!");
}

TEST_F(InterpreterTest, PollWaitsWithinAMinute)
{
    addScript("GET://BMC/STATE", script({FormatString("$ROUNDS", "x", "$ROUNDS"), Return("$STATE")}));
    addScript("GET://BMC/BAD", Throw("ERROR_LAN_IP_GET"));
    struct PollCase {
        const char *count, *delay;
        std::size_t rounds;
        int seconds;
    };
    const PollCase cases[] = {{"10", "5", 10, 5}, {"30", "5", 10, 6}, {"40", "5", 0, 0}, {"0", "5", 0, 0},
                              {"3", "20", 3, 20}, {"-1", "1", 0, 0},  {"3", "0", 3, 0}};
    for (const PollCase& poll : cases) {
        SCOPED_TRACE(std::string(poll.count) + " x " + poll.delay);
        machine();
        table["$ROUNDS"] = table["$STATE"] = "";
        clock.sleeps.clear();
        run(Poll("GET://BMC/STATE", "UP", poll.count, poll.delay, "$D"));
        EXPECT_EQ(table["$D"].text(), "FALSE");
        EXPECT_EQ(table["$ROUNDS"].text().size(), poll.rounds);
        EXPECT_EQ(clock.sleeps.size(), poll.seconds ? poll.rounds : 0U);
        for (const auto pause : clock.sleeps)
            EXPECT_EQ(pause, std::chrono::seconds(poll.seconds));
    }
    table["$STATE"] = "UPDATING";
    run(Poll("GET://BMC/STATE", "UP", "3", "1", "$D"));
    EXPECT_EQ(table["$D"].text(), "TRUE");
    EXPECT_EQ(outOf(script({Poll("GET://BMC/BAD", "UP", "3", "1", "$D"), note("$D")})), "FALSE");
}

/// The channel stands in the other bits.
TEST_F(InterpreterTest, LunOfARequestIsTheLowTwoBitsOfItsSubscript)
{
    *stores = *catalogue(0, true);
    const auto symbols = run(script({Copy("30", "$SENSOR_NUMBER"), Copy("24", "$OWNER_NUMBER"),
                                     Copy("61", "$LUN_NUMBER"), Template("GET://BMC/SENSOR[]/OWNER[]/LUN[]/VALUE"),
                                     Copy("$/BMC/SENSOR_LUN", "$RESULT"), Return("$RESULT")}));
    EXPECT_EQ(symbols.at("GET://BMC/TEST").text(), "1");
}

} // namespace
} // namespace Module::BMCConfig
