#pragma once

#include "client/readings/SensorTypes.hpp"

#include <span>

/// Reads sensors through the query cache. Every failure is traced and swallowed: a value that could not be read stays
/// as it was or is "no value".

/// Appends one wrapper for each full or compact SDR of the IPMI sensor type (IPMI 2.0, table 42-3), in the order of the
/// records' keys. Values are in units of 1/`multiplier`. `discrete` leaves thresholds out.
void GetAllSensorData(int sensorType, client::readings::SensorDatabase* db, long multiplier, bool discrete);
void GetAllSensorData(int sensorType, client::readings::SensorDatabase* db, long multiplier);

/// Refreshes value and value text.
void GetSensorData(CSensorWrapper& wrapper, long multiplier);

/// The threshold or figure that `which` (1 to 10) selects, in units of 1/`multiplier` for thresholds. `raw` is the
/// record's own byte: "no value" there leaves the answer untranslated.
int ExecuteThresholdQuery(int sensorNumber, int ownerId, int lun, long raw, long multiplier, int which);

namespace client::readings {

/// The first reading of a sensor that is about to become a row: at once, or wanted from the reading thread where rows
/// must not wait for it.
void readAtStart(CSensorWrapper& wrapper, long multiplier);

/// Asks the controller for the sensor's reading, if this thread may.
void readNow(const CSensorWrapper& wrapper);

/// Appends the sensors of all types but `types`.
void readOtherSensors(std::span<const int> types, SensorDatabase& db, long multiplier);

/// Reads the bounds and figures of a sensor that has `m_pUnread`, by one exchange, and resets it. After the third
/// failure it is tried no more, and a sensor that its group judges counts as read. False if the controller's interface
/// failed.
bool readUnread(CSensorWrapper& wrapper, long multiplier);

} // namespace client::readings
