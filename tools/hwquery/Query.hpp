#pragma once

#include "common/ResultStatus.hpp"
#include "common/XNode.hpp"

#include <string>

namespace hwquery {

/// Whether there is neither a branch, which may well have no children, nor a value.
bool isEmpty(const ResultMap& results);
/// Each node as a line "path = value value ...", a branch as "path: child child ...", numbers in paths in their order.
std::string listText(const ResultMap& results);
/// One JSON object: path to a value, to a list of them where there is not exactly one, or to {"children": [...]}. Bytes
/// that are no UTF-8 are escaped one by one, so that the answer stays JSON whatever the controller sent.
std::string listJson(const ResultMap& results);
/// Each failure as a line "code words (detail)".
std::string listFailures(const ResultStatus& status);

} // namespace hwquery
