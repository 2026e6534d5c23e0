#pragma once

#include "client/status/TroubleLists.hpp"

#include <functional>
#include <optional>

/// Filling the groups while the agent serves: on the reading thread, but for the last.

namespace client::door {

/// Where groups get their rows from.
enum class Sources {
    firmware,   ///< its tables alone: memory
    repository, ///< sensors, and processors, which are matched with theirs
    rest,       ///< the same, of a repository of which more has been read: what was known before stands
    machine,    ///< where the controller gives no records: what the firmware tells of processors, and the enclosure
    inventory,  ///< the controller's FRU inventory, which takes a slow controller minutes
};

/// Reads the groups of those sources anew, aside, and puts each in the place of what is shown. False if the
/// controller's interface failed meanwhile or gave no records of sensors: the caller tries again later.
bool fillGroups(Sources sources);

/// Reads the bounds and figures of sensors that lack them, as long as `goOn`, called before each, says so. False if the
/// controller's interface failed.
bool readUnreadFigures(const std::function<bool()>& goOn);

/// What the sensor says now, for which it is read anew; nothing for one without a row.
std::optional<status::DeviceStatus> readPresentStatus(int deviceId);

/// The bounds of the sensor may have changed with an event: they are read again among those that are missing.
void noteEventOf(int deviceId);

/// Whether all rows have been read since the controller was silent last. Until then a change of the health is not told.
void noteAllRead(bool all);

/// Brings the lists of devices in trouble and the system's health in line with what the sensors say now. Waits for
/// nobody; any thread.
void followReadings();

} // namespace client::door
