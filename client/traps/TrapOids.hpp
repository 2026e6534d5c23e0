#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

/// Names of the agent's traps and of what they carry.

using SubId = unsigned long;

/// The trap base: 1.3.6.1.4.1.44444.2.10.3.5.
inline constexpr std::array<SubId, 11> trapBase = {1, 3, 6, 1, 4, 1, 44444, 2, 10, 3, 5};

/// The base and `tail` behind it.
template<class... Tail>
constexpr auto underBase(Tail... tail)
{
    std::array<SubId, trapBase.size() + sizeof...(Tail)> name{};
    std::ranges::copy(trapBase, name.begin());
    const std::array<SubId, sizeof...(Tail)> ending = {static_cast<SubId>(tail)...};
    std::ranges::copy(ending, name.begin() + trapBase.size());
    return name;
}

using TrapOid = std::array<SubId, 14>;

/// base.1000.group.number
constexpr TrapOid trapOid(SubId group, SubId number)
{
    return underBase(1000, group, number);
}

inline constexpr TrapOid HealthOther = trapOid(20, 1);
inline constexpr TrapOid HealthUnknown = trapOid(20, 2);
inline constexpr TrapOid HealthOk = trapOid(20, 3);
inline constexpr TrapOid HealthNonCri = trapOid(20, 4);
inline constexpr TrapOid HealthCritical = trapOid(20, 5);
inline constexpr TrapOid HealthNonRec = trapOid(20, 6);

inline constexpr TrapOid IntrusionDetected = trapOid(30, 1);
inline constexpr TrapOid IntrusionCleared = trapOid(30, 2);
inline constexpr TrapOid LanLeashLost = trapOid(30, 3);

inline constexpr TrapOid ProcIERR = trapOid(40, 1);
inline constexpr TrapOid ProcThermal = trapOid(40, 2);
inline constexpr TrapOid ProcFRB1 = trapOid(40, 3);
inline constexpr TrapOid ProcFRB2 = trapOid(40, 4);
inline constexpr TrapOid ProcFRB3 = trapOid(40, 5);
inline constexpr TrapOid ProcConfigErr = trapOid(40, 6);
inline constexpr TrapOid ProcPresence = trapOid(40, 7);
inline constexpr TrapOid ProcDisabled = trapOid(40, 8);
inline constexpr TrapOid ProcEnabled = trapOid(40, 9);
inline constexpr TrapOid ProcSMBIOS = trapOid(40, 10);

inline constexpr TrapOid PUFullRedund = trapOid(50, 1);
inline constexpr TrapOid PURedundDegraded = trapOid(50, 2);
inline constexpr TrapOid PURedundLost = trapOid(50, 3);
inline constexpr TrapOid PSPresent = trapOid(50, 4);
inline constexpr TrapOid PSRemoval = trapOid(50, 5);
inline constexpr TrapOid PSFailure = trapOid(50, 6);
inline constexpr TrapOid PSPredFailure = trapOid(50, 7);
inline constexpr TrapOid PSACLost = trapOid(50, 8);
inline constexpr TrapOid PSACOK = trapOid(50, 9);
inline constexpr TrapOid VLowNonRec = trapOid(50, 10);
inline constexpr TrapOid VLowCri = trapOid(50, 11);
inline constexpr TrapOid VLowNonCri = trapOid(50, 12);
inline constexpr TrapOid VEventOk = trapOid(50, 13);
inline constexpr TrapOid VUpNonCri = trapOid(50, 14);
inline constexpr TrapOid VUpCri = trapOid(50, 15);
inline constexpr TrapOid VUpNonRec = trapOid(50, 16);
inline constexpr TrapOid DVPerformMet = trapOid(50, 17);
inline constexpr TrapOid DVPerformLags = trapOid(50, 18);

inline constexpr TrapOid MemSingleBit = trapOid(60, 1);
inline constexpr TrapOid MemMultiBit = trapOid(60, 2);
inline constexpr TrapOid MemParity = trapOid(60, 3);
inline constexpr TrapOid MemScrubFail = trapOid(60, 4);

inline constexpr TrapOid CUFullRedund = trapOid(70, 1);
inline constexpr TrapOid CURedundDegraded = trapOid(70, 2);
inline constexpr TrapOid CURedundLost = trapOid(70, 3);
inline constexpr TrapOid CLowNonRec = trapOid(70, 4);
inline constexpr TrapOid CLowCri = trapOid(70, 5);
inline constexpr TrapOid CLowNonCri = trapOid(70, 6);
inline constexpr TrapOid CEventOk = trapOid(70, 7);
inline constexpr TrapOid CUpNonCri = trapOid(70, 8);
inline constexpr TrapOid CUpCri = trapOid(70, 9);
inline constexpr TrapOid CUpNonRec = trapOid(70, 10);
inline constexpr TrapOid DCPerformMet = trapOid(70, 11);
inline constexpr TrapOid DCPerformLags = trapOid(70, 12);
inline constexpr TrapOid TLowNonRec = trapOid(70, 13);
inline constexpr TrapOid TLowCri = trapOid(70, 14);
inline constexpr TrapOid TLowNonCri = trapOid(70, 15);
inline constexpr TrapOid TEventOk = trapOid(70, 16);
inline constexpr TrapOid TUpNonCri = trapOid(70, 17);
inline constexpr TrapOid TUpCri = trapOid(70, 18);
inline constexpr TrapOid TUpNonRec = trapOid(70, 19);

inline constexpr TrapOid SlotOk = trapOid(80, 1);
inline constexpr TrapOid SlotFault = trapOid(80, 2);
inline constexpr TrapOid SlotPowerOff = trapOid(80, 3);
inline constexpr TrapOid SlotPowerOn = trapOid(80, 4);

inline constexpr TrapOid SysReconfig = trapOid(90, 1);
inline constexpr TrapOid SysBoot = trapOid(90, 2);
inline constexpr TrapOid HardwareFail = trapOid(90, 3);

inline constexpr TrapOid DriveSlotDeviceRemovedEventOid = trapOid(100, 1);
inline constexpr TrapOid DriveSlotDeviceInsertedEventOid = trapOid(100, 2);

inline constexpr TrapOid PGSurgeLoopEvtAsserted = trapOid(110, 1);
inline constexpr TrapOid PGSurgeLoopEvtDeasserted = trapOid(110, 2);

/// snmpTrapOID.0 (RFC 3418)
inline constexpr std::array<SubId, 11> objid_snmptrap = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
inline constexpr TrapOid eventDescOID = trapOid(10, 1);
/// Severity in the trap with two objects; systemSeverityOID when it speaks of the system's health.
inline constexpr TrapOid eventSeverityOID = trapOid(10, 2);
inline constexpr TrapOid systemSeverityOID = underBase(100, 1, 0);

/// Names of the objects of a slot's trap.
inline constexpr TrapOid phpDeviceIdOID = trapOid(10, 4);
inline constexpr TrapOid phpDeviceDescOID = trapOid(10, 3);
inline constexpr TrapOid phpSeverityOID = trapOid(10, 2);

/// Names of the objects of a table's trap: the zeros are the table's arc and the row.
using ObjectOid = std::array<SubId, 16>;
inline constexpr ObjectOid otherDeviceIdOID = underBase(0, 0, 1, 2, 0);
inline constexpr ObjectOid otherDeviceDescOID = underBase(0, 0, 1, 3, 0);
inline constexpr ObjectOid otherSeverityOID = underBase(0, 0, 1, 5, 0);
