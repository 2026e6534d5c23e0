#pragma once

#include "common/XTokenizer.hpp"
#include "modules/bmc/engine/Databases.hpp"
#include "modules/bmc/engine/Handler.hpp"
#include "modules/bmc/engine/SymbolTable.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// In front of a query's path: what reads, and what writes.
inline constexpr char getScheme[] = "GET:/", setScheme[] = "SET:/";

/// A saved state of the machine. The program is shared, so saving copies no script.
struct _INTERPRETER_STATE {
    Program program;
    std::uint32_t programCounter = 0;
    std::uint32_t halted = 0;
    std::string templateName;
};

/// Runs the scripts of one query. Belongs to one thread; lives as long as the query.
class Interpreter {
public:
    /// `rules`: who answers which query beside the scripts; may be empty. `memo`: answer a repeated IPMI request from
    /// memory.
    Interpreter(SymbolTable& symbols, IPMIFilterDB& filters, TableDB& tables, IPMIPacketDB& packets,
                TemplateDB& templates, bool memo, const HandlerRules& rules = noRules());

    // The machine.
    /// The instruction at the program counter, which moves on. It lives as long as its script.
    const Function& fetch();
    int execute(const Function& function);
    int FunctionalHandler(const Function& function);
    _INTERPRETER_STATE get_state() const;
    void restore_state(const _INTERPRETER_STATE& state);
    void restore(const SymbolTable& saved) { table = saved; }
    void restore(const IPMIFilterDB& saved) { filters = saved; }
    void restore(const TableDB& saved) { tables = saved; }
    void restore(const IPMIPacketDB& saved) { packets = saved; }
    void restore(const TemplateDB& saved) { templates = saved; }
    void Evaluate_Block();
    /// How many steps this interpreter may take from here on: a loop without end becomes an error.
    void limitSteps(std::uint64_t steps) { stepsLeft = steps; }
    /// Runs the script of `key` (or `functions`, if not null) in a frame of its own; the result is left in
    /// `symbols[key]`.
    void run(SymbolMap& symbols, const std::string& key, const Program& functions = nullptr);
    void run_without_gc(SymbolMap& symbols, const std::string& key, const Program& functions = nullptr);
    void set_without_value(SymbolMap& symbols, const std::string& query);
    void set_without_value_and_without_gc(SymbolMap& symbols, const std::string& query);
    /// The value of a symbol; a literal is itself.
    Symbol get(const std::string& name);
    /// A symbol's first value as text; a literal is itself.
    std::string getText(const std::string& name);

    // Queries. Keys carry their scheme: "GET://BMC/INFO/VERSION".
    void router(const std::string& query, SymbolMap& symbols);
    void router(SymbolMap& symbols, const std::string& query);
    void router(const std::string& query, ResultMap& results);
    void rerouter(const std::string& query, SymbolMap& symbols);
    void one_way_router(const std::string& query, SymbolMap& symbols);
    void set(SymbolMap& symbols, const std::string& query, const std::string& value);
    void set(SymbolMap& symbols, const std::string& query, const std::map<std::string, std::string>& parameters);
    void add(SymbolMap source, SymbolMap& destination);
    void swap(SymbolMap symbols, ResultMap& results);
    void extract_and_inject(const std::string& query);
    /// Children of a non-leaf made absolute, with the parent's subscripts.
    Symbol prepend(const std::string& key, Symbol symbol) const;
    static std::string build(const std::string& key, const std::string& child);
    static std::string handleIndexes(const std::string& query);
    static std::string removeIndexes(const std::string& query);
    static Symbol just_leaves(const Symbol& symbol);

    // IPMI.
    /// One raw exchange: blank-separated hexadecimal tokens in; completion code in decimal and data in "%x" out.
    void execIPMICommand(const std::string& request, std::vector<std::string>& reply);
    void GetIPMI(const std::string& request, std::vector<std::string>& reply);
    bool SelectIPMIInterface(int interface);
    int Reinit_OpenIPMI();

    SymbolTable& symbolTable() { return table; }
    _BMC_EXEC mode() const { return exec; }
    static const HandlerRules& noRules();

private:
    friend struct Dispatch;

    static constexpr int defaultRetries = 3;
    static constexpr long longestSleepSeconds = 1023;
    static constexpr char resultName[] = "$RESULT"; ///< where scripts leave what they return

    // One member an instruction; each returns 0, failures are thrown.
#define HW_DECLARE(name, code, fewest, most) int Evaluate_##name(const Function& function);
    HW_OPCODES(HW_DECLARE)
#undef HW_DECLARE

    /// One level of blocks and calls; refuses to go deeper than any script of the catalogue has a use for.
    class Descent {
    public:
        explicit Descent(Interpreter& machine);
        ~Descent() { --depth; }
        Descent(const Descent&) = delete;
        Descent& operator=(const Descent&) = delete;

    private:
        unsigned& depth;
    };

    bool check_condition(const Symbol& operands);
    bool holds(const std::string& left, const std::string& operation, const std::string& right);
    [[noreturn]] void refuseScript(const std::string& reason) const;
    /// The value of `name` without a copy; that of a literal lives until the next call.
    const Symbol& value(const std::string& name)
    {
        return table.read(name);
    }
    void store(const std::string& destination, Symbol symbol);
    /// Runs `call`; a ResultStatus from it is swallowed and leaves the machine as it was before. False if there was
    /// one.
    bool guarded(const std::function<void()>& call);
    void spendStep();
    void callTemplate(const std::string& query);
    bool pollOnce(const std::string& query, const std::string& expected, long pauseSeconds);
    std::unique_ptr<Handler> makeHandler(const std::string& query);
    void routeSet(SymbolMap& symbols, const std::string& query);
    void inject(const std::string& query, const std::string& name, const std::string& index);
    static void logRequest(const std::string& packet, const std::string& request);
    std::string exchange(const std::string& packet, const std::string& request);
    int quotientOf(const std::vector<std::string>& numbers) const;

    SymbolTable& table;
    IPMIFilterDB& filters;
    TemplateDB& templates;
    std::vector<_INTERPRETER_STATE> frames;
    _INTERPRETER_STATE state;
    TableDB& tables;
    IPMIPacketDB& packets;
    _BMC_EXEC exec = BMC_EXEC_LOCAL;
    bool memo;
    unsigned depth = 0;
    std::uint64_t stepsLeft = 10'000'000; ///< no script of the catalogue comes near
    int retries = defaultRetries;
    bool interfaceReady = false;
    bool noSatelliteRetries = false;
    const HandlerRules& rules;
    Common::XEngine engine;
};

} // namespace Module::BMCConfig
