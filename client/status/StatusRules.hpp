#pragma once

/// Status of a reading against six bounds: "unknown", "ok", "nonCritical" or "critical". Bounds at 0x7fffffff are not
/// set; a reading equal to a bound is inside it. Beyond a non-recoverable bound is "critical" too.
const char* calStatus(int reading, int lowerCritical, int lowerNonRec, int lowerNonCri, int upperCritical,
                      int upperNonRec, int upperNonCri);

/// The rule for fans: beyond a non-recoverable bound only some boards are "critical", the others "nonCritical". Asks
/// for the board's model at each call; a model that can't be had counts as another board.
const char* coolingcalStatus(int reading, int lowerCritical, int lowerNonRec, int lowerNonCri, int upperCritical,
                             int upperNonRec, int upperNonCri);

/// NEW_HEALTH_STATUS of a status word.
int getStatusEnum(const char* word);

/// The MIB's word for a HEALTH_STATUS: "Healthy", "Warning", "Critical" or "Unavailable".
const char* healthWord(int status);
