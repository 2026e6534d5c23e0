#include "client/status/StatusRules.hpp"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace client::status {

namespace {

using words::noValue;

constexpr std::string_view strictFanBoards[] = {"Larch-1", "Larch-2", "Larch-3", "Larch-4", "Larch-5"};

bool isOutside(int reading, int lower, int upper)
{
    return (upper != noValue && reading > upper) || (lower != noValue && reading < lower);
}

bool isBeyondNonRecoverable(int reading, const Bounds& bounds)
{
    return isOutside(reading, bounds.lowerNonRec, bounds.upperNonRec);
}

/// Of a reading that is inside the non-recoverable bounds.
const char* statusInside(int reading, const Bounds& bounds)
{
    if (isOutside(reading, bounds.lowerCritical, bounds.upperCritical))
        return "critical";
    if (isOutside(reading, bounds.lowerNonCri, bounds.upperNonCri))
        return "nonCritical";
    const std::initializer_list<int> all = {bounds.upperNonRec, bounds.upperCritical, bounds.upperNonCri,
                                            bounds.lowerNonCri, bounds.lowerCritical, bounds.lowerNonRec};
    return std::ranges::all_of(all, [](int bound) { return bound == noValue; }) ? "unknown" : "ok";
}

struct LimitPair {
    double Limits::*upper;
    double Limits::*lower;
    const char* status;
};

/// The gravest first.
constexpr LimitPair limitPairs[] = {
    {&Limits::upperNonRec, &Limits::lowerNonRec, "nonRecoverable"},
    {&Limits::upperCritical, &Limits::lowerCritical, "critical"},
    {&Limits::upperNonCri, &Limits::lowerNonCri, "nonCritical"},
};

} // namespace

Judgement judgeReading(double reading, const Limits& limits)
{
    if (std::isnan(reading))
        return {};
    for (const auto& [upper, lower, status] : limitPairs) {
        if (reading >= limits.*upper)
            return {status, "Upper "};
        if (reading <= limits.*lower)
            return {status, "Lower "};
    }
    return {"ok"};
}

const char* statusOf(int reading, const Bounds& bounds)
{
    if (reading == noValue)
        return "unknown";
    return isBeyondNonRecoverable(reading, bounds) ? "critical" : statusInside(reading, bounds);
}

const char* fanStatusOf(int reading, const Bounds& bounds, std::string_view boardModel)
{
    if (reading == noValue)
        return "unknown";
    if (!isBeyondNonRecoverable(reading, bounds))
        return statusInside(reading, bounds);
    const bool isStrict = std::ranges::find(strictFanBoards, boardModel) != std::end(strictFanBoards);
    return isStrict ? "critical" : "nonCritical";
}

} // namespace client::status
