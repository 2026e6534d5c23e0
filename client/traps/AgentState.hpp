#pragma once

namespace client::traps {

/// What the event handler needs to know of the agent, and what it moves.
struct AgentState {
    virtual ~AgentState() = default;
    /// Non-zero once the groups are filled.
    virtual int isInitComplete() = 0;
    virtual int isTrapEnabled() = 0;
    /// The system's status on the scale of rows; for the handler's start.
    virtual int getHealthStatus() = 0;
    virtual int setHealthStatus(int status) = 0;
};

} // namespace client::traps
