#pragma once

#include "common/XNode.hpp"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace Module::BMCConfig {

/// A value of the template language: a list of texts. A scalar is a list of one; the non-leaf kind marks a list, or, as
/// a script's result, the names of children.
class Symbol {
public:
    Symbol() = default;
    Symbol(const char* text) : values{text} {}
    Symbol(std::string text) : values{std::move(text)} {}
    Symbol(int type_, std::vector<std::string> values_) : type(type_), values(std::move(values_)) {}

    /// A leaf of one value.
    Symbol& operator=(std::string text);
    Symbol& operator=(const char* text) { return *this = std::string(text); }
    /// A list, of the non-leaf kind.
    Symbol& operator=(std::vector<std::string> list);
    /// Appends, so that `db[key] = "a", "b", "c"` builds a list in one expression.
    Symbol& operator,(std::string text);

    /// The first value, empty without one.
    const std::string& text() const;
    operator std::string() const { return text(); }
    operator std::vector<std::string>() const { return values; }
    std::size_t size() const { return values.size(); }
    /// A hook of the language's Print instruction; prints nothing.
    void print() const {}

    /// What an operation stores for a computed list: fewer than two values make a leaf.
    static Symbol ofList(std::vector<std::string> list);

    bool operator==(const Symbol&) const = default;

    int type = NODE_LEAF;
    std::vector<std::string> values;
};

} // namespace Module::BMCConfig
