#include "translator/SensorValue.hpp"

#include "translator/WideText.hpp"

#include <cmath>

namespace translator {

namespace {

constexpr int lastRate = 6;

double convertReading(const ipmi::SdrView& sensor, std::uint8_t raw)
{
    return ipmi::linearise(sensor.linearisation(),
                           sensor.factors().apply(ipmi::signedReading(raw, sensor.units().format())));
}

} // namespace

std::wstring sensorValueText(const EventContext& context, std::uint8_t raw)
{
    if (context.sdr && context.sdr->isLinear() && context.sdr->view().units().format() != ipmi::DataFormat::noReading) {
        const double value = convertReading(context.sdr->view(), raw);
        if (std::isfinite(value))
            return valueText(value);
    }
    return std::wstring(context.unknown());
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
