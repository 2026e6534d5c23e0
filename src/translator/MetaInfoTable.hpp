#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

/// Words by number: devices, severities, units and the like. Read-only once loaded.
class MetaInfoTable {
public:
    /// `kind` names the table in its error text, as in "severity".
    explicit MetaInfoTable(std::wstring_view kind);

    /// A number that is there already gets the new text.
    void add(int id, std::wstring text);
    /// The text of `id`; MetaInfoTableError without one or with an empty one.
    const std::wstring& findTranslation(int id) const;
    /// The same without the error: null when there is none.
    const std::wstring* find(int id) const;
    /// The lowest number that has this text; nothing without one.
    std::optional<int> idOf(std::wstring_view text) const;

private:
    std::wstring_view kind;
    std::unordered_map<int, std::wstring> texts;
};
