#pragma once

#include "client/words/Entities.hpp"

/// The words and numbers of the two status scales, HEALTH_STATUS and NEW_HEALTH_STATUS.

/// "other", "unknown", "ok", "nonCritical", "critical", "nonRecoverable" for 1 to 6; null otherwise.
const char* getStringStatus(int status);
/// HEALTH_STATUS of an event log severity word.
int getOrvelStatus(const char* severity);
/// NEW_HEALTH_STATUS of a HEALTH_STATUS.
int getNewHealthEnum(int status);
/// The MIB's word for a status word, in a malloc block of 512 bytes; null if memory runs out.
char* getNewHealthString(const char* status);

namespace client::status {

/// NEW_HEALTH_STATUS of a status word.
int rowStatusOf(const char* word);
/// HEALTH_STATUS of a status word.
int eventStatusOf(const char* word);
/// The MIB's word for a HEALTH_STATUS: "Healthy", "Warning", "Critical" or "Unavailable".
const char* healthWord(int status);

} // namespace client::status
