#pragma once

#include "client/words/Entities.hpp"

#include <limits>
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

/// The bounds of a reading in its own unit; those that are not set are out of reach.
struct Limits {
    double upperNonRec = std::numeric_limits<double>::infinity();
    double upperCritical = std::numeric_limits<double>::infinity();
    double upperNonCri = std::numeric_limits<double>::infinity();
    double lowerNonCri = -std::numeric_limits<double>::infinity();
    double lowerCritical = -std::numeric_limits<double>::infinity();
    double lowerNonRec = -std::numeric_limits<double>::infinity();
};

/// What a sensor says: a status word, and the side of its bounds on which a reading is.
struct Judgement {
    const char* status = "unknown";
    const char* side = ""; ///< "Upper " or "Lower "
};

/// The standard's rule (IPMI 2.0, 35.14): a reading at a bound is beyond it. One without bounds is in order; NaN is no
/// reading.
Judgement judgeReading(double reading, const Limits& limits);

} // namespace client::status
