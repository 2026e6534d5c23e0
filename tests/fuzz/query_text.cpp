#include "common/Util.hpp"
#include "tests/fuzz/World.hpp"

#include "modules/System.hpp"
#include "modules/bmc/HandlerTable.hpp"
#include "modules/bmc/engine/Interpreter.hpp"

// Queries as a caller of the SDK may write them, over the whole catalogue and a BMC that answers from the input; and
// scripts of any instructions.

namespace {

using namespace Module::BMCConfig;

constexpr std::uint64_t mostSteps = 100; ///< each may copy a value of the greatest size

/// Operands from a list that holds what instructions look for, so that an input need not spell it.
std::string operandOf(Input& input)
{
    static const std::vector<std::string> words =
        Util::split("$A $B $C $RESULT $ $A$B 0 1 2 -1 10 FF 80000000 9223372036854775807 -9223372036854775808 "
                    "99999999999999999999 1-SIZE 0-$A - SIZE == != < >= AND OR STRING RANGE_CHECK STR_SIZE_CHECK ADD "
                    "MULTIPLY DEVIDE HEX2DEC DEC2HEX HEX2STR STR2HEX MASK BIT_OR LEFT_SHIFT RIGHT_SHIFT VALIDATE_MAC "
                    "VALIDATE_IPV6 :SPACE :NULL + P F GET://T SET://T GET://BMC/ONE GET://BMC/TWO[3] GET://BMC/TWO[$A] "
                    "GET://BMC/ONE/@children ERROR_LAN_IP_GET",
                    " ");
    const std::uint8_t choice = input.byte();
    return choice < words.size() ? words[choice] : input.text(choice & 0x0F);
}

Program scriptOf(Input& input)
{
    Script script;
    for (unsigned steps = input.byte() % 16; steps > 0; --steps) {
        Function function{input.byte() % opcodeLimit, {}};
        for (unsigned count = input.byte() % 8; count > 0; --count)
            function.arguments.values.push_back(operandOf(input));
        script.push_back(std::move(function));
    }
    return std::make_shared<const Script>(std::move(script));
}

void runScripts(Input& input)
{
    const auto stores = std::make_shared<Stores>();
    stores->packets["P"] = Symbol(NODE_LEAF, {"20", "06", "01", "$A", "$B"});
    stores->filters["F"] = Symbol(NODE_LEAF, {"1", "0", "$A", "99999999999999999999"});
    stores->tables["GET://T"] = {{"1", "ONE"}};
    stores->tables["SET://T"] = {{"ONE", "1"}};
    stores->templates["GET://BMC/ONE"] = scriptOf(input);
    stores->templates["GET://BMC/TWO[]"] = scriptOf(input);
    SymbolTable symbols(stores);
    symbols["$A"] = std::vector<std::string>{"1", "2", "A"};
    IPMIFilterDB filters(stores);
    TableDB tables(stores);
    IPMIPacketDB packets(stores);
    TemplateDB templates(stores);
    Interpreter machine(symbols, filters, tables, packets, templates, (input.byte() & 1) != 0);
    machine.limitSteps(mostSteps);
    ResultMap results;
    machine.router("GET://BMC/ONE", results);
}

void runQuery(Input& input, ModelBmc& bmc, bool set)
{
    const std::string query = input.text(input.byte());
    const std::string name = input.text(input.byte() & 0x1F), value = input.text(input.byte() & 0x1F);
    answerFrom(input, bmc);
    ResultMap results;
    SDK::QueryMap queries;
    std::map<std::string, std::string> values{{query, value}};
    if (!name.empty())
        queries[query][name] = value;
    if (set)
        queries.empty() ? SDK::System().Set(values) : SDK::System().Set(queries);
    else if (queries.empty())
        SDK::System().Get(query, results);
    else
        SDK::System().Get(queries, results);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    enum Kind : std::uint8_t { SCRIPTS, GET, SET, KINDS };
    Input input(data, size);
    World world(input);
    try {
        const unsigned kind = input.byte() % KINDS;
        if (kind == SCRIPTS)
            runScripts(input);
        else
            runQuery(input, world.bmc, kind == SET);
    } catch (const ResultStatus&) { // a refusal is an answer
    }
    return 0;
}
