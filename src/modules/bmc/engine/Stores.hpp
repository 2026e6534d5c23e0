#pragma once

#include "modules/bmc/engine/Function.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Module::BMCConfig {

/// Lets maps keyed by strings be searched with any text without making a string of it.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

template<class Value>
using TextMap = std::unordered_map<std::string, Value, TextHash, std::equal_to<>>;

/// A value translation table: from the BMC's text to a word, or from a caller's word to hexadecimal text.
using Table = TextMap<std::string>;

/// The five stores that the Config classes fill and that every query starts from.
struct Stores {
    TextMap<Symbol> symbols;    ///< constants, "$/IPMI/APP_NET_FUNCTION"
    TextMap<Symbol> filters;    ///< decimal field numbers of a response
    TextMap<Table> tables;      ///< value translation
    TextMap<Symbol> packets;    ///< operands of a request: target, network function, LUN, command, data
    TextMap<Program> templates; ///< scripts by query key, subscripts emptied

    /// What stands below these as a layer of its own; null if there is none.
    std::shared_ptr<const Stores> below;

    /// The entry of a store, in the topmost layer that has it; null if none has.
    template<class Value>
    const Value* find(TextMap<Value> Stores::*store, std::string_view key) const
    {
        for (const Stores* layer = this; layer; layer = layer->below.get()) {
            const auto found = (layer->*store).find(key);
            if (found != (layer->*store).end())
                return &found->second;
        }
        return nullptr;
    }
    /// Entries of a store in all layers, which have none twice.
    template<class Value>
    std::size_t count(TextMap<Value> Stores::*store) const
    {
        return (this->*store).size() + (below ? below->count(store) : 0);
    }
};

} // namespace Module::BMCConfig
