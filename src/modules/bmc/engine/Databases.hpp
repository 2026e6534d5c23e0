#pragma once

#include "modules/bmc/engine/Stores.hpp"

#include <memory>

namespace Module::BMCConfig {

/// A database of the engine: the catalogue's entries, shared by all queries, under what this query has added. Reading
/// an unknown key inserts an empty value, into this query's layer alone.
template<class Value, TextMap<Value> Stores::*Entries>
class Database {
public:
    Database() = default;
    explicit Database(std::shared_ptr<const Stores> base_) : base(std::move(base_)) {}

    /// For reading: the entry, inserted empty if it is not there.
    const Value& get(const std::string& name)
    {
        if (const auto found = added.find(name); found != added.end())
            return found->second;
        if (const Value* entry = findShared(name))
            return *entry;
        return added[name];
    }
    void get(Value& out, const std::string& name) { out = get(name); }

    /// For writing: this query's own copy of the entry.
    Value& operator[](const std::string& name)
    {
        if (const auto found = added.find(name); found != added.end())
            return found->second;
        const Value* entry = findShared(name);
        return added.emplace(name, entry ? *entry : Value{}).first->second;
    }

    std::size_t size() const { return added.size() + (base ? base->count(Entries) : 0); }

private:
    const Value* findShared(const std::string& name) const { return base ? base->find(Entries, name) : nullptr; }

    std::shared_ptr<const Stores> base;
    TextMap<Value> added;
};

using TemplateDB = Database<Program, &Stores::templates>;
using IPMIPacketDB = Database<Symbol, &Stores::packets>;
using IPMIFilterDB = Database<Symbol, &Stores::filters>;
using TableDB = Database<Table, &Stores::tables>;

} // namespace Module::BMCConfig
