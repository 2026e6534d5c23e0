#pragma once

#include "client/words/Entities.hpp"

#include <string_view>

namespace client::status {

/// The six bounds of a reading; those at 0x7fffffff are not set.
struct Bounds {
    int upperNonRec = words::noValue;
    int upperCritical = words::noValue;
    int upperNonCri = words::noValue;
    int lowerNonCri = words::noValue;
    int lowerCritical = words::noValue;
    int lowerNonRec = words::noValue;
};

/// Status of a reading: "unknown", "ok", "nonCritical" or "critical". A reading equal to a bound is inside it. Beyond a
/// non-recoverable bound is "critical" too.
const char* statusOf(int reading, const Bounds& bounds);

/// The rule for fans: beyond a non-recoverable bound only some boards are "critical", all others "nonCritical".
const char* fanStatusOf(int reading, const Bounds& bounds, std::string_view boardModel);

} // namespace client::status
