#include "modules/bmc/catalogue/Rows.hpp"

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/catalogue/Commands.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Module::BMCConfig {

namespace {

template<class Value>
void addOnce(TextMap<Value>& map, const std::string& key, Value value)
{
    if (!map.emplace(key, std::move(value)).second)
        throw std::logic_error("the catalogue declares twice: " + key);
}

void addTexts(TextMap<Symbol>& map, std::span<const TextRow> rows)
{
    for (const TextRow& row : rows)
        addOnce(map, row.key, Symbol(NODE_LEAF, Util::split(row.values, " ")));
}

std::string constantOf(const std::string& name)
{
    return name.starts_with('$') ? name : "$/IPMI/" + name;
}

/// "target netFn LUN command data...".
Symbol packetOf(const PacketRow& row)
{
    const std::span<const Command> known = commands();
    const auto command = std::ranges::find(known, std::string_view(row.command), &Command::name);
    if (command == known.end())
        throw std::logic_error(std::string("the catalogue knows no command ") + row.command);
    return Symbol(NODE_LEAF, Util::split(std::string(row.target) + " " + constantOf(command->netFunction) + " " +
                                             row.lun + " " + constantOf(command->name) + " " + row.data,
                                         " "));
}

/// Steps that pass $RESULT through each function of "HEX2DEC" or "MASK 7F, HEX2DEC".
steps::Steps mapSteps(const char* functions)
{
    steps::Steps run;
    for (const std::string& function : Util::split(functions, ",")) {
        std::vector<std::string> operands = Util::split(function, " ");
        operands.insert(operands.begin(), "$RESULT");
        operands.emplace_back("$RESULT");
        run = steps::script({std::move(run), steps::makeStep(Opcode::Map, std::move(operands))});
    }
    return run;
}

Script readScript(const ReadRow& row)
{
    using namespace steps;
    Steps found = readField(row.filter ? row.filter : row.key, "$RESULT", row.error);
    if (row.map)
        found = steps::script({std::move(found), mapSteps(row.map)});
    if (row.table)
        found = steps::script({std::move(found), LookupTable("$RESULT", row.table, "$RESULT")});
    if (row.isNumber)
        found = steps::script({std::move(found), returnNumber("$RESULT")});
    if (row.separator)
        found = steps::script({std::move(found), Join("$RESULT", row.separator, "$RESULT")});
    return steps::script({
        send(row.packet ? row.packet : row.key),
        If("$COMPLETION_CODE == 0", {found, Return("$RESULT")}),
        row.absent ? answerIfAbsent(row.absent) : Steps{},
        Throw(row.error),
    });
}

} // namespace

void addConstants(Stores& stores, std::span<const TextRow> rows)
{
    addTexts(stores.symbols, rows);
}

void addConstants(Stores& stores, std::span<const CodeConstant> rows)
{
    for (const CodeConstant& row : rows)
        addOnce(stores.symbols, row.key, Symbol(ipmi::hexByte(row.code)));
}

void addPackets(Stores& stores, std::span<const TextRow> rows)
{
    addTexts(stores.packets, rows);
}

void addPackets(Stores& stores, std::span<const PacketRow> rows)
{
    for (const PacketRow& row : rows)
        addOnce(stores.packets, row.key, packetOf(row));
}

void addPacket(Stores& stores, const std::string& key, const std::string& command, const std::string& data)
{
    const PacketRow row{key.c_str(), command.c_str(), data.c_str()};
    addPackets(stores, {&row, 1});
}

void addCommands(Stores& stores)
{
    for (const NetFunction& function : netFunctions())
        addOnce(stores.symbols, constantOf(function.constant), Symbol(ipmi::hexByte(function.number)));
    for (const Command& command : commands())
        addOnce(stores.symbols, constantOf(command.name), Symbol(ipmi::hexByte(command.number)));
}

void addFilters(Stores& stores, std::span<const TextRow> rows)
{
    addTexts(stores.filters, rows);
}

void addFilter(Stores& stores, const std::string& key, const std::string& fields)
{
    addOnce(stores.filters, key, Symbol(NODE_LEAF, Util::split(fields, " ")));
}

void addTables(Stores& stores, std::span<const TableRow> rows)
{
    for (const TableRow& row : rows)
        addOnce(stores.tables, row.key, Table(row.pairs.begin(), row.pairs.end()));
}

void addTables(Stores& stores, std::span<const TablePair> rows)
{
    for (const TablePair& row : rows) {
        Table inverse;
        for (const auto& [text, word] : row.pairs)
            inverse.emplace(word, text);
        addOnce(stores.tables, row.getKey, Table(row.pairs.begin(), row.pairs.end()));
        addOnce(stores.tables, row.setKey, std::move(inverse));
    }
}

void addTables(Stores& stores, std::span<const WordTable> rows)
{
    for (const WordTable& row : rows) {
        Table table;
        for (const auto& [word, texts] : row.words)
            for (const std::string& text : Util::split(texts, " "))
                addOnce(table, text, std::string(word));
        addOnce(stores.tables, row.key, std::move(table));
    }
}

void addTable(Stores& stores, const std::string& key, Table table)
{
    addOnce(stores.tables, key, std::move(table));
}

void addBranches(Stores& stores, std::span<const BranchRow> rows)
{
    for (const BranchRow& row : rows) {
        std::vector<std::string> names = Util::split(row.children, " ");
        names.emplace_back("$RESULT");
        addTemplate(stores, row.key, steps::makeStep(Opcode::Append, std::move(names)));
    }
}

void addReads(Stores& stores, std::span<const ReadRow> rows)
{
    for (const ReadRow& row : rows) {
        if (row.fields)
            addFilter(stores, row.key, row.fields);
        addTemplate(stores, row.key, readScript(row));
    }
}

void addTemplate(Stores& stores, const std::string& key, Script script)
{
    addOnce(stores.templates, key, Program(std::make_shared<const Script>(std::move(script))));
}

} // namespace Module::BMCConfig
