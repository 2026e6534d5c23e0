#include "translator/EventContext.hpp"

#include "ipmi/SensorReading.hpp"
#include "translator/SensorValue.hpp"

namespace translator {

namespace {

ipmi::DataKind kindOf(const SELEntry& entry, int number)
{
    return number == 2 ? entry.data2Kind() : entry.data3Kind();
}

/// What stands in a byte that nobody has filled.
bool isEmpty(std::uint8_t byte)
{
    return byte == 0x00 || byte == 0xFF;
}

} // namespace

bool EventContext::isStandardData(int number) const
{
    if (entry.eventType() != ipmi::eventtype::threshold)
        return kindOf(entry, number) == ipmi::DataKind::extension;
    return kindOf(entry, number) == ipmi::DataKind::reading && sensorValue(*this, entry.eventData(number));
}

bool EventContext::isForeignData(int number) const
{
    const ipmi::DataKind kind = kindOf(entry, number);
    return kind == ipmi::DataKind::oem || (kind == ipmi::DataKind::unspecified && !isEmpty(entry.eventData(number)));
}

} // namespace translator
