#pragma once

namespace mib {

/// The client's only contact with the SNMP library. Main thread only, as everything that calls it.

/// Follows the session to the master agent. To be called between init_agent and init_snmp.
void startTrapSender();

/// Sends everything queued, in order, as SNMPv2 notifications (RFC 3416, 4.2.6). Without a session to the master agent
/// traps are lost; that is said once for each time the session is gone. Paced traps wait for the session instead, and
/// again when it is lost before the master agent has answered (RFC 2741, 7.1.10).
void sendQueuedTraps();

/// Takes account of the master agent's answers to notifications. To be called behind each turn of the loop.
void noteArrivedTraps();

/// Sends everything queued and waits half a second at most for the answers.
void sendLastTraps();

} // namespace mib
