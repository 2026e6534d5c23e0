#include "modules/bmc/engine/SymbolTable.hpp"

#include "common/Logger.hpp"

#include <algorithm>
#include <utility>

namespace Module::BMCConfig {

bool test_for_symbol(std::string_view text)
{
    return text.size() > 1 && text.front() == '$' && text.find('$', 1) == std::string_view::npos;
}

std::string $(std::string_view text)
{
    return key("$", text);
}

std::string key(std::string_view a, std::string_view b)
{
    std::string joined;
    joined.reserve(a.size() + b.size());
    joined += a;
    joined += b;
    return joined;
}

std::string strip(const std::string& text, const std::string& prefix)
{
    return text.find(prefix) == std::string::npos ? text : text.substr(prefix.size());
}

SymbolTable::SymbolTable(std::shared_ptr<const Stores> base_) : base(std::move(base_)) {}

Symbol& SymbolTable::operator[](const std::string& name)
{
    if (!test_for_symbol(name))
        return scratch = name;
    if (const auto found = table.find(name); found != table.end())
        return found->second;
    const Symbol* constant = findConstant(name);
    return table.emplace(name, constant ? *constant : Symbol{}).first->second;
}

const Symbol& SymbolTable::read(const std::string& name)
{
    if (!test_for_symbol(name))
        return scratch = name;
    if (const Symbol* entry = find(name))
        return *entry;
    return table[name];
}

void SymbolTable::get(Symbol& out, const std::string& name)
{
    out = read(name);
}

void SymbolTable::set(const std::string& name, const Symbol& symbol)
{
    HW_LOG(LOGGER::Category::Third, "%s", name.c_str());
    if (!test_for_symbol(name))
        table[name] = symbol;
}

const Symbol* SymbolTable::find(const std::string& name) const
{
    const auto found = table.find(name);
    return found == table.end() ? findConstant(name) : &found->second;
}

void SymbolTable::erase(const std::string& name)
{
    table.erase(name);
    if (base && base->find(&Stores::symbols, name))
        erased[name] = true;
}

std::size_t SymbolTable::size() const
{
    std::size_t count = table.size();
    for (const Stores* layer = base.get(); layer; layer = layer->below.get())
        count += static_cast<std::size_t>(std::ranges::count_if(layer->symbols, [&](const auto& row) {
            return !table.contains(row.first) && !erased.contains(row.first);
        }));
    return count;
}

void SymbolTable::mark_as_stinking_garbage(const std::string& name)
{
    if (std::find(stinkingGarbage.begin(), stinkingGarbage.end(), name) == stinkingGarbage.end())
        stinkingGarbage.push_back(name);
}

void SymbolTable::garbage_collector()
{
    gc(garbage);
}

void SymbolTable::stinking_garbage_collector()
{
    gc(stinkingGarbage);
}

void SymbolTable::gc(std::vector<std::string>& names)
{
    for (const std::string& name : names)
        if (!name.empty())
            erase(name);
    names.clear();
}

const Symbol* SymbolTable::findConstant(const std::string& name) const
{
    return !base || erased.contains(name) ? nullptr : base->find(&Stores::symbols, name);
}

} // namespace Module::BMCConfig
