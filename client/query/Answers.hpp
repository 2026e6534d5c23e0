#pragma once

#include "common/XNode.hpp"

#include <string>

namespace client::query {

/// The first value of the leaf that answers `path` by name, null without one.
inline const std::string* findAnswer(const ResultMap& result, const std::string& path)
{
    const auto entry = result.find(path);
    if (entry == result.end() || entry->second.mType != NODE_LEAF || entry->second.mXNodeList.empty())
        return nullptr;
    return &entry->second.mXNodeList.front();
}

} // namespace client::query
