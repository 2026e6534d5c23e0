#pragma once

#include "common/XNode.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hwquery {

/// A query that was not answered. Code 0 is the tool's own: an answer without anything in it.
struct Failure {
    std::string path;
    unsigned code = 0;
    std::string words, detail;
};

/// Rows under the names of their columns.
struct Table {
    std::string name;
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;
};

/// What a command has to say. Which of the parts are there depends on the command alone.
struct Answer {
    std::optional<std::vector<ResultMap>> nodes; ///< one map for each query
    std::vector<Table> tables;
    std::string text; ///< for people, in the place of the tables
    std::vector<Failure> failures;
};

/// Whether there is neither a branch, which may well have no children, nor a value.
bool isEmpty(const ResultMap& results);
/// Each node as a line "path = value value ...", a branch as "path: child child ...", numbers in paths in their order;
/// query by query; each table with a line of headings.
std::string textOf(const Answer& answer);
/// One JSON object {"nodes": {path: {"values": [...]} or {"children": [...]}}, NAME: [{column: text}], "failures":
/// [{"path", "code", "words", "detail"}]}. Bytes that are no UTF-8 are told one by one as characters of the same
/// number, so that the answer stays JSON whatever the controller sent.
std::string jsonOf(const Answer& answer);
/// "path: code words (detail)".
std::string lineOf(const Failure& failure);
/// As people count: SDR[9] before SDR[10].
bool comesBefore(std::string_view left, std::string_view right);

} // namespace hwquery
