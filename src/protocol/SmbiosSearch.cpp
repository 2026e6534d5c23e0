#include "protocol/SMBIOSProtocolImpl.hpp"

#include <algorithm>

namespace Protocol::SMBIOS {

namespace {

/// What stands right below `group` on the way to `member`: "/A/B" for the group "/A" and the member "/A/B/C".
std::string directChild(const std::string& group, const std::string& member)
{
    const bool isBelow = member.size() > group.size() && member.starts_with(group) && member[group.size()] == '/';
    return isBelow ? member.substr(0, member.find('/', group.size() + 1)) : member;
}

} // namespace

void SMBIOSProtocolImpl::SMBiosSearch(const std::string& query, ResultMap& result) const
{
    const auto group = groups.find(query);
    if (group == groups.end()) {
        if (const auto value = values.find(query); value != values.end())
            result[query] = {.mType = NODE_LEAF, .mXNodeList = {value->second}, .mOptionMap = {}};
        return;
    }
    for (const std::string* member : group->second) {
        if (const auto value = values.find(*member); value != values.end())
            result[*member] = {.mType = NODE_LEAF, .mXNodeList = {value->second}, .mOptionMap = {}};
        else
            SMBiosChildren(*member, result);
    }
}

void SMBIOSProtocolImpl::SMBiosChildren(const std::string& path, ResultMap& result) const
{
    const auto group = groups.find(path);
    if (group == groups.end() && !values.contains(path))
        return;
    _XNode& node = result[path];
    node.mType = NODE_NONLEAF;
    if (group == groups.end())
        return;
    for (const std::string* member : group->second) {
        std::string child = directChild(path, *member);
        // Entries of one field follow one another, so that only the last can be the same.
        if (node.mXNodeList.empty() || node.mXNodeList.back() != child)
            node.mXNodeList.push_back(std::move(child));
    }
}

} // namespace Protocol::SMBIOS
