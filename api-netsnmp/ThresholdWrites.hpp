#pragma once

#include "api-netsnmp/NetSnmp.hpp"
#include "client/words/Entities.hpp"

#include <algorithm>
#include <cstddef>

namespace mib {

/// A threshold column as its write method needs it; `name` goes into its messages.
struct ThresholdColumn {
    _SMEntity entity;
    _SMAttribute attribute;
    const char* name;
};

/// What a write method remembers from one phase of a SET to the next.
struct ThresholdWrite {
    const u_char* place = nullptr; ///< where the library keeps the value to write
    long oldValue = 0;
};

/// One phase of a SET as Net-SNMP hands it over: a write method's arguments.
struct WriteRequest {
    int action;
    const u_char* value;
    u_char type;
    std::size_t length;
    const oid* name;
    std::size_t nameLength;
};

/// Answers one phase with an SNMP error code. Refuses with notWritable as long as sets are not enabled.
int answerWrite(const ThresholdColumn& column, ThresholdWrite& write, const WriteRequest& request);

/// A text as template argument.
template<std::size_t size>
struct ColumnName {
    consteval ColumnName(const char (&from)[size]) { std::copy_n(from, size, text); }
    char text[size];
};

template<_SMEntity entity, _SMAttribute attribute, ColumnName column>
int writeThreshold(int action, u_char* value, u_char type, std::size_t length, u_char*, oid* name,
                   std::size_t nameLength)
{
    static ThresholdWrite write;
    return answerWrite({entity, attribute, column.text}, write, {action, value, type, length, name, nameLength});
}

} // namespace mib

#define HW_THRESHOLD_WRITE(entity, level, column)                                                                      \
    inline constexpr WriteMethod* write_##column = mib::writeThreshold<entity, entity##_##level##THRESHOLD, #column>

HW_THRESHOLD_WRITE(VOLTAGE, UPPERNONREC, voltageUpperNonRecoverableThreshold);
HW_THRESHOLD_WRITE(VOLTAGE, UPPERCRITICAL, voltageUpperCriticalThreshold);
HW_THRESHOLD_WRITE(VOLTAGE, UPPERNONCRI, voltageUpperNonCriticalThreshold);
HW_THRESHOLD_WRITE(VOLTAGE, LOWERNONCRI, voltageLowerNonCriticalThreshold);
HW_THRESHOLD_WRITE(VOLTAGE, LOWERCRITICAL, voltageLowerCriticalThreshold);
HW_THRESHOLD_WRITE(VOLTAGE, LOWERNONREC, voltageLowerNonRecoverableThreshold);

HW_THRESHOLD_WRITE(CURRENT, UPPERNONREC, currentUpperNonRecoverableThreshold);
HW_THRESHOLD_WRITE(CURRENT, UPPERCRITICAL, currentUpperCriticalThreshold);
HW_THRESHOLD_WRITE(CURRENT, UPPERNONCRI, currentUpperNonCriticalThreshold);
HW_THRESHOLD_WRITE(CURRENT, LOWERNONCRI, currentLowerNonCriticalThreshold);
HW_THRESHOLD_WRITE(CURRENT, LOWERCRITICAL, currentLowerCriticalThreshold);
HW_THRESHOLD_WRITE(CURRENT, LOWERNONREC, currentLowerNonRecoverableThreshold);

HW_THRESHOLD_WRITE(COOLINGDEVICE, UPPERNONREC, coolingDeviceUpperNonRecoverableThreshold);
HW_THRESHOLD_WRITE(COOLINGDEVICE, UPPERCRITICAL, coolingDeviceUpperCriticalThreshold);
HW_THRESHOLD_WRITE(COOLINGDEVICE, UPPERNONCRI, coolingDeviceUpperNonCriticalThreshold);
HW_THRESHOLD_WRITE(COOLINGDEVICE, LOWERNONCRI, coolingDeviceLowerNonCriticalThreshold);
HW_THRESHOLD_WRITE(COOLINGDEVICE, LOWERCRITICAL, coolingDeviceLowerCriticalThreshold);
HW_THRESHOLD_WRITE(COOLINGDEVICE, LOWERNONREC, coolingDeviceLowerNonRecoverableThreshold);

HW_THRESHOLD_WRITE(TEMPERATURE, UPPERNONREC, temperatureUpperNonRecoverableThreshold);
HW_THRESHOLD_WRITE(TEMPERATURE, UPPERCRITICAL, temperatureUpperCriticalThreshold);
HW_THRESHOLD_WRITE(TEMPERATURE, UPPERNONCRI, temperatureUpperNonCriticalThreshold);
HW_THRESHOLD_WRITE(TEMPERATURE, LOWERNONCRI, temperatureLowerNonCriticalThreshold);
HW_THRESHOLD_WRITE(TEMPERATURE, LOWERCRITICAL, temperatureLowerCriticalThreshold);
HW_THRESHOLD_WRITE(TEMPERATURE, LOWERNONREC, temperatureLowerNonRecoverableThreshold);

#undef HW_THRESHOLD_WRITE
