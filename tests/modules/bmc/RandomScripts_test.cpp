#include "common/Util.hpp"
#include "tests/modules/bmc/EngineFixture.hpp"

#include <random>

// Scripts that no person would write. Whatever they are, they end, and in nothing worse than a ResultStatus;
// the sanitizer builds see what else goes wrong.

namespace Module::BMCConfig {
namespace {

class RandomScripts : public EngineTest {
protected:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); }

    std::string operand()
    {
        static const std::vector<std::string> pool = [] {
            std::vector<std::string> words =
                Util::split("$A $B $C $RESULT $A $B $ $A$B 0 1 2 3 -1 10 FF 80000000 9223372036854775807 "
                            "-9223372036854775808 99999999999999999999 1-SIZE 0-$A - SIZE == != < >= AND OR STRING "
                            "RANGE_CHECK STR_SIZE_CHECK ADD MULTIPLY DEVIDE HEX2DEC DEC2HEX HEX2STR STR2HEX MASK "
                            "BIT_OR LEFT_SHIFT RIGHT_SHIFT VALIDATE_MAC VALIDATE_IPV6 :SPACE :NULL + P F GET://T "
                            "SET://T GET://BMC/ONE GET://BMC/TWO[3] GET://BMC/TWO[$A] GET://BMC/ONE/@children "
                            "GET://BMC//X ERROR_LAN_IP_GET",
                            " ");
            words.push_back("");
            return words;
        }();
        return pool[below(pool.size())];
    }

    Script randomScript()
    {
        Script script;
        for (std::size_t steps = 1 + below(12); steps > 0; --steps) {
            Function function{static_cast<std::uint32_t>(below(opcodeLimit)), {}};
            const std::size_t least = opcodeInfo(function.opcode).fewestOperands;
            std::size_t operands = below(8) ? least + below(3) : below(5);
            for (; operands > 0; --operands)
                function.arguments.values.push_back(operand());
            script.push_back(std::move(function));
        }
        return script;
    }

    std::mt19937 random{20240607};
};

TEST_F(RandomScripts, EndInAnAnswerOrAResultStatus)
{
    stores->packets["P"] = Symbol(NODE_LEAF, {"20", "06", "00", "$A", "$B"});
    stores->filters["F"] = Symbol(NODE_LEAF, {"1", "0", "$A", "99999999999999999999"});
    stores->tables["GET://T"] = {{"1", "ONE"}};
    stores->tables["SET://T"] = {{"ONE", "1"}};
    machine();
    int answered = 0;
    for (int round = 0; round < 4000; ++round) {
        addScript("GET://BMC/ONE", randomScript());
        addScript("GET://BMC/TWO[]", randomScript());
        table = SymbolTable(stores);
        table["$A"] = std::vector<std::string>{"1", "2", "A"};
        machine().limitSteps(300);
        ResultMap results;
        answered += failureOf([&] { machine().router("GET://BMC/ONE", results); }).empty();
    }
    EXPECT_GT(answered, 100) << "most scripts must get past their first step for this to try anything";
}

} // namespace
} // namespace Module::BMCConfig
