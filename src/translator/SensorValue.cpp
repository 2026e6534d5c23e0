#include "translator/SensorValue.hpp"

#include "translator/WideText.hpp"

#include <cmath>

namespace translator {

namespace {

constexpr int lastRate = 6;

/// Thresholds of a full record (IPMI 2.0, 43.1): bit of the readable ones, and the place of the value.
struct ThresholdPlace {
    int severity;
    std::uint8_t readable;
    std::size_t byte;
};
constexpr ThresholdPlace lowerThresholds[] = {{1, 0x01, 41}, {2, 0x02, 40}, {3, 0x04, 39}};
constexpr ThresholdPlace upperThresholds[] = {{1, 0x08, 38}, {2, 0x10, 37}, {3, 0x20, 36}};

double convertReading(const ipmi::SdrView& sensor, std::uint8_t raw)
{
    return ipmi::linearise(sensor.linearisation(),
                           sensor.factors().apply(ipmi::signedReading(raw, sensor.units().format())));
}

} // namespace

std::optional<double> sensorValue(const EventContext& context, std::uint8_t raw)
{
    if (!context.sdr || !context.sdr->isLinear() || context.sdr->view().units().format() == ipmi::DataFormat::noReading)
        return std::nullopt;
    const double value = convertReading(context.sdr->view(), raw);
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::wstring sensorValueText(const EventContext& context, std::uint8_t raw)
{
    const std::optional<double> value = sensorValue(context, raw);
    return value ? valueText(*value) : std::wstring(context.unknown());
}

int severityAfterReturn(const EventContext& context)
{
    if (!context.isStandardData(2))
        return 0;
    const double reading = *sensorValue(context, context.entry.eventData(2));
    const bool isUpper = context.entry.offset() >= firstUpperOffset;
    const int left = context.entry.offset() % firstUpperOffset / 2 + 1;
    const ipmi::SdrView record = context.sdr->view();
    int severity = 0;
    for (const ThresholdPlace& place : isUpper ? upperThresholds : lowerThresholds) {
        if (place.severity >= left || (record.at(ipmi::sdr::readableThresholds) & place.readable) == 0)
            continue;
        const std::optional<double> bound = sensorValue(context, record.at(place.byte));
        if (bound && (isUpper ? reading >= *bound : reading <= *bound))
            severity = place.severity;
    }
    return severity;
}

std::wstring sensorUnitText(const EventContext& context)
{
    if (!context.sdr)
        return std::wstring(context.unknown());
    const ipmi::Units units = context.sdr->view().units();
    std::wstring text;
    if (units.isPercentage() && units.base == 0)
        return text += context.misc(MISC_PERCENT, L"%");
    text += context.wordOf(context.tables.sensorUnits, units.base);
    if (units.modifierUse() == ipmi::ModifierUse::perUnit || units.modifierUse() == ipmi::ModifierUse::timesUnit) {
        text += units.modifierUse() == ipmi::ModifierUse::perUnit ? context.misc(MISC_UNIT_PER_UNIT, L" per ")
                                                                  : context.misc(MISC_UNIT_TIMES_UNIT, L" * ");
        text += context.wordOf(context.tables.sensorUnits, units.modifier);
    }
    if (units.rate() != 0 && units.rate() <= lastRate)
        text.append(L" ").append(context.misc(MISC_RATE + units.rate() - 1, L""));
    if (units.isPercentage())
        text.append(L" ").append(context.misc(MISC_PERCENT, L"%"));
    return text;
}

} // namespace translator
