#include "modules/bmc/engine/Interpreter.hpp"

#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "modules/bmc/engine/Text.hpp"
#include "platform/PlatformImpl.hpp"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

// The machine: fetch and dispatch, control instructions, frames.

namespace Module::BMCConfig {

namespace {

// No script of the catalogue comes near these; what does is broken, and ends as an error instead of as a full stack or
// a full memory.
constexpr unsigned deepestNesting = 200;
constexpr std::size_t mostBytesOfSymbol = 4U << 20;

/// Platforms whose satellite controllers need the usual retries.
constexpr const char* retryingPlatforms[] = {"ALDER_PLATFORM", "FIR_PLATFORM", "LILAC_PLATFORM"};

bool forbidsSatelliteRetries()
{
    try {
        const std::string platform = Platform::PlatformImpl::CreateInstance()->platformName();
        return std::find(std::begin(retryingPlatforms), std::end(retryingPlatforms), platform) ==
               std::end(retryingPlatforms);
    } catch (const ResultStatus&) {
        return false;
    }
}

bool opensBlock(const Function& function)
{
    switch (static_cast<Opcode>(function.opcode)) {
    case Opcode::If:
    case Opcode::For:
    case Opcode::While:
        return true;
    default:
        return false;
    }
}

bool isEnd(const Function& function)
{
    return function.opcode == static_cast<std::uint32_t>(Opcode::End);
}

template<class Value>
bool compare(const Value& left, std::string_view operation, const Value& right)
{
    if (operation == "==")
        return left == right;
    if (operation == "!=")
        return left != right;
    if (operation == "<")
        return left < right;
    if (operation == ">=")
        return left >= right;
    if (operation == "<=")
        return left <= right;
    return operation == ">" && left > right;
}

} // namespace

struct Dispatch {
    struct Row {
        int (Interpreter::*operation)(const Function&) = nullptr;
        unsigned fewestOperands = 0;
    };

    static constexpr std::array<Row, opcodeLimit> makeRows()
    {
        std::array<Row, opcodeLimit> rows{};
#define HW_ROW(name, code, fewest, most) rows[code] = {&Interpreter::Evaluate_##name, fewest};
        HW_OPCODES(HW_ROW)
#undef HW_ROW
        return rows;
    }
};

namespace {

constexpr std::array<Dispatch::Row, opcodeLimit> dispatchRows = Dispatch::makeRows();

} // namespace

Interpreter::Interpreter(SymbolTable& symbols, IPMIFilterDB& filters_, TableDB& tables_, IPMIPacketDB& packets_,
                         TemplateDB& templates_, bool memo_, const HandlerRules& rules_)
    : table(symbols), filters(filters_), templates(templates_), tables(tables_), packets(packets_), memo(memo_),
      noSatelliteRetries(forbidsSatelliteRetries()), rules(rules_)
{
}

const HandlerRules& Interpreter::noRules()
{
    static const HandlerRules none;
    return none;
}

Interpreter::Descent::Descent(Interpreter& machine) : depth(machine.depth)
{
    if (depth >= deepestNesting)
        machine.refuseScript("nested too deeply");
    ++depth;
}

void Interpreter::refuseScript(const std::string& reason) const
{
    throwError(ERROR_UNKNOWN, state.templateName + ": " + reason, COMMAND_UNKNOWN);
}

const Function& Interpreter::fetch()
{
    if (!state.program || state.programCounter >= state.program->size())
        refuseScript("a block has no end");
    return (*state.program)[state.programCounter++];
}

int Interpreter::execute(const Function& function)
{
    spendStep();
    return FunctionalHandler(function);
}

void Interpreter::spendStep()
{
    if (stepsLeft == 0)
        refuseScript("too many steps");
    --stepsLeft;
}

int Interpreter::FunctionalHandler(const Function& function)
{
    function.Print();
    if (function.opcode >= opcodeLimit || !dispatchRows[function.opcode].operation)
        return 0;
    const Dispatch::Row& row = dispatchRows[function.opcode];
    if (function.arguments.size() < row.fewestOperands)
        refuseScript(std::string("too few operands of ") + opcodeInfo(function.opcode).name);
    return (this->*row.operation)(function);
}

_INTERPRETER_STATE Interpreter::get_state() const
{
    return state;
}

void Interpreter::restore_state(const _INTERPRETER_STATE& saved)
{
    state = saved;
}

Symbol Interpreter::get(const std::string& name)
{
    return value(name);
}

std::string Interpreter::getText(const std::string& name)
{
    return value(name).text();
}

void Interpreter::store(const std::string& destination, Symbol symbol)
{
    const std::size_t bytes =
        std::accumulate(symbol.values.begin(), symbol.values.end(), symbol.size(),
                        [](std::size_t sum, const std::string& text) { return sum + text.size(); });
    if (bytes > mostBytesOfSymbol)
        refuseScript("a value has grown too large");
    table[destination] = std::move(symbol);
    table.mark_as_garbage(destination);
}

void Interpreter::Evaluate_Block()
{
    const Descent level(*this);
    for (;;) {
        const Function& function = fetch();
        const bool last = isEnd(function);
        execute(function);
        if (last || state.halted)
            return;
    }
}

int Interpreter::Evaluate_If(const Function& function)
{
    if (check_condition(function.arguments)) {
        Evaluate_Block();
        return 0;
    }
    for (unsigned open = 1; open > 0;) {
        const Function& skipped = fetch();
        if (opensBlock(skipped))
            ++open;
        else if (isEnd(skipped))
            --open;
    }
    return 0;
}

int Interpreter::Evaluate_For(const Function& function)
{
    const std::vector<std::string>& operands = function.arguments.values;
    const std::string counter = $(operands[0]);
    const long first = toDecimal(getText(operands[1]));
    const long last = toDecimal(getText(operands[2]));
    const std::uint32_t body = state.programCounter;
    // an empty range does not skip the body: it runs once as plain code
    for (long i = first; i <= last; ++i) {
        state.programCounter = body;
        store(counter, Symbol(hexText(static_cast<unsigned>(i))));
        Evaluate_Block();
        if (state.halted || i == last)
            break;
    }
    return 0;
}

int Interpreter::Evaluate_While(const Function& function)
{
    const std::uint32_t body = state.programCounter;
    while (!state.halted && check_condition(function.arguments)) {
        state.programCounter = body;
        Evaluate_Block();
    }
    return 0;
}

int Interpreter::Evaluate_End(const Function&)
{
    return 0;
}

int Interpreter::Evaluate_Return(const Function& function)
{
    state.halted = 1;
    store(resultName, get(function.arguments.values[0]));
    table.mark_as_stinking_garbage(resultName);
    return 0;
}

bool Interpreter::check_condition(const Symbol& operands)
{
    const std::vector<std::string>& terms = operands.values;
    for (std::size_t at = 0; at + 3 <= terms.size(); at += 4) {
        const std::string left = getText(terms[at]);
        const std::string operation = getText(terms[at + 1]);
        const bool truth = holds(left, operation, getText(terms[at + 2]));
        if (at + 3 == terms.size())
            return truth;
        const std::string connective = getText(terms[at + 3]);
        if (connective == "AND" && !truth)
            return false;
        if (connective == "OR" && truth)
            return true;
    }
    refuseScript("a condition breaks off");
}

bool Interpreter::holds(const std::string& left, const std::string& operation, const std::string& right)
{
    if (test_for_integer(left) && test_for_integer(right))
        return compare(toDecimal(left), operation, toDecimal(right));
    return compare(left, operation, right);
}

void Interpreter::run(SymbolMap& symbols, const std::string& key, const Program& functions)
{
    if (!state.templateName.empty())
        frames.push_back(state);
    run_without_gc(symbols, key, functions);
    if (frames.empty())
        return;
    state = std::move(frames.back());
    frames.pop_back();
}

void Interpreter::run_without_gc(SymbolMap& symbols, const std::string& key, const Program& functions)
{
    const Descent level(*this);
    state.templateName = handleIndexes(key);
    state.program = functions && !functions->empty() ? functions : templates.get(state.templateName);
    state.programCounter = 0;
    state.halted = 0;
    if (!state.program || state.program->empty()) {
        HW_LOG(LOGGER::Category::First, "%s: %s", key.c_str(), "Invalid query...");
        throwError(ERROR_INVALID_QUERY, key, COMMAND_UNKNOWN);
    }
    while (state.programCounter < state.program->size() && !state.halted)
        execute(fetch());

    Symbol result = prepend(key, get(resultName));
    const std::string name = $(key);
    table[name] = result;
    symbols[key] = std::move(result);
    table.mark_as_stinking_garbage(resultName);
    table.mark_as_stinking_garbage(name);
}

void Interpreter::set_without_value(SymbolMap& symbols, const std::string& query)
{
    run(symbols, query);
}

void Interpreter::set_without_value_and_without_gc(SymbolMap& symbols, const std::string& query)
{
    run(symbols, query);
}

} // namespace Module::BMCConfig
