#include "protocol/SMBIOSProtocolImpl.hpp"

#include <algorithm>

namespace Protocol::SMBIOS {

namespace {

/// True if `name` stands below `parent`, both below one branch; everything stands below an empty parent.
bool isBelow(std::string_view name, std::string_view parent)
{
    return parent.empty() || (name.size() > parent.size() && name.starts_with(parent) && name[parent.size()] == '/');
}

/// `name` up to the first part behind `parent`: "A/B" for "A/B/C" below "A".
std::string_view firstPart(std::string_view name, std::string_view parent)
{
    return name.substr(0, name.find('/', parent.empty() ? 0 : parent.size() + 1));
}

void addLeaf(ResultMap& result, const std::string& path, const std::string& value)
{
    _XNode& node = result[path];
    node.mType = NODE_LEAF;
    node.mXNodeList = {value};
}

} // namespace

SMBIOSProtocolImpl::Place SMBIOSProtocolImpl::findPlace(const std::string& path) const
{
    for (std::size_t end = path.size(); end != std::string::npos && end > 0; end = path.rfind('/', end - 1))
        if (const auto found = branches.find(path.substr(0, end)); found != branches.end())
            return {&found->second, found->first, std::string_view(path).substr(std::min(end + 1, path.size()))};
    return {};
}

void SMBIOSProtocolImpl::SMBiosSearch(const std::string& query, ResultMap& result) const
{
    const Place place = findPlace(query);
    if (!place.branch)
        return;
    const auto addFields = [&](const FieldValues& fields) {
        for (const auto& [name, value] : fields)
            if (name == place.name || isBelow(name, place.name))
                addLeaf(result, std::string(place.path) + '/' + name, value);
    };
    if (place.branch->fields)
        addFields(*place.branch->fields);
    addFields(place.branch->further);
    if (!place.name.empty())
        return addFields(place.branch->asides);
    for (const std::string& member : place.branch->members)
        SMBiosChildren(member, result);
}

void SMBIOSProtocolImpl::SMBiosChildren(const std::string& path, ResultMap& result) const
{
    const Place place = findPlace(path);
    if (!place.branch)
        return;
    std::vector<std::string> children;
    bool isKnown = place.name.empty();
    const auto addNames = [&](const FieldValues& fields) {
        for (const auto& [name, value] : fields) {
            isKnown |= name == place.name;
            if (!isBelow(name, place.name))
                continue;
            std::string child = std::string(place.path).append("/").append(firstPart(name, place.name));
            if (std::ranges::find(children, child) == children.end())
                children.push_back(std::move(child));
        }
    };
    if (place.branch->fields)
        addNames(*place.branch->fields);
    addNames(place.branch->further);
    addNames(place.branch->asides);
    if (place.name.empty())
        children.insert(children.end(), place.branch->members.begin(), place.branch->members.end());
    if (isKnown || !children.empty())
        result[path] = {.mType = NODE_NONLEAF, .mXNodeList = std::move(children), .mOptionMap = {}};
}

} // namespace Protocol::SMBIOS
