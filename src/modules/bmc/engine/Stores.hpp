#pragma once

#include "modules/bmc/engine/Function.hpp"

#include <functional>
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
};

} // namespace Module::BMCConfig
