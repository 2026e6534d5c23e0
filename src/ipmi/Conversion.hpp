#pragma once

#include "ipmi/Bytes.hpp"

/// From a raw reading to a number in the sensor's unit (IPMI 2.0, 36.3).
namespace ipmi {

/// Bits 7 and 6 of sensor units 1 (43.1, byte 21): how a raw reading is to be read.
enum class DataFormat : std::uint8_t { isUnsigned, onesComplement, twosComplement, noReading };
/// Bits 2 and 1 of it: what the modifier unit does to the base unit.
enum class ModifierUse : std::uint8_t { none, perUnit, timesUnit };

/// Sensor units 1, base unit and modifier unit.
struct Units {
    std::uint8_t flags;
    std::uint8_t base;
    std::uint8_t modifier;

    DataFormat format() const { return static_cast<DataFormat>(flags >> 6); }
    std::uint8_t rate() const { return flags >> 3 & 7; }
    ModifierUse modifierUse() const { return static_cast<ModifierUse>(flags >> 1 & 3); }
    bool isPercentage() const { return (flags & 1) != 0; }
};

/// (m x reading + b x 10^bExponent) x 10^resultExponent, before linearisation.
struct Factors {
    int m;
    int b;
    int bExponent;      ///< K1
    int resultExponent; ///< K2

    double apply(int reading) const;
};

/// M and B: 10 bits, two's complement, the upper two in bits 7 and 6 of `high`.
constexpr int tenBits(std::uint8_t low, std::uint8_t high)
{
    return signExtend(low | (high & 0xC0U) << 2, 10);
}

/// The exponents share a byte: B's in the low half, the result's in the high one.
constexpr int lowExponent(std::uint8_t exponents)
{
    return signExtend(exponents & 0x0FU, 4);
}

constexpr int highExponent(std::uint8_t exponents)
{
    return signExtend(exponents >> 4, 4);
}

/// Half raw counts; in the low 6 bits of the byte that holds M's upper ones.
constexpr unsigned toleranceOf(std::uint8_t mTolerance)
{
    return mTolerance & 0x3FU;
}

/// Hundredths of a percent, before its exponent: 10 bits, the upper four in bits 7 to 4 of `high`.
constexpr unsigned accuracyOf(std::uint8_t bAccuracy, std::uint8_t high)
{
    return (bAccuracy & 0x3FU) | (high & 0xF0U) << 2;
}

/// The raw reading as the number that the factors apply to.
int signedReading(std::uint8_t raw, DataFormat format);

/// The value through the function that `code` names (43.1, byte 24): 0 to 11, linear to cube root. Any other leaves it
/// as it is. Not finite where the function has no value.
double linearise(std::uint8_t code, double value);

} // namespace ipmi
