#pragma once

#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// `text` in two at the first of `mark`.
inline std::pair<std::string, std::string> cutAt(const std::string& text, const std::string& mark)
{
    const std::size_t at = text.find(mark);
    return {text.substr(0, at), at == std::string::npos ? "" : text.substr(at + mark.size())};
}

inline std::vector<std::string> splitAt(std::string text, const std::string& mark)
{
    std::vector<std::string> parts;
    for (std::string part; !text.empty(); parts.push_back(part))
        std::tie(part, text) = cutAt(text, mark);
    return parts;
}

/// The rows of a table that is written as text: a line a row, its cells between " | ", a last one that is empty behind
/// " |". Empty lines are left out.
inline std::vector<std::vector<std::string>> rowsOf(const std::string& text)
{
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : splitAt(text, "\n")) {
        if (line.empty())
            continue;
        const bool endsEmpty = line.ends_with(" |");
        rows.push_back(splitAt(endsEmpty ? line + " " : line, " | "));
        if (endsEmpty)
            rows.back().emplace_back();
    }
    return rows;
}
