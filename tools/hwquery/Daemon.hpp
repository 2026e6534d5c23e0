#pragma once

#include <string>
#include <utility>
#include <vector>

namespace hwquery {

/// What the daemon answered at its status socket, or why it did not.
struct DaemonAnswer {
    enum State { answered, forbidden, notRunning, withoutSocket } state = notRunning;
    std::string process; ///< of a daemon that runs without a socket
    std::vector<std::pair<std::string, std::string>> lines;

    /// The value of the first line of that key; empty without one.
    std::string at(const std::string& key) const;
    bool has(const std::string& key) const;
};

/// Asks the daemon; waits for a few seconds at most.
DaemonAnswer askDaemon(const std::string& request);

} // namespace hwquery
