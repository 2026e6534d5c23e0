#include "modules/bmc/subjects/SensorConversion.hpp"

#include "ipmi/Conversion.hpp"

#include <cmath>

namespace Module::BMCConfig {

namespace {

/// Codes whose form is this system's own: the linear one and the inverse apply the factors, the others do not; the
/// last is the inverse of the cube, where the standard has the cube root.
enum Form : std::uint8_t { LINEAR = 0, INVERSE = 7, INVERSE_CUBE = 11 };

double divideOne(double divisor)
{
    return divisor == 0.0 ? 0.0 : 1.0 / divisor;
}

double invert(const ipmi::Factors& factors, int x)
{
    constexpr int noReading = 255;
    return x == noReading ? 0.0 : divideOne(factors.apply(x ? x : 1));
}

double convert(std::uint8_t form, const ipmi::Factors& factors, int x)
{
    if (form == LINEAR)
        return factors.apply(x);
    if (form == INVERSE)
        return invert(factors, x);
    if (form == INVERSE_CUBE)
        return divideOne(double(x) * x * x);
    return form < INVERSE_CUBE ? ipmi::linearise(form, x) : 0.0;
}

} // namespace

void CVTCUtilities::CalculateMultiplier(std::uint8_t low, std::uint8_t high, int* multiplier)
{
    *multiplier = ipmi::tenBits(low, high);
}

void CVTCUtilities::CalculateOffset(std::uint8_t low, std::uint8_t high, int* offset)
{
    *offset = ipmi::tenBits(low, high);
}

void CVTCUtilities::CalculateRExponent(std::uint8_t exponents, int* exponent)
{
    *exponent = ipmi::highExponent(exponents);
}

void CVTCUtilities::CalculateBExponent(std::uint8_t exponents, int* exponent)
{
    *exponent = ipmi::lowExponent(exponents);
}

void CVTCUtilities::CalculateAccuracy(std::uint8_t low, std::uint8_t high, unsigned* accuracy)
{
    *accuracy = ipmi::accuracyOf(low, high);
}

void CVTCUtilities::GetSignedData(std::uint8_t raw, std::uint8_t format, int* value)
{
    *value = ipmi::signedReading(raw, static_cast<ipmi::DataFormat>(format));
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
    if (linearisation != LINEAR)
        return;
    const double magnitude = tolerance * 2 * multiplier * std::pow(10.0, rExponent);
    *value = tolerance & signBit ? -magnitude : magnitude;
}

void CVTCUtilities::ConversionFormula(std::uint8_t linearisation, int multiplier, int x, int offset, int rExponent,
                                      int bExponent, double* value)
{
    *value = convert(linearisation, {multiplier, offset, bExponent, rExponent}, x);
}

} // namespace Module::BMCConfig
