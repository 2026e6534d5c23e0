#pragma once

#include "client/words/Entities.hpp"

#include <cmath>
#include <limits>

namespace client::words {

/// Greatest number that a reading can show: one above it already means "no value".
inline constexpr int greatestValue = noValue - 1;

/// `value` cut to the range of readings.
constexpr int clampToValue(long value)
{
    if (value > greatestValue)
        return greatestValue;
    if (value < std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

/// Truncates towards zero and cuts to the range of readings; not-a-number is "no value".
inline int truncateToValue(double value)
{
    if (std::isnan(value))
        return noValue;
    if (value >= static_cast<double>(greatestValue))
        return greatestValue;
    if (value <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

/// `value` times `factor`, cut to the range of readings; "no value" stays.
constexpr int scaleValue(int value, int factor)
{
    return value == noValue ? noValue : clampToValue(static_cast<long>(value) * factor);
}

} // namespace client::words
