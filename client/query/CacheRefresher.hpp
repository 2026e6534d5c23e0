#pragma once

#include "common/Seams.hpp"

#include <ctime>

/// Asks the SDK for every query of the refresh set, without holding the mutex of the maps, and then replaces their
/// cached answers. Always 0; also when a pass is already under way, which then is left alone. A failing query's
/// exception passes up and leaves in_refresh set.
int refresh_cache();

namespace client::query {

/// When, by the steady clock, the wait that starts now ends without a signal: sleep_interval from now, with the
/// fraction of the second kept.
timespec refreshDeadline(Clock::SteadyPoint now);

/// Takes the result of that wait (ETIMEDOUT, or anything else for a signal), sets the next wait, and says whether the
/// cache is to be refreshed. After a signal it is, unless the latest request is 1 to 10 seconds old.
bool refreshIsDue(int waitResult);

/// One turn of the refresher thread: wait for a signal or the deadline, then perhaps refresh, holding snmp_mtx
/// throughout. No exception leaves it.
void check_sensors_cache_turn();

} // namespace client::query
