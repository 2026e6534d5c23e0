#pragma once

#include "client/traps/EventData.hpp"
#include "client/traps/TrapOids.hpp"

#include <string>
#include <variant>
#include <vector>

namespace client::traps {

/// One object of a trap: its name, and an integer, a text or an object identifier.
struct Varbind {
    std::vector<SubId> name;
    std::variant<long, std::string, std::vector<SubId>> value;
    bool operator==(const Varbind&) const = default;
};
/// A finished trap, snmpTrapOID.0 first.
using Trap = std::vector<Varbind>;

} // namespace client::traps

/// Each chooses the trap of an event of its kind; null if there is none. Where the text decides, the first fitting
/// substring counts.
const client::traps::TrapOid* getSystemMgtEventOID(const eventData& event);
const client::traps::TrapOid* getPowerUnitEventOID(const eventData& event);
const client::traps::TrapOid* getCoolingUnitEventOID(const eventData& event);
const client::traps::TrapOid* getDriveSlotEventOID(const eventData& event);
const client::traps::TrapOid* getBiosEventOID(const eventData& event);
const client::traps::TrapOid* getPhpSlotEventOID(const eventData& event);
const client::traps::TrapOid* getTemperatureEventOID(const eventData& event);
/// MemMultiBit is out of reach: "uncorrectable ECC" holds "correctable ECC".
const client::traps::TrapOid* getMemoryEventOID(const eventData& event);
const client::traps::TrapOid* getVoltageEventOID(const eventData& event);
const client::traps::TrapOid* getPowerSupplyEventOID(const eventData& event);
const client::traps::TrapOid* getProcessorEventOID(const eventData& event);
const client::traps::TrapOid* getDiscreteCoolingEventOID(const eventData& event);
const client::traps::TrapOid* getDiscreteVoltageEventOID(const eventData& event);
const client::traps::TrapOid* getCoolingDeviceEventOID(const eventData& event);
/// Managers know these two tests the wrong way round: nearly every event gives IntrusionCleared, and LanLeashLost is
/// out of reach.
const client::traps::TrapOid* getChassisEventOID(const eventData& event);
const client::traps::TrapOid* getPGSurgeLoopEventOID(const eventData& event);

/// Copies `length` sub-identifiers.
void copyOID(unsigned long* to, const unsigned long* from, int length);

namespace client::traps {

/// How the events of a group become traps.
struct TrapGroup {
    enum Objects { two, four, fourOfSlot };

    int group;
    const TrapOid* (*chooseOid)(const eventData& event);
    Objects objects;
    bool countsForHealth = false;
    SubId arc[2] = {}; ///< of the table, below the base
};

/// Null for a group whose events make no trap.
const TrapGroup* findTrapGroup(int group);

/// Makes traps of events. The names of the three objects of a device live on from trap to trap: a slot's trap sends
/// its own names with the last two sub-identifiers of the trap before it.
class TrapMaker {
public:
    /// Text and severity behind the trap's name.
    static Trap makeTwoObjects(const eventData& event, const TrapOid& oid);
    /// Text, and severity, description and id of the device.
    Trap makeFourObjects(const TrapGroup& group, const eventData& event, const TrapOid& oid);

private:
    void nameObjects(const TrapGroup& group, int row);

    ObjectOid deviceId{};
    ObjectOid description{};
    ObjectOid severity{};
};

} // namespace client::traps
