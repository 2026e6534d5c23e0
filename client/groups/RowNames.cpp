#include "client/groups/RowNames.hpp"

#include "common/Policy.hpp"

#include <map>

namespace client::groups {

namespace {

/// False if no name was equal to another, or nothing is left to tell them apart with.
bool markEqualNames(std::vector<RowName>& names, std::size_t mark)
{
    std::map<std::string, int> counts;
    for (const RowName& name : names)
        ++counts[name.text];
    bool marked = false;
    for (RowName& name : names) {
        if (counts[name.text] == 1 || mark >= name.marks.size())
            continue;
        marked = true;
        if (!name.marks[mark].empty())
            addMark(name.text, name.marks[mark]);
    }
    return marked;
}

} // namespace

void addMark(std::string& name, std::string_view mark)
{
    if (name.ends_with(')'))
        name.insert(name.size() - 1, ", ").insert(name.size() - 1, mark);
    else
        name.append(" (").append(mark).append(")");
}

void tellApart(std::vector<RowName>& names)
{
    if (common::policy().tellsRowsApart)
        for (std::size_t mark = 0; markEqualNames(names, mark);)
            ++mark;
}

} // namespace client::groups
