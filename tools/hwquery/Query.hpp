#pragma once

#include "common/ResultStatus.hpp"
#include "common/XNode.hpp"

#include <string>

namespace hwquery {

/// Each node as a line "path = value value ...", a branch as "path: child child ...".
std::string listText(const ResultMap& results);
/// One JSON object: path to a list of values, or to {"children": [...]}. Bytes outside ASCII are escaped one by one, so
/// that the answer stays JSON whatever the controller sent.
std::string listJson(const ResultMap& results);
/// Each failure as a line "code words (detail)".
std::string listFailures(const ResultStatus& status);

} // namespace hwquery
