#pragma once

#include "tools/hwquery/Options.hpp"

#include <string>

namespace hwquery {

/// Whether a manager sees the agent's tree, by an SNMP request to snmpd.
struct TreeView {
    enum State { seen, hidden, noAnswer, refused, notTried } state = notTried;
    std::string asked; ///< with which options, and where
    std::string said;  ///< what the program said, where it was refused
};

/// Runs snmpget with the community or the options that were given.
TreeView lookAtTree(const Options& options);

} // namespace hwquery
