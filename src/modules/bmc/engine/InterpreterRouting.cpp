#include "common/CMySemLock.hpp"
#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <algorithm>
#include <utility>

// From a query to what answers it, and back to the caller's map.

namespace Module::BMCConfig {

namespace {

constexpr char childrenToken[] = "@children";
/// Keys of replies that the memo keeps.
constexpr char memoPrefix[] = "$localhost@";

constexpr std::size_t longestIndex = 8;
constexpr long highestIndex = 65535;

std::string withoutScheme(const std::string& query)
{
    return strip(strip(query, getScheme), setScheme);
}

bool isPath(const std::string& text)
{
    return text.starts_with('/') || text.starts_with(getScheme) || text.starts_with(setScheme);
}

/// Copies `query` with each subscript but "[@...]" replaced by `replacement`.
std::string replaceIndexes(const std::string& query, std::string_view replacement)
{
    std::string text;
    std::size_t at = 0;
    while (at < query.size()) {
        if (query[at] != '[' || query.compare(at + 1, 1, "@") == 0) {
            text += query[at++];
            continue;
        }
        text += replacement;
        const std::size_t close = query.find(']', at);
        at = close == std::string::npos ? query.size() : close + 1;
    }
    return text;
}

/// The last of `tokens` without a subscript: the name under which a script finds the value of a SET.
std::string lastPlainToken(const std::vector<std::string>& tokens)
{
    const auto found = std::find_if(tokens.rbegin(), tokens.rend(),
                                    [](const std::string& token) { return token.find('[') == std::string::npos; });
    return found == tokens.rend() ? std::string() : *found;
}

} // namespace

void Interpreter::router(const std::string& query, SymbolMap& symbols)
{
    rerouter(query, symbols);
}

void Interpreter::router(SymbolMap& symbols, const std::string& query)
{
    rerouter(query, symbols);
}

void Interpreter::router(const std::string& query, ResultMap& results)
{
    SymbolMap symbols;
    rerouter(query, symbols);
    swap(std::move(symbols), results);
}

void Interpreter::rerouter(const std::string& query, SymbolMap& symbols)
{
    const Descent level(*this);
    std::vector<std::string> tokens = engine.ParseXQuery(withoutScheme(query)).TokenList();
    if (!tokens.empty() && tokens.back() == childrenToken) {
        tokens.pop_back();
        one_way_router(getScheme + Common::XTokenizer(std::move(tokens), '/').GetXPath(), symbols);
        return;
    }
    one_way_router(query, symbols);
    const Symbol& answer = symbols[query];
    if (answer.type != NODE_NONLEAF)
        return;
    for (const std::string& child : std::vector<std::string>(answer.values)) {
        const std::string childQuery = getScheme + child;
        if (symbols.contains(childQuery) || symbols.contains(child))
            continue;
        table.stinking_garbage_collector();
        rerouter(childQuery, symbols);
    }
}

void Interpreter::one_way_router(const std::string& query, SymbolMap& symbols)
{
    extract_and_inject(query);
    SymbolMap local;
    if (const std::unique_ptr<Handler> handler = makeHandler(query))
        handler->process(query, local);
    else
        run(local, query);
    const std::string name = $(query);
    table[name] = local[query];
    table.mark_as_garbage(name);
    add(std::move(local), symbols);
}

std::unique_ptr<Handler> Interpreter::makeHandler(const std::string& query)
{
    const std::string emptied = handleIndexes(query);
    for (const HandlerRule& rule : rules)
        if (rule.matches(query, emptied))
            return rule.make ? rule.make(this, exec) : nullptr;
    return nullptr;
}

void Interpreter::set(SymbolMap& symbols, const std::string& query, const std::string& text)
{
    const std::vector<std::string> tokens = engine.ParseXQuery(withoutScheme(query)).TokenList();
    table[$(lastPlainToken(tokens))] = text;
    routeSet(symbols, query);
}

void Interpreter::set(SymbolMap& symbols, const std::string& query,
                      const std::map<std::string, std::string>& parameters)
{
    for (const auto& [name, text] : parameters)
        table[$(name)] = text;
    routeSet(symbols, query);
}

void Interpreter::routeSet(SymbolMap& symbols, const std::string& query)
{
    rerouter(query, symbols);
    if (query.find(getScheme) == std::string::npos)
        symbols[query] = value(resultName);
}

void Interpreter::add(SymbolMap source, SymbolMap& destination)
{
    while (!source.empty()) {
        auto entry = source.extract(source.begin());
        if (entry.key().starts_with(memoPrefix))
            continue;
        destination.erase(entry.key());
        destination.insert(std::move(entry));
    }
}

void Interpreter::swap(SymbolMap symbols, ResultMap& results)
{
    HW_NAMED_LOCK(named, "GLOBAL_SWAP_LOCK");
    results.clear();
    for (auto& [name, symbol] : symbols) {
        _XNode& node = results[withoutScheme(name)];
        node.mType = symbol.type;
        node.mXNodeList = std::move(symbol.values);
        if (symbol.type == NODE_NONLEAF)
            for (std::string& child : node.mXNodeList)
                child = strip(child, getScheme);
    }
}

void Interpreter::extract_and_inject(const std::string& query)
{
    const Common::XTokenizer path = engine.ParseXQuery(withoutScheme(query));
    std::vector<std::string> indexes;
    std::vector<std::string> bracketed;
    Common::XTokenizer::GetSubscriptKeys(path.TokenList(), indexes, bracketed);
    for (std::size_t at = 0; at < bracketed.size(); ++at)
        inject(query, bracketed[at].substr(0, bracketed[at].find('[')), indexes[at]);
}

void Interpreter::inject(const std::string& query, const std::string& name, const std::string& index)
{
    const std::string number = name + "_NUMBER";
    if (query.find("/BMC/DISCOVER") != std::string::npos) {
        table[$(name)] = index;
        return;
    }
    if (index.size() > longestIndex)
        throwError(ERROR_RANGE_CHECK, name + " Index Data out of Range", COMMAND_UNKNOWN);
    if (index.empty()) {
        if (value($(name)).values.empty() && value($(number)).values.empty())
            throwError(ERROR_INDEX_DATA_NOT_AVAILABLE, name + " has no index given", COMMAND_UNKNOWN);
    } else if (!test_for_integer(index)) {
        table[$(name)] = index;
    } else if (toDecimal(index) > highestIndex) {
        throwError(ERROR_RANGE_CHECK, name + " Index Data out of Range", COMMAND_UNKNOWN);
    } else {
        table[$(number)] = dec_to_hex(index);
    }
}

Symbol Interpreter::prepend(const std::string& key, Symbol symbol) const
{
    if (symbol.type == NODE_NONLEAF)
        for (std::string& child : symbol.values)
            child = build(key, child);
    return symbol;
}

std::string Interpreter::build(const std::string& key, const std::string& child)
{
    if (isPath(child))
        return withoutScheme(child);
    const std::string parent = withoutScheme(key);
    const std::size_t lastToken = parent.rfind('/');
    // the members of an array stand in the array's own place: "SDR[1]" under "/BMC/SDR" is "/BMC/SDR[1]"
    if (lastToken != std::string::npos && child.starts_with(parent.substr(lastToken + 1) + "["))
        return parent.substr(0, lastToken + 1) + child;
    return parent + "/" + child;
}

std::string Interpreter::handleIndexes(const std::string& query)
{
    return replaceIndexes(query, "[]");
}

std::string Interpreter::removeIndexes(const std::string& query)
{
    return replaceIndexes(query, "");
}

Symbol Interpreter::just_leaves(const Symbol& symbol)
{
    if (symbol.type != NODE_NONLEAF)
        return symbol;
    Symbol leaves(NODE_NONLEAF, {});
    std::copy_if(symbol.values.begin(), symbol.values.end(), std::back_inserter(leaves.values),
                 [](const std::string& text) { return !isPath(text); });
    return leaves;
}

} // namespace Module::BMCConfig
