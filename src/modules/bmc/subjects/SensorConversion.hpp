#pragma once

#include <cstdint>

namespace Module::BMCConfig {

/// From the raw bytes of a full sensor record and a reading to numbers. Field numbers are those of the record's bytes,
/// from 0; results go to the last argument.
class CVTCUtilities {
public:
    /// M and B: 10 bits, two's complement, the upper two in bits 6 and 7 of `high`.
    static void CalculateMultiplier(std::uint8_t low, std::uint8_t high, int* multiplier);
    static void CalculateOffset(std::uint8_t low, std::uint8_t high, int* offset);
    /// Signed nibbles of the exponents' byte: the result's exponent is the high one, B's the low one.
    static void CalculateRExponent(std::uint8_t exponents, int* exponent);
    static void CalculateBExponent(std::uint8_t exponents, int* exponent);
    /// 10 bits: the low 6 of `low`, the upper 4 in bits 4 to 7 of `high`.
    static void CalculateAccuracy(std::uint8_t low, std::uint8_t high, unsigned* accuracy);
    /// `format`: analog data format of sensor units 1: 0 unsigned, 1 one's complement, 2 and 3 two's complement.
    static void GetSignedData(std::uint8_t raw, std::uint8_t format, int* value);
    static void GetRawData(std::uint8_t raw, int* value);
    /// Bit 5 of the tolerance makes the result negative; a sensor that is not linear has the tolerance 0.
    static void CalculateTolerance(int tolerance, int multiplier, int rExponent, std::uint8_t linearisation,
                                   double* value);
    /// The reading `x` in the sensor's unit. Only the linear form and the inverse (7) apply the factors; 11 is the
    /// inverse cube. 0.0 for codes above 11 and where the form divides by 0; the logarithms and the root of what has
    /// none are not finite.
    static void ConversionFormula(std::uint8_t linearisation, int multiplier, int x, int offset, int rExponent,
                                  int bExponent, double* value);
};

} // namespace Module::BMCConfig
