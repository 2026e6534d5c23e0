#pragma once

#include <string>
#include <vector>

/// How the agent stands, for who asks it from outside.

namespace client::door {

/// A group's rows as they are shown.
struct GroupStanding {
    std::string name;
    int rows = 0;
    std::vector<std::string> silent; ///< descriptions of those whose sensor has no value
};

/// All groups that have rows of devices, in the order of their start; none before the client is there. Waits for
/// nobody; any thread.
std::vector<GroupStanding> standingOfGroups();

} // namespace client::door
