#pragma once

/// Brings up the AgentX connection, the client with all its hardware data, and the registrations, in this order.
/// `role`: nonzero for a subagent. Returns 0, also if the library cannot be initialised; then there is no client.
int init_subagent(int role);

/// Serves requests until a stop signal. Then ends the background threads and shuts the SNMP library and the client
/// down; if a thread does not end in time the process is left with status 0 and the client as it stands. Returns 0.
int agentx_loop();
