#include "tools/hwquery/Answer.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>

namespace hwquery {

namespace {

using Json = nlohmann::ordered_json;

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

/// `text` with each byte that is no UTF-8 as the character of that number.
std::string wellFormed(std::string_view text)
{
    std::string good;
    for (std::size_t at = 0; at < text.size();) {
        const unsigned byte = static_cast<unsigned char>(text[at]);
        const std::size_t length = byte < 0x80 ? 1 : characterAt(text, at);
        if (length == 0)
            good += {static_cast<char>(0xC0U | byte >> 6), static_cast<char>(0x80U | (byte & 0x3FU))};
        else
            good += text.substr(at, length);
        at += std::max<std::size_t>(length, 1);
    }
    return good;
}

Json listOf(const std::vector<std::string>& texts)
{
    Json list = Json::array();
    for (const std::string& text : texts)
        list.push_back(wellFormed(text));
    return list;
}

Json objectOf(const std::vector<ResultMap>& queries)
{
    std::map<std::string, const _XNode*, decltype(&comesBefore)> sorted(comesBefore);
    for (const ResultMap& nodes : queries)
        for (const auto& [path, node] : nodes)
            sorted[path] = &node;
    Json object = Json::object();
    for (const auto& [path, node] : sorted)
        object[wellFormed(path)] = {{node->mType == NODE_LEAF ? "values" : "children", listOf(node->mXNodeList)}};
    return object;
}

Json listOf(const Table& table)
{
    Json list = Json::array();
    for (const auto& row : table.rows) {
        Json object = Json::object();
        for (std::size_t at = 0; at < table.columns.size(); ++at)
            object[table.columns[at]] = wellFormed(row[at]);
        list.push_back(std::move(object));
    }
    return list;
}

} // namespace

std::string jsonOf(const Answer& answer)
{
    constexpr int indent = 2;
    Json whole = Json::object();
    if (answer.nodes)
        whole["nodes"] = objectOf(*answer.nodes);
    for (const Table& table : answer.tables)
        whole[table.name] = listOf(table);
    whole["failures"] = Json::array();
    for (const Failure& failure : answer.failures)
        whole["failures"].push_back({{"path", wellFormed(failure.path)},
                                     {"code", failure.code},
                                     {"words", wellFormed(failure.words)},
                                     {"detail", wellFormed(failure.detail)}});
    return whole.dump(indent) + "\n";
}

} // namespace hwquery
