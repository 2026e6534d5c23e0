#include "modules/bmc/subjects/SensorConversion.hpp"

#include <cmath>
#include <iterator>

namespace Module::BMCConfig {

namespace {

/// The factors of a conversion and the reading they apply to.
struct Terms {
    int multiplier;
    int x;
    int offset;
    int rExponent;
    int bExponent;
};

int signExtend(unsigned value, unsigned bits)
{
    const unsigned sign = 1U << (bits - 1);
    return static_cast<int>(value & (sign - 1)) - static_cast<int>(value & sign);
}

int tenBits(std::uint8_t low, std::uint8_t high)
{
    return signExtend(low | (high & 0xC0U) << 2, 10);
}

double applyFactors(const Terms& terms)
{
    return (terms.multiplier * terms.x + terms.offset * std::pow(10.0, terms.bExponent)) *
           std::pow(10.0, terms.rExponent);
}

double divideOne(double divisor)
{
    return divisor == 0.0 ? 0.0 : 1.0 / divisor;
}

double invert(const Terms& terms)
{
    constexpr int noReading = 255;
    if (terms.x == noReading)
        return 0.0;
    Terms counted = terms;
    counted.x = terms.x ? terms.x : 1;
    return divideOne(applyFactors(counted));
}

using Form = double (*)(const Terms& terms);

constexpr Form forms[] = {
    applyFactors,
    [](const Terms& terms) { return std::log(terms.x); },
    [](const Terms& terms) { return std::log10(terms.x); },
    [](const Terms& terms) { return std::log(terms.x) / 0.6931471805599453; },
    [](const Terms& terms) { return std::exp(terms.x); },
    [](const Terms& terms) { return std::pow(10.0, terms.x); },
    [](const Terms& terms) { return std::pow(2.0, terms.x); },
    invert,
    [](const Terms& terms) { return double(terms.x) * terms.x; },
    [](const Terms& terms) { return double(terms.x) * terms.x * terms.x; },
    [](const Terms& terms) { return std::sqrt(terms.x); },
    [](const Terms& terms) { return divideOne(double(terms.x) * terms.x * terms.x); },
};

} // namespace

void CVTCUtilities::CalculateMultiplier(std::uint8_t low, std::uint8_t high, int* multiplier)
{
    *multiplier = tenBits(low, high);
}

void CVTCUtilities::CalculateOffset(std::uint8_t low, std::uint8_t high, int* offset)
{
    *offset = tenBits(low, high);
}

void CVTCUtilities::CalculateRExponent(std::uint8_t exponents, int* exponent)
{
    *exponent = signExtend(exponents >> 4, 4);
}

void CVTCUtilities::CalculateBExponent(std::uint8_t exponents, int* exponent)
{
    *exponent = signExtend(exponents & 0x0FU, 4);
}

void CVTCUtilities::CalculateAccuracy(std::uint8_t low, std::uint8_t high, unsigned* accuracy)
{
    *accuracy = (low & 0x3FU) | (high & 0xF0U) << 2;
}

void CVTCUtilities::GetSignedData(std::uint8_t raw, std::uint8_t format, int* value)
{
    constexpr std::uint8_t onesComplement = 1, twosComplementBit = 2;
    const bool negative = raw & 0x80;
    *value = raw;
    if (negative && (format & twosComplementBit))
        *value = raw - 256;
    else if (negative && format == onesComplement)
        *value = raw - 255;
}

void CVTCUtilities::GetRawData(std::uint8_t raw, int* value)
{
    *value = raw;
}

void CVTCUtilities::CalculateTolerance(int tolerance, int multiplier, int rExponent, std::uint8_t linearisation,
                                       double* value)
{
    constexpr int signBit = 0x20;
    *value = 0.0;
    if (linearisation != 0)
        return;
    const double magnitude = tolerance * 2 * multiplier * std::pow(10.0, rExponent);
    *value = tolerance & signBit ? -magnitude : magnitude;
}

void CVTCUtilities::ConversionFormula(std::uint8_t linearisation, int multiplier, int x, int offset, int rExponent,
                                      int bExponent, double* value)
{
    *value = 0.0;
    if (linearisation < std::size(forms))
        *value = forms[linearisation]({multiplier, x, offset, rExponent, bExponent});
}

} // namespace Module::BMCConfig
