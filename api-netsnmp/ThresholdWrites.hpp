#pragma once

#include "api-netsnmp/NetSnmp.hpp"
#include "client/words/Entities.hpp"

#include <algorithm>
#include <cstddef>

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

inline constexpr WriteMethod* write_voltageUpperNonRecoverableThreshold =
    writeThreshold<VOLTAGE, VOLTAGE_UPPERNONRECTHRESHOLD, "voltageUpperNonRecoverableThreshold">;
inline constexpr WriteMethod* write_voltageUpperCriticalThreshold =
    writeThreshold<VOLTAGE, VOLTAGE_UPPERCRITICALTHRESHOLD, "voltageUpperCriticalThreshold">;
inline constexpr WriteMethod* write_voltageUpperNonCriticalThreshold =
    writeThreshold<VOLTAGE, VOLTAGE_UPPERNONCRITHRESHOLD, "voltageUpperNonCriticalThreshold">;
inline constexpr WriteMethod* write_voltageLowerNonCriticalThreshold =
    writeThreshold<VOLTAGE, VOLTAGE_LOWERNONCRITHRESHOLD, "voltageLowerNonCriticalThreshold">;
inline constexpr WriteMethod* write_voltageLowerCriticalThreshold =
    writeThreshold<VOLTAGE, VOLTAGE_LOWERCRITICALTHRESHOLD, "voltageLowerCriticalThreshold">;
inline constexpr WriteMethod* write_voltageLowerNonRecoverableThreshold =
    writeThreshold<VOLTAGE, VOLTAGE_LOWERNONRECTHRESHOLD, "voltageLowerNonRecoverableThreshold">;

inline constexpr WriteMethod* write_currentUpperNonRecoverableThreshold =
    writeThreshold<CURRENT, CURRENT_UPPERNONRECTHRESHOLD, "currentUpperNonRecoverableThreshold">;
inline constexpr WriteMethod* write_currentUpperCriticalThreshold =
    writeThreshold<CURRENT, CURRENT_UPPERCRITICALTHRESHOLD, "currentUpperCriticalThreshold">;
inline constexpr WriteMethod* write_currentUpperNonCriticalThreshold =
    writeThreshold<CURRENT, CURRENT_UPPERNONCRITHRESHOLD, "currentUpperNonCriticalThreshold">;
inline constexpr WriteMethod* write_currentLowerNonCriticalThreshold =
    writeThreshold<CURRENT, CURRENT_LOWERNONCRITHRESHOLD, "currentLowerNonCriticalThreshold">;
inline constexpr WriteMethod* write_currentLowerCriticalThreshold =
    writeThreshold<CURRENT, CURRENT_LOWERCRITICALTHRESHOLD, "currentLowerCriticalThreshold">;
inline constexpr WriteMethod* write_currentLowerNonRecoverableThreshold =
    writeThreshold<CURRENT, CURRENT_LOWERNONRECTHRESHOLD, "currentLowerNonRecoverableThreshold">;

inline constexpr WriteMethod* write_coolingDeviceUpperNonRecoverableThreshold =
    writeThreshold<COOLINGDEVICE, COOLINGDEVICE_UPPERNONRECTHRESHOLD, "coolingDeviceUpperNonRecoverableThreshold">;
inline constexpr WriteMethod* write_coolingDeviceUpperCriticalThreshold =
    writeThreshold<COOLINGDEVICE, COOLINGDEVICE_UPPERCRITICALTHRESHOLD, "coolingDeviceUpperCriticalThreshold">;
inline constexpr WriteMethod* write_coolingDeviceUpperNonCriticalThreshold =
    writeThreshold<COOLINGDEVICE, COOLINGDEVICE_UPPERNONCRITHRESHOLD, "coolingDeviceUpperNonCriticalThreshold">;
inline constexpr WriteMethod* write_coolingDeviceLowerNonCriticalThreshold =
    writeThreshold<COOLINGDEVICE, COOLINGDEVICE_LOWERNONCRITHRESHOLD, "coolingDeviceLowerNonCriticalThreshold">;
inline constexpr WriteMethod* write_coolingDeviceLowerCriticalThreshold =
    writeThreshold<COOLINGDEVICE, COOLINGDEVICE_LOWERCRITICALTHRESHOLD, "coolingDeviceLowerCriticalThreshold">;
inline constexpr WriteMethod* write_coolingDeviceLowerNonRecoverableThreshold =
    writeThreshold<COOLINGDEVICE, COOLINGDEVICE_LOWERNONRECTHRESHOLD, "coolingDeviceLowerNonRecoverableThreshold">;

inline constexpr WriteMethod* write_temperatureUpperNonRecoverableThreshold =
    writeThreshold<TEMPERATURE, TEMPERATURE_UPPERNONRECTHRESHOLD, "temperatureUpperNonRecoverableThreshold">;
inline constexpr WriteMethod* write_temperatureUpperCriticalThreshold =
    writeThreshold<TEMPERATURE, TEMPERATURE_UPPERCRITICALTHRESHOLD, "temperatureUpperCriticalThreshold">;
inline constexpr WriteMethod* write_temperatureUpperNonCriticalThreshold =
    writeThreshold<TEMPERATURE, TEMPERATURE_UPPERNONCRITHRESHOLD, "temperatureUpperNonCriticalThreshold">;
inline constexpr WriteMethod* write_temperatureLowerNonCriticalThreshold =
    writeThreshold<TEMPERATURE, TEMPERATURE_LOWERNONCRITHRESHOLD, "temperatureLowerNonCriticalThreshold">;
inline constexpr WriteMethod* write_temperatureLowerCriticalThreshold =
    writeThreshold<TEMPERATURE, TEMPERATURE_LOWERCRITICALTHRESHOLD, "temperatureLowerCriticalThreshold">;
inline constexpr WriteMethod* write_temperatureLowerNonRecoverableThreshold =
    writeThreshold<TEMPERATURE, TEMPERATURE_LOWERNONRECTHRESHOLD, "temperatureLowerNonRecoverableThreshold">;
