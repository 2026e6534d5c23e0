#pragma once

#include "client/traps/EventData.hpp"
#include "client/words/Entities.hpp"

#include <chrono>
#include <string>

/// The flat functions between the C-callable MIB handlers and the world of objects. Each goes through the one client to
/// the group's operation of the same name. `row` is zero-based. Results are ClientResult numbers: 8 for an unknown
/// group.

/// Values fixed at start-up.
int getIntInfo(_SMEntity entity, _SMAttribute attribute, int row, long& out);
/// Values read live.
int getIntData(_SMEntity entity, _SMAttribute attribute, int row, long& out);
/// Fixed text; on success `out` is a malloc block of 512 bytes that the caller frees.
int getStrInfo(_SMEntity entity, _SMAttribute attribute, int row, char*& out);
/// Live text, owned likewise.
int getStrData(_SMEntity entity, _SMAttribute attribute, int row, char*& out);
int setIntData(_SMEntity entity, _SMAttribute attribute, int row, long value);
/// Number of rows.
int getCount(_SMEntity entity);
/// One-based row of a device id, 0 if no row has it.
int getIndex(_SMEntity entity, int deviceId);
/// Greatest status of the group's rows, 0 without rows.
int getExtGroupStatus(_SMEntity entity);
int seedHealthListsExt(_SMEntity entity);
/// The row's description, owned by the group; null for an unknown group.
char* getDesc(_SMEntity entity, int row);

/// Drains the event queue.
int processEvent();
int addEvent(eventData event);
int setHealthStatus(int status);
int getHealthStatus();
/// Always 0: the agent only reads.
int isSetEnabled();
int isTrapEnabled();
int isInitComplete();

/// Makes the client and reads all hardware data once. Returns the client's init result.
int initSMClient();
/// Deletes the groups; safe to call twice.
void shutdownSMClient();

namespace client::door {

/// Waits until the groups are filled, looking once a second.
void awaitInitComplete();

/// The locale of what traps say, by the configuration; empty for English.
std::string configuredLocale();

/// One-based row of the device of an event, 0 if no row is surely its own: by device id, and a memory module by the
/// name of its sensor.
int findRow(_SMEntity entity, int deviceId, const std::string& sensorName);

/// How long the event thread may sleep: until the turn of the next trap that waits, at most ten seconds.
std::chrono::milliseconds pauseBeforeTraps();

/// Whether events of the log are old ones, which are told again; see eventHandler::holdHealth.
void tellingOldEvents(bool old);

/// addEvent for an event whose trap says `shown`; its own text if that is empty.
int addShownEvent(const eventData& event, const std::string& shown);

} // namespace client::door
