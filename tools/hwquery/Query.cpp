#include "tools/hwquery/Query.hpp"

#include "common/Util.hpp"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace hwquery {

namespace {

/// Length of the well-formed UTF-8 character at `at` that is not ASCII; 0 where there is none.
std::size_t characterAt(std::string_view text, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(at);
    const unsigned second = byte(at + 1);
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool beyond = (first == 0xED && second > 0x9F) || (first == 0xF4 && second > 0x8F);
    if (first < 0xC2 || first > 0xF4 || overlong || beyond)
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(at + i) & 0xC0U) != 0x80U)
            return 0;
    return length;
}

std::string escaped(char c)
{
    if (c == '"' || c == '\\')
        return {'\\', c};
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7F)
        return {c};
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", byte);
    return escape;
}

std::string quote(std::string_view text)
{
    std::string quoted = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterAt(text, at);
        quoted += length > 0 ? std::string(text.substr(at, length)) : escaped(text[at]);
        at += std::max<std::size_t>(length, 1);
    }
    return quoted + '"';
}

std::string quoteAll(const std::vector<std::string>& texts)
{
    std::vector<std::string> quoted;
    quoted.reserve(texts.size());
    for (const std::string& text : texts)
        quoted.push_back(quote(text));
    return Util::join(quoted, ", ");
}

std::string nodeJson(const _XNode& node)
{
    const std::string list = quoteAll(node.mXNodeList);
    if (node.mType != NODE_LEAF)
        return "{\"children\": [" + list + "]}";
    return node.mXNodeList.size() == 1 ? list : "[" + list + "]";
}

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

/// As people count: SDR[9] before SDR[10].
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

std::vector<const ResultMap::value_type*> inOrder(const ResultMap& results)
{
    std::vector<const ResultMap::value_type*> nodes;
    nodes.reserve(results.size());
    for (const ResultMap::value_type& node : results)
        nodes.push_back(&node);
    std::ranges::stable_sort(nodes, comesBefore, [](const auto* node) -> std::string_view { return node->first; });
    return nodes;
}

} // namespace

bool isEmpty(const ResultMap& results)
{
    return std::ranges::all_of(results, [](const auto& entry) {
        const _XNode& node = entry.second;
        return node.mType == NODE_LEAF && std::ranges::all_of(node.mXNodeList, &std::string::empty);
    });
}

std::string listText(const ResultMap& results)
{
    std::string text;
    for (const auto* node : inOrder(results))
        text += node->first + (node->second.mType == NODE_LEAF ? " = " : ": ") +
                Util::join(node->second.mXNodeList, " ") + "\n";
    return text;
}

std::string listJson(const ResultMap& results)
{
    std::vector<std::string> members;
    for (const auto* node : inOrder(results))
        members.push_back("  " + quote(node->first) + ": " + nodeJson(node->second));
    return "{\n" + Util::join(members, ",\n") + "\n}\n";
}

std::string listFailures(const ResultStatus& status)
{
    std::string text;
    for (const RStatus& entry : status) {
        text += std::to_string(entry.mErrorCode) + " " + entry.mErrorString;
        if (!entry.mXQuery.empty())
            text += " (" + entry.mXQuery + ")";
        text += "\n";
    }
    return text;
}

} // namespace hwquery
