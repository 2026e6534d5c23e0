#include "translator/SensorValue.hpp"

#include "translator/WideText.hpp"

#include <array>
#include <cmath>

namespace {

enum DataFormat { UNSIGNED, ONES_COMPLEMENT, TWOS_COMPLEMENT, NO_READING };
enum ModifierUse { NO_MODIFIER, PER_MODIFIER, TIMES_MODIFIER };
constexpr int percentFlag = 0x01;
constexpr int lastRate = 6;

int signedReading(std::uint8_t raw, int format)
{
    if (format == UNSIGNED || raw < 0x80)
        return raw;
    return format == ONES_COMPLEMENT ? raw - 0xFF : raw - 0x100;
}

using Linearize = double (*)(double);
constexpr std::array<Linearize, 12> linearizations{
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

double convertReading(const SDREntry& sensor, std::uint8_t raw)
{
    std::array<short, 4> factors{};
    sensor.getConversionFactors(factors.data());
    const auto [m, b, k1, k2] = factors;
    const double value =
        (m * signedReading(raw, sensor.unitFlags() >> 6) + b * std::pow(10.0, k1)) * std::pow(10.0, k2);
    const std::size_t function = sensor.linearization();
    return function < linearizations.size() ? linearizations[function](value) : value;
}

} // namespace

std::wstring sensorValueText(const EventContext& context, std::uint8_t raw)
{
    if (context.sdr && context.sdr->isLinear() && context.sdr->unitFlags() >> 6 != NO_READING) {
        const double value = convertReading(*context.sdr, raw);
        if (std::isfinite(value))
            return valueText(value);
    }
    return std::wstring(context.unknown());
}

std::wstring sensorUnitText(const EventContext& context)
{
    if (!context.sdr)
        return std::wstring(context.unknown());
    const int flags = context.sdr->unitFlags();
    const int use = flags >> 1 & 3;
    const int rate = flags >> 3 & 7;
    std::wstring text;
    if (flags & percentFlag && context.sdr->baseUnit() == 0)
        return text += context.misc(MISC_PERCENT, L"%");
    text += context.wordOf(context.tables.sensorUnits, context.sdr->baseUnit());
    if (use == PER_MODIFIER || use == TIMES_MODIFIER) {
        text += use == PER_MODIFIER ? context.misc(MISC_UNIT_PER_UNIT, L" per ")
                                    : context.misc(MISC_UNIT_TIMES_UNIT, L" * ");
        text += context.wordOf(context.tables.sensorUnits, context.sdr->modifierUnit());
    }
    if (rate != 0 && rate <= lastRate)
        text.append(L" ").append(context.misc(MISC_RATE + rate - 1, L""));
    if (flags & percentFlag)
        text.append(L" ").append(context.misc(MISC_PERCENT, L"%"));
    return text;
}
