#pragma once

namespace mib {

/// The client's only contact with the SNMP library. Main thread only, as everything that calls it.

/// Follows the session to the master agent. To be called between init_agent and init_snmp.
void startTrapSender();

/// Sends everything queued, in order, as SNMPv2 notifications (RFC 3416, 4.2.6). Without a session to the master agent
/// traps are lost; that is said once for each time the session is gone. Paced traps wait for the session instead.
void sendQueuedTraps();

} // namespace mib
