#include "ipmi/Conversion.hpp"

#include <cmath>
#include <iterator>

namespace ipmi {

namespace {

using Function = double (*)(double value);

constexpr Function functions[] = {
    [](double x) { return x; },
    [](double x) { return std::log(x); },
    [](double x) { return std::log10(x); },
    [](double x) { return std::log2(x); },
    [](double x) { return std::exp(x); },
    [](double x) { return std::pow(10.0, x); },
    [](double x) { return std::exp2(x); },
    [](double x) { return 1.0 / x; },
    [](double x) { return x * x; },
    [](double x) { return x * x * x; },
    [](double x) { return std::sqrt(x); },
    [](double x) { return std::cbrt(x); },
};

} // namespace

double Factors::apply(int reading) const
{
    return (m * reading + b * std::pow(10.0, bExponent)) * std::pow(10.0, resultExponent);
}

int signedReading(std::uint8_t raw, DataFormat format)
{
    constexpr int signBit = 0x80;
    if (format == DataFormat::isUnsigned || !(raw & signBit))
        return raw;
    return format == DataFormat::onesComplement ? raw - 0xFF : raw - 0x100;
}

double linearise(std::uint8_t code, double value)
{
    return code < std::size(functions) ? functions[code](value) : value;
}

} // namespace ipmi
