#include "ipmi/SdrView.hpp"

#include "ipmi/SensorReading.hpp"

#include <algorithm>
#include <iterator>

namespace ipmi {

bool SdrView::isSensor() const
{
    return isReadable() || type() == sdrtype::eventOnly;
}

std::optional<std::uint8_t> SdrView::sensorType() const
{
    const std::size_t place = type() == sdrtype::eventOnly ? sdr::eventOnlySensorType : sdr::sensorType;
    return isSensor() && has(place) ? std::optional(at(place)) : std::nullopt;
}

std::optional<std::uint8_t> SdrView::eventType() const
{
    const std::size_t place = type() == sdrtype::eventOnly ? sdr::eventOnlyEventType : sdr::eventType;
    return isSensor() && has(place) ? std::optional(at(place)) : std::nullopt;
}

bool SdrView::hasReading() const
{
    return type() == sdrtype::full && eventType() == eventtype::threshold && has(sdr::exponents) &&
           units().format() != DataFormat::noReading && linearisation() <= lastFormula;
}

Factors SdrView::factors() const
{
    return {.m = tenBits(at(sdr::m), at(sdr::mTolerance)),
            .b = tenBits(at(sdr::b), at(sdr::bAccuracy)),
            .bExponent = lowExponent(at(sdr::exponents)),
            .resultExponent = highExponent(at(sdr::exponents))};
}

TypeLengthText SdrView::name() const
{
    const auto place = std::ranges::find(namePlaces, type(), &NamePlace::recordType);
    if (place == std::end(namePlaces) || !has(place->typeLength))
        return {};
    return sdrText(bytes.subspan(place->typeLength));
}

std::int32_t SdrView::packedId() const
{
    return lun() | owner() << 8 | number() << 16 | lunByte() >> 5 << 24;
}

} // namespace ipmi
