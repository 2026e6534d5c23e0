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
    const auto holds = [this](const std::string& test) {
        machine();
        table["$OUT"] = "";
        return outOf(script({If(test, {note("y")})})) == "y";
    };
    for (const char* test : {"$A == $B", "010 == 10", "9 < 10", "9 < A", "B > A", "1 == 2 OR 1 == 1",
                             "1 == 1 OR 1 == 2 AND 1 == 2", "1 == 2 XOR 1 == 1", "1 != 2"})
        EXPECT_TRUE(holds(test)) << test;
    for (const char* test : {"10 == 0A", "2 >= 2 AND 2 <= 1", "1 == 2 AND 1 == 1 OR 1 == 1", "1 ~ 1"})
        EXPECT_FALSE(holds(test)) << test;
}

TEST_F(InterpreterTest, BlocksFindTheirEndsAndLoopsRunUpToAndIncludingTheirLast)
{
    const std::pair<Script, const char*> rows[] = {
        {script({If("1 == 2", {note("a"), For("X", "0", "1", {If("1 == 1", {note("b")})}), note("c")}), note("d")}),
         "d"},
        {For("X", "0", "0", {note("$X")}), "0"},
        {For("X", "8", "11", {note("$X")}), "89ab"},
        {script({For("X", "2", "1", {note("["), note("$X"), note("]")}), note("!")}), "[]!"}, // once, as plain code
        {script({While("1 == 2", {note("w")}), note("!")}), "w!"},
    };
    for (const auto& [program, out] : rows) {
        machine();
        table["$OUT"] = table["$X"] = "";
        EXPECT_EQ(outOf(program), out);
    }
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
        const std::string failure = failureTextOf([&, &code = program] { run(code); });
        EXPECT_EQ(failure, *reason ? "1184 GET://BMC/TEST: " + std::string(reason) : "");
    }
    addScript("GET://BMC/BUSY", While("1 == 1", {}));
    machine().limitSteps(1000);
    EXPECT_NE(failureTextOf([&] { run(Template_with_Catch("GET://BMC/BUSY")); }), "") << "the caller ends too";
    machine().limitSteps(1000);
    SymbolMap symbols;
    EXPECT_EQ(failureTextOf([&] { machine().router(symbols, "GET://BMC/SELF"); }),
              "1184 GET://BMC/SELF: nested too deeply");
    table["$A"] = "$B";
    table["$B"] = "$A";
    EXPECT_EQ(failureTextOf([&] { run(Copy("$A", "$D")); }),
              "1184 GET://BMC/TEST: symbols name one another without end");
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
    EXPECT_EQ(failureTextOf([&] { run(IPMI("SHORT", "$D")); }), "1184 20 06 00");
    EXPECT_EQ(failureTextOf([&] { run(IPMI("NONE", "$D")); }), "1184 ");
    bmc.on(0x2E, 0x01, IpmiAnswer{});
    EXPECT_EQ(failureTextOf([&] { run(IPMI("SILENT", "$D")); }), "1026 2C 2E 00 01");
    run(script({IPMI_Without_Throw("SILENT", "$D"), FormatString("$D", "!", "$OUT")}));
    EXPECT_EQ(table["$OUT"].text(), "CC!");
    transport::resetTransportForTests();
    bmc.present = false;
    EXPECT_EQ(failureTextOf([&] { run(IPMI("SILENT", "$D")); }), "1274 2C 2E 00 01");
}

TEST_F(InterpreterTest, SatellitesGetNoRetriesButOnThreePlatforms)
{
    bmc.on(0x06, 0x02, IpmiAnswer{});
    const auto requestsTo = [&](const std::string& target) {
        std::vector<std::string> reply;
        bmc.requests.clear();
        EXPECT_NE(failureTextOf([&] { machine().GetIPMI(target + " 06 00 02", reply); }), "");
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
    using Case = std::tuple<const char*, const char*, std::size_t, int>;
    for (const auto& [count, delay, rounds, seconds] :
         {Case{"10", "5", 10, 5}, Case{"30", "5", 10, 6}, Case{"40", "5", 0, 0}, Case{"0", "5", 0, 0},
          Case{"3", "20", 3, 20}, Case{"-1", "1", 0, 0}, Case{"3", "0", 3, 0}}) {
        SCOPED_TRACE(std::string(count) + " x " + delay);
        machine();
        table["$ROUNDS"] = table["$STATE"] = "";
        clock.sleeps.clear();
        run(Poll("GET://BMC/STATE", "UP", count, delay, "$D"));
        EXPECT_EQ(table["$D"].text(), "FALSE");
        EXPECT_EQ(table["$ROUNDS"].text().size(), rounds);
        EXPECT_EQ(clock.sleeps,
                  std::vector<std::chrono::nanoseconds>(seconds ? rounds : 0U, std::chrono::seconds(seconds)));
    }
    table["$STATE"] = "UPDATING";
    run(Poll("GET://BMC/STATE", "UP", "3", "1", "$D"));
    EXPECT_EQ(table["$D"].text(), "TRUE");
    EXPECT_EQ(outOf(script({Poll("GET://BMC/BAD", "UP", "3", "1", "$D"), note("$D")})), "FALSE");
}

} // namespace
} // namespace Module::BMCConfig
