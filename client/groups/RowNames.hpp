#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace client::groups {

/// Puts `mark` behind `name`, in brackets; into those that the name ends with, if it does.
void addMark(std::string& name, std::string_view mark);

/// A row's name, and what tells it from others of that name, the plainest first.
struct RowName {
    std::string text;
    std::vector<std::string> marks;
};

/// By the policy: of names that are equal each gets its first mark; those that are equal still get the next one as
/// well.
void tellApart(std::vector<RowName>& names);

} // namespace client::groups
