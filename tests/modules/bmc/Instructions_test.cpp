#include "tests/modules/bmc/EngineFixture.hpp"

// Each value instruction by rows: the step, the symbols before, and a symbol after or the failure.

namespace Module::BMCConfig {
namespace {

using namespace steps;

using Values = std::vector<std::string>;
using Before = std::map<std::string, Symbol>;

Symbol leaf(Values values)
{
    return {NODE_LEAF, std::move(values)};
}

Symbol list(Values values)
{
    return {NODE_NONLEAF, std::move(values)};
}

struct Row {
    Steps step;
    Before before;
    Symbol after; ///< of $D
    std::string failure = {};
};

Row fails(Steps step, Before before, std::string failure)
{
    return {std::move(step), std::move(before), {}, std::move(failure)};
}

class Instructions : public EngineTest {
protected:
    void set(const Before& before)
    {
        machine();
        table = SymbolTable(stores);
        for (const auto& [name, symbol] : before)
            table[name] = symbol;
    }

    void expectAll(const std::vector<Row>& rows)
    {
        for (const Row& row : rows) {
            SCOPED_TRACE(describe(row.step));
            set(row.before);
            EXPECT_EQ(failureTextOf([&] { run(row.step); }), row.failure);
            EXPECT_EQ(table["$D"].values, row.after.values);
            EXPECT_EQ(table["$D"].type, row.after.type);
        }
    }

private:
    static std::string describe(const Steps& step)
    {
        std::string text = opcodeInfo(step[0].opcode).name;
        for (const std::string& operand : step[0].arguments.values)
            text += " \"" + operand + "\"";
        return text;
    }
};

TEST_F(Instructions, MoveValues)
{
    expectAll({
        {Copy("$A", "$D"), {{"$A", list({"1", "2"})}}, list({"1", "2"})},
        {Copy(":NULL", "$D"), {{"$D", "x"}}, leaf({})},
        {Copy("$A", "$D"), {{"$A", "$B"}, {"$B", "$C"}, {"$C", "end"}}, leaf({"end"})},
        {Copy("$A", "$D"), {{"$A", "$"}}, leaf({"$"})},
        {Assign("$A", "$B"), {{"$A", "text"}, {"$B", "$D"}}, leaf({"text"})},
        {Store("STRING", "$A", "$D"), {{"$A", "x"}}, leaf({"STRING", "x"})},
        {Append("A", "$B", "$D"), {{"$B", "x"}, {"$D", "first"}}, list({"first", "A", "x"})},
        {Flatten("$A", "$D"), {{"$A", list({"1", "2", "3"})}}, leaf({"123"})},
        {Size("$UNSET", "$D"), {}, leaf({"0"})},
        {Pad("$A", "0", "3", "$D"), {{"$A", "x"}}, list({"x", "0", "0"})},
        {Prepend("$A", "X", "3", "$D"), {{"$A", list({"1", "22", "4444"})}}, list({"001", "022", "4444"})},
    });
}

TEST_F(Instructions, PaddingStopsAfter512Rounds)
{
    set({{"$A", "x"}});
    run(script({Pad("$A", "0", "9999", "$B"), Prepend("$A", "0", "9999", "$D")}));
    EXPECT_EQ(table["$B"].size(), 513U);
    EXPECT_EQ(table["$D"].text().size(), 513U);
}

TEST_F(Instructions, TakeListsApart)
{
    const Before four{{"$L", list({"a", "b", "c", "d"})}, {"$N", "3"}};
    expectAll({
        {Read("$L", "$UNSET", "$D"), four, list({"a", "b", "c", "d"})},
        {Read("$L", "1-3", "$D"), four, list({"b", "c"})},
        {Read("$L", "1-SIZE", "$D"), four, list({"b", "c", "d"})},
        {Read("$L", "3-9", "$D"), four, leaf({"d"})},
        {Read("$L", "4-SIZE", "$D"), four, leaf({})},
        {Split("a  b", " ", "$D"), {}, list({"a", "b"})},
        {Split("a b", ":SPACE", "$D"), {}, list({"a", "b"})},
        fails(Read("$L", "4", "$D"), four, "1102 a b c d"),
        fails(Read("$L", "-1", "$D"), four, "1184 GET://BMC/TEST: a range without an end"),
        fails(Split("$UNSET", " ", "$D"), {}, "1089 "),
    });
}

TEST_F(Instructions, FiltersPickFieldsInTheirOwnOrder)
{
    stores->filters["F"] = Symbol(NODE_LEAF, {"2", "0"});
    stores->filters["ONE"] = Symbol("1");
    stores->filters["BEYOND"] = Symbol(NODE_LEAF, {"0", "3"});
    expectAll({
        {Filter("$B", "F", "$D"), {{"$B", "193 1A 2B"}}, list({"2B", "193"})},
        {Filter("$B", "BEYOND", "$D"), {{"$B", "0 1A 2B"}}, leaf({"ERROR"})},
        {Filter("$B", "NONE", "$D"), {{"$B", "0"}}, leaf({})},
        {Exclude("$B", "F", "$D"), {{"$B", list({"a", "b", "c"})}}, leaf({"b"})},
        {IPMIResponse("$B", "ONE", "$D"), {{"$B", "0 1A 2B"}}, leaf({"1A"})},
        {IPMIResponse("$B", "BEYOND", "$D"), {{"$B", "0 1A 2B"}}, leaf({"ERROR"})},
        {IPMIResponse("$B", "F", "$D"), {{"$B", "193"}}, leaf({"RESPONSE_ERROR_INVALID_COMMAND"})},
        {IPMIResponse("$B", "F", "$D"), {{"$B", "214"}}, leaf({"RESPONSE_ERROR_ILLEGAL_COMMAND"})},
        {IPMIResponse("$B", "F", "$D"), {{"$B", "215"}}, leaf({"IPMI_RESPONSE_ERROR"})},
        {IPMIResponse("$B", "F", "$D"), {{"$B", "CC"}}, leaf({"IPMI_RESPONSE_ERROR"})},
        {IPMIResponse("$UNSET", "F", "$D"), {}, leaf({"IPMI_RESPONSE_ERROR"})},
    });
}

TEST_F(Instructions, PutTextsTogether)
{
    const Before four{{"$L", list({"1", "2", "3", "4"})}};
    expectAll({
        {Join("$L", ":SPACE", "$D"), four, leaf({"1 2 3 4"})},
        {Join("$L", ":", "2", "$D"), four, leaf({"102:304"})},
        {Join("$L", ":", "3", "$D"), four, leaf({"102:4"})},
        {Join("$L", ":", "5", "$D"), four, leaf({""})},
        {Join("$UNSET", ":", "$D"), {}, leaf({""})},
        {FormatString("GET:/", "$A", "]", "$D"), {{"$A", "/LAN["}}, leaf({"GET://LAN[]"})},
        {FormatString("$L", "-", "!", "$D"), four, leaf({"1-2-3-4!"})},
        fails(Join("$L", ":", "0", "$D"), four, "1184 GET://BMC/TEST: a join in groups of nothing"),
        fails(FormatString("$L", "$D"), four, "1184 GET://BMC/TEST: a list without a separator"),
    });
}

TEST_F(Instructions, MapEachValue)
{
    expectAll({
        {Map("255", "DEC2HEX", "$D"), {}, leaf({"ff"})},
        {Map("1F", "HEX2STR", "$D"), {}, leaf({""})},
        {Map("7F", "HEX2STR", "$D"), {}, leaf({"\x7F"})},
        {Map("Az", "STR2HEX", "$D"), {}, list({"41", "7a"})},
        {Map("$L", "STR2HEX", "$D"), {{"$L", "a\x7F"}}, leaf({"ERROR"})},
        {Map("$L", "MASK", "7F", "$D"), {{"$L", list({"81", "FF"})}}, list({"1", "7f"})},
        {Map("FFFFFFFF", "MASK", "FFFFFFFF", "$D"), {}, leaf({"ffffffff"})},
        {Map("FFFFFFFF", "BIT_OR", "0", "$D"), {}, leaf({"fffffff"})},
        {Map("1", "LEFT_SHIFT", "4", "$D"), {}, leaf({"10"})},
        {Map("1", "LEFT_SHIFT", "44", "$D"), {}, leaf({"10"})},
        {Map("12345678", "LEFT_SHIFT", "0", "$D"), {}, leaf({"1234567"})},
        {Map("$L", "NO_SUCH", "$D"), {{"$L", list({"x", "y"})}}, list({"x", "y"})},
        {Map("0:1b-C3:00:aa:f", "VALIDATE_MAC", "$D"), {}, leaf({"00:1B:C3:00:AA:0F"})},
        {Map("00:1B:C3:00:AA", "VALIDATE_MAC", "$D"), {}, leaf({"FAILURE"})},
        {Map("fe80::1", "VALIDATE_IPV6", "$D"), {}, leaf({"fe80:0000:0000:0000:0000:0000:0000:0001"})},
        {Map("fe80:::1", "VALIDATE_IPV6", "$D"), {}, leaf({"FAILURE"})},
        fails(Map("$UNSET", "HEX2DEC", "$D"), {}, "1089 $UNSET: Symbol not Found"),
        fails(Map("1G", "HEX2DEC", "$D"), {}, "1089 HEX2DEC"),
        fails(Map("A", "DEC2HEX", "$D"), {}, "1089 DEC2HEX"),
    });
}

TEST_F(Instructions, LookUpWords)
{
    stores->tables["GET://T"] = {{"1", "STATIC"}, {"2", ""}, {"1A", "BOTH"}};
    stores->tables["SET://T"] = {{"ENABLE", "10"}};
    expectAll({
        {LookupTable("$L", "GET://T", "$D"), {{"$L", list({"1", "a"})}}, leaf({"BOTH"})},
        {LookupTable("2", "GET://T", "$D"), {}, leaf({"ERROR"})},
        {LookupTable("1", "GET://NONE", "$D"), {}, leaf({"ERROR"})},
        {LookupTable("enable", "SET://T", "$D"), {}, leaf({"10"})},
        fails(LookupTable("maybe", "SET://T", "$D"), {}, "1089 Table Lookup"),
    });
}

TEST_F(Instructions, CalculateWithTheirOwnBases)
{
    expectAll({
        {Mathematical("ADD", "10", "5", "$D"), {}, leaf({"21"})},
        {Mathematical("ADD", "$D"), {}, leaf({"0"})},
        {Mathematical("ADD", "7FFFFFFF", "1", "$D"), {}, leaf({"-2147483648"})},
        {Mathematical("MULTIPLY", "$D"), {}, leaf({"1"})},
        {Mathematical("DEVIDE", "100", "7", "2", "$D"), {}, leaf({"7"})},
        {Mathematical("DEVIDE", "-2147483648", "-1", "$D"), {}, leaf({"-2147483648"})},
        {Mathematical("POWER", "2", "3", "$D"), {}, leaf({"0"})},
        {Mathematical("MULTIPLY", "10", "5", "$D"), {}, leaf({"50"})},
        {Increment("10", "$D"), {}, leaf({"17"})},
        {Increment("a", "$D"), {}, leaf({"11"})},
        {Increment("7FFFFFFF", "$D"), {}, leaf({"-2147483648"})},
        {Expression("10", "+", "5", "-", "3", "$D"), {}, leaf({"12"})},
        fails(Expression("1", "*", "2", "$D"), {}, "1184 GET://BMC/TEST: an expression of more than sums"),
        fails(Mathematical("DEVIDE", "1", "0", "$D"), {}, "1184 GET://BMC/TEST: division by 0"),
    });
}

TEST_F(Instructions, AssertRangesAndLengths)
{
    const std::string range = "1091 ASSERT", length = "1092 ASSERT";
    expectAll({
        fails(Assert("$L", "RANGE_CHECK", "1", "10", "$D"), {{"$L", list({"1", "10"})}}, ""),
        fails(Assert("$L", "RANGE_CHECK", "1", "10", "$D"), {{"$L", list({"1", "11"})}}, range),
        fails(Assert("1A", "RANGE_CHECK", "1", "10", "$D"), {}, range),
        fails(Assert("", "RANGE_CHECK", "0", "10", "$D"), {}, range),
        fails(Assert("$UNSET", "RANGE_CHECK", "0", "10", "$D"), {}, range),
        fails(Assert("1", "RANGE_CHECK", "1", "$D"), {}, "1184 GET://BMC/TEST: a range check without its range"),
        fails(Assert("abcd", "STR_SIZE_CHECK", "3", "$D"), {}, length),
        fails(Assert("abcd", "NO_SUCH_CHECK", "3", "$D"), {}, ""),
    });
}

TEST_F(Instructions, SleepReadsAnyBaseAndRefusesLongTimes)
{
    run(script({Sleep("0x10"), Sleep("1024"), Sleep("-1"), Sleep("1023")}));
    using std::chrono::seconds;
    EXPECT_EQ(clock.sleeps, (std::vector<std::chrono::nanoseconds>{seconds(16), seconds(1023)}));
}

TEST_F(Instructions, TooFewOperandsEndInAnError)
{
    for (std::uint32_t opcode = 0; opcode < opcodeLimit + 3; ++opcode) {
        SCOPED_TRACE(opcode);
        const unsigned fewest = opcodeInfo(opcode).fewestOperands;
        const Script script{Function{opcode, Symbol(NODE_LEAF, Values(fewest ? fewest - 1 : 0, "1"))}};
        const std::string failure = failureTextOf([&] { run(script); });
        EXPECT_EQ(failure.substr(0, 4), fewest ? "1184" : "");
    }
}

} // namespace
} // namespace Module::BMCConfig
