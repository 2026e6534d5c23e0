#include "tools/hwquery/Answer.hpp"

#include "common/Util.hpp"

#include <algorithm>

namespace hwquery {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The number at the head of `text`, taken off it, without leading zeros.
std::string_view takeNumber(std::string_view& text)
{
    const auto end = std::ranges::find_if_not(text, isDigit);
    std::string_view number(text.begin(), end);
    text = std::string_view(end, text.end());
    number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
    return number;
}

/// The characters of UTF-8 text, as many columns on a terminal in nearly all of what controllers send.
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::vector<std::size_t> widthsOf(const Table& table)
{
    std::vector<std::size_t> widths;
    for (const std::string& column : table.columns)
        widths.push_back(column.size());
    for (const auto& row : table.rows)
        for (std::size_t at = 0; at < row.size(); ++at)
            widths[at] = std::max(widths[at], widthOf(row[at]));
    return widths;
}

std::string lineOf(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths)
{
    constexpr std::size_t gap = 2;
    std::string line;
    for (std::size_t at = 0; at < cells.size(); ++at)
        line += cells[at] + std::string(widths[at] - std::min(widths[at], widthOf(cells[at])) + gap, ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

std::string textOf(const Table& table)
{
    const std::vector<std::size_t> widths = widthsOf(table);
    std::string text = lineOf(table.columns, widths);
    for (const auto& row : table.rows)
        text += lineOf(row, widths);
    return text;
}

std::string textOf(const ResultMap& nodes)
{
    std::vector<std::string> lines;
    for (const auto& [path, node] : nodes)
        lines.push_back(path + (node.mType == NODE_LEAF ? " = " : ": ") + Util::join(node.mXNodeList, " ") + "\n");
    std::ranges::stable_sort(lines, comesBefore);
    return Util::join(lines, "");
}

} // namespace

bool comesBefore(std::string_view left, std::string_view right)
{
    while (!left.empty() && !right.empty()) {
        if (isDigit(left.front()) && isDigit(right.front())) {
            const std::string_view a = takeNumber(left);
            const std::string_view b = takeNumber(right);
            if (a != b)
                return a.size() != b.size() ? a.size() < b.size() : a < b;
        } else if (left.front() != right.front()) {
            return left.front() < right.front();
        } else {
            left.remove_prefix(1);
            right.remove_prefix(1);
        }
    }
    return left.size() < right.size();
}

bool isEmpty(const ResultMap& results)
{
    return std::ranges::all_of(results, [](const auto& entry) {
        const _XNode& node = entry.second;
        return node.mType == NODE_LEAF && std::ranges::all_of(node.mXNodeList, &std::string::empty);
    });
}

std::string textOf(const Answer& answer)
{
    std::string text;
    if (answer.nodes)
        for (const ResultMap& nodes : *answer.nodes)
            text += textOf(nodes);
    if (!answer.text.empty())
        return text + answer.text;
    for (const Table& table : answer.tables)
        text += (text.empty() ? "" : "\n") + textOf(table);
    return text;
}

std::string lineOf(const Failure& failure)
{
    return failure.path + ": " + (failure.code ? std::to_string(failure.code) + " " : "") + failure.words +
           (failure.detail.empty() ? "" : " (" + failure.detail + ")") + "\n";
}

} // namespace hwquery
