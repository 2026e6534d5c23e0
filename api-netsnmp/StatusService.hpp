#pragma once

#include "common/LineServer.hpp"

#include <string>

namespace agent {

/// What a line at the status socket is answered with: "key = value" lines. The requests are "status" and
/// "test-trap [NAME]"; anything else is answered with "error = ...", as is a test that cannot be made.
std::string answerStatusRequest(const std::string& request);

/// The state in one line, as people read it.
std::string stateInWords();

/// Hands the line to the service manager of the socket that NOTIFY_SOCKET names, if there is one (sd_notify(3)).
void tellServiceManager(const std::string& state);

/// Serves the status socket, and tells the service manager when the state is another. For one thread of its own: it
/// reads only what others have published, and none waits for it.
class StatusService {
public:
    StatusService();
    /// Serves for about a second; where the socket cannot be made, which is reported, rests. Cancelled in its waits.
    void turn();

private:
    void tellState();

    std::string toldState;
    Clock::SteadyPoint nextTelling{};
    common::LineServer server{answerStatusRequest};
};

} // namespace agent
