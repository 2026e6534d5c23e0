#pragma once

#include "modules/bmc/engine/Stores.hpp"

#include <memory>
#include <vector>

namespace Module::BMCConfig {

/// Results of scripts by query key.
using SymbolMap = TextMap<Symbol>;

/// True if `text` begins with "$", is more than that, and holds no further "$".
bool test_for_symbol(std::string_view text);
/// "$" followed by `text`.
std::string $(std::string_view text);
std::string key(std::string_view a, std::string_view b);
/// `text` from the length of `prefix` onward when `prefix` stands anywhere in it, otherwise `text`.
std::string strip(const std::string& text, const std::string& prefix);

/// The memory of the template language: what a query has written, over the catalogue's constants, which all queries
/// share unchanged.
class SymbolTable {
public:
    SymbolTable() = default;
    explicit SymbolTable(std::shared_ptr<const Stores> base);

    /// The entry of a symbol, made as an empty leaf if it is not there; for any other text the scratch symbol, holding
    /// the text: a literal evaluates to itself, and a write to it is lost.
    Symbol& operator[](const std::string& name);
    void get(Symbol& out, const std::string& name);
    /// What operator[] gives, for reading: a constant of the catalogue is not copied, a literal's symbol lives until
    /// the next call.
    const Symbol& read(const std::string& name);
    /// Assigns plain keys; names of the language's form are refused on purpose.
    void set(const std::string& name, const Symbol& symbol);
    /// The entry, or null.
    const Symbol* find(const std::string& name) const;
    void erase(const std::string& name);
    /// Number of entries, the catalogue's included.
    std::size_t size() const;
    void print() const {}

    /// A hook that does nothing.
    void mark_as_garbage(const std::string&) {}
    void mark_as_stinking_garbage(const std::string& name);
    void garbage_collector();
    void stinking_garbage_collector();

private:
    void gc(std::vector<std::string>& names);
    const Symbol* findConstant(const std::string& name) const;

    std::shared_ptr<const Stores> base;
    TextMap<Symbol> table;
    TextMap<bool> erased; ///< names of the catalogue that this query has erased
    Symbol scratch;
    std::vector<std::string> garbage;
    std::vector<std::string> stinkingGarbage;
};

} // namespace Module::BMCConfig
