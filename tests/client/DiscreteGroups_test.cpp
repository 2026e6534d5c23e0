#include "client/groups/clDiscreteGroups.hpp"

#include "client/door/Functions.hpp"
#include "common/Util.hpp"
#include "tests/client/ClientFixture.hpp"

#include <cstdlib>

namespace {

const std::string fromFull =
    "State changed from Full or Degraded Redundancy to Non-Redunduncy with Sufficient Resources";
const std::string fromInsufficient =
    "State changed from Insufficient Resources to Non-Redundancy with Sufficient Resources";
const std::string degradedFromFull = "State changed from Full Redundancy to Redundancy Degraded";
const std::string degradedFromLost = "State changed from Redundancy Lost to Redundancy Degraded";

/// The words of one group, bars between them. A lone word gives its class's status, in the string and in the number.
struct Words {
    const char* group;
    const StatusWords& words;
    std::string ok, nonCritical, critical, warning;
};

const Words groupWords[] = {
    {"power supply", powerSupplyWords,
     "power supply's presence has been detected|Power Supply Presence Detected|"
     "power supply has recovered from the failure|predictive power supply fault has been cleared|"
     "power supply's input (AC/DC) has been regained|All Deasserted",
     "predictive failure has been detected for the power supply|Configuration Error",
     "power supply has suffered a failure|PRESENT",
     "power supply's input (AC/DC) has been lost|Power Supply Input (AC/DC) Lost"},
    {"redundancy", redundancyWords, "Redundancy Regained|OK|Full Redundancy|All Deasserted",
     "Redundancy Degraded|" + degradedFromFull + "|" + degradedFromLost,
     "Redundancy Lost|" + fromFull + "|" + fromInsufficient + "|Non-Redundancy with Insufficient Resources", ""},
    {"voltage", discreteVoltageWords,
     "performance has been met|State Deasserted|State Not Asserted|Nothing Asserted|OK", "",
     "performance is lagging|State Asserted", ""},
    {"cooling", discreteCoolingWords,
     "Redundancy Regained|OK|Full Redundancy|All Deasserted|DEVICE_INSERTED/PRESENT|Device Inserted/Present|"
     "Nothing Asserted|State Not Asserted|State Deasserted|performance has been met|"
     // those of its last class, which are healthy by themselves
     "Redundancy Lost|performance is lagging|Device Removed/Absent|State Asserted|"
     "Non-Redundancy with Insufficient Resources|" +
         fromFull + "|" + fromInsufficient,
     "Redundancy Degraded|" + degradedFromFull + "|" + degradedFromLost, "", ""},
    {"drive slot", driveSlotWords,
     "Device Inserted/Present|Device Removed/Absent|reports the device has been removed or is absent|DRIVE_PRESENCE|"
     "DEVICE_REMOVED/DEVICE_ABSENT|ALL_DEASSERTED|All Deasserted|READY_FOR_INSERTION/REMOVAL|PREARED_FOR_OPEERATION|"
     "PREPARED_FOR_OPERATION|DEVICE_INSERTED/PRESENT|PREDICTIVE_FAILURE|HOT_SPARE|OK|"
     "CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS",
     "",
     "IN_CRITICAL_ARRAY|IN_FAILED_ARRAY|REBUILD/REMAP_IN_PROGRESS|DEVICE_FAULT|Device Fault|Drive Fault|DRIVE_FAULT",
     ""},
    {"processor", discreteProcessorWords,
     "ALL_DEASSERTED|All Deasserted|OK|STATE_DEASSERTED|State Deasserted|THREMAL_PRESENCE_DETECTED|"
     "PROCESSOR_PRESENCE_DETECTED|Processor Presence Detected|PROCESSOR_DISABLED|PROCESSOR_AUTOMATICALLY_THROTTLED",
     "CONFIGURATION_ERROR",
     "IERR|THERMAL_TRIP|FRB1/BIST_FAILURE|FRB2/HANG_IN_POST_FAILURE|CPU_DIDNT_START|"
     "SMBIOS_UNCORRECTABLE_CPU-COMPLEX_ERROR",
     ""},
    {"memory", discreteMemoryWords,
     "ALL_DEASSERTED|All Deasserted|OK|STATE_DEASSERTED|State Deasserted|PARITY|MEMORY_DEVICE_DISABLED|"
     "CORRECTABLE_ECC_LOGGING_LIMIT_REACHED|PRESENCE_DETECTED|SPARE",
     "CORRECTABLE_ECC|CONFIGURATION_ERROR", "UNCORRECTABLE_ECC|MEMORY_SCRUB_FAILED", ""},
    {"miscellaneous", miscSensorWords,
     "ALL_DEASSERTED|All Deasserted|OK|STATE_DEASSERTED|State Deasserted|"
     "reports the device has been removed or is absent|Device Inserted/Present|Device Removed/Absent|DRIVE_PRESENCE|"
     "DEVICE_REMOVED/DEVICE_ABSENT|READY_FOR_INSERTION/REMOVAL|PREARED_FOR_OPEERATION|PREPARED_FOR_OPERATION|"
     "DEVICE_INSERTED/PRESENT|PREDICTIVE_FAILURE|HOT_SPARE|CONSISTENCY_CHECK/PARITY_CHECK_IN_PROGRESS|"
     "SLEEP_BUTTON_PRESSED|RESET_BUTTON_PRESSED|FRU_LATCH_OPEN|FRU_SERVICE_REQUEST_BUTTON_PRESSED|TIMER_EXPIRED|"
     "HARD_RESET|POWER_DOWN|POWER_CYCLE|TIMER_INTERRUPT|ENTITY_PRESENT|ENTITY_ABSENT|ENTITY_DISABLED|"
     "BATTERY_PRESENCE_DETECTED",
     "GENERAL_CHASSIS_INTRUSION|DRIVE_BAY_INTRUSION|I/O_CARD_AREA_INTRUSION|PROCESSOR_AREA_INTRUSION|LAN_LEASH_LOST|"
     "UNAUTHORIZED_DOCK|FAN_AREA_INTRUSION|FRONT_PANEL_NMI/DIAGNOSTIC_INTERRUPT|BUS_TIMEOUT|I/O_CHANNEL_CHECK_NMI|"
     "SOFTWARE_NMI|EISA_FAIL_SAFE_TIMEOUT|BUS_CORRECTABLE_ERROR|BUS_DEGRADED|BATTERY_LOW",
     "IN_CRITICAL_ARRAY|IN_FAILED_ARRAY|REBUILD/REMAP_IN_PROGRESS|Drive Fault|DRIVE_FAULT|DEVICE_FAULT|Device Fault|"
     "BUS_FATAL_ERROR|PCI_PERR|PCI_SERR|BUS_UNCORRECTABLE_ERROR|FATAL_NMI|BATTERY_FAILED",
     ""},
};

TEST(DiscreteWords, EveryWordGivesItsStatusAndThereAreNoOthers)
{
    for (const Words& group : groupWords) {
        std::size_t count = 0;
        for (const auto& [list, status] : {std::pair{group.ok, "ok"},
                                           {group.nonCritical, "nonCritical"},
                                           {group.critical, "critical"},
                                           {group.warning, "warning"}})
            for (const std::string& word : Util::split(list, "|")) {
                EXPECT_STREQ(mapValueToStatus(word, group.words), status) << group.group << ": " << word;
                ++count;
            }
        EXPECT_EQ(group.words.words.size(), count) << group.group;
    }
}

TEST(DiscreteWords, WordsOfATextAreTakenInTurn)
{
    struct Case {
        const StatusWords& words;
        std::string text;
        const char* status;
    };
    const std::string padding(505, ' ');
    for (const Case& each : {
             Case{redundancyWords, "Redundancy Degraded,Full Redundancy", "nonCritical"},
             Case{redundancyWords, "Redundancy Lost,Non-Redundancy with Sufficient Resources", "warning"},
             Case{redundancyWords, "Redundancy Lost, Non-Redundancy with Sufficient Resources", "critical"},
             Case{redundancyWords, "OK, Redundancy Lost,no such word", "critical"},
             Case{discreteCoolingWords, "Redundancy Lost,Non-Redundancy with Sufficient Resources", "warning"},
             Case{discreteCoolingWords, "Redundancy Lost,Non-Redundancy with Insufficient Resources", "critical"},
             Case{discreteCoolingWords, "Redundancy Degraded,State Asserted", "ok"},
             Case{powerSupplyWords, "power supply has suffered a failure,Power Supply Input (AC/DC) Lost", "warning"},
             Case{powerSupplyWords, "Power Supply Input (AC/DC) Lost,All Deasserted,Configuration Error", "warning"},
             Case{driveSlotWords, "IN_FAILED_ARRAY,DRIVE_PRESENCE", "critical"},
             Case{driveSlotWords, "IN_FAILED_ARRAY,no such word", "unknown"},
             Case{discreteMemoryWords, "UNCORRECTABLE_ECC,CORRECTABLE_ECC", "critical"},
             Case{discreteMemoryWords, "CORRECTABLE_ECC,PRESENCE_DETECTED", "nonCritical"},
             Case{discreteProcessorWords, ",, ,  OK,", "ok"},
             Case{discreteProcessorWords, "OK ", "unknown"},
             Case{discreteProcessorWords, padding.substr(1) + "IERR,OK", "critical"},
             Case{discreteProcessorWords, padding + "  OK,,IERR", "ok"},
             Case{powerSupplyWords, "", "unknown"},
             Case{powerSupplyWords, "READING_UNAVAILABLE", "unknown"},
         })
        EXPECT_STREQ(mapValueToStatus(each.text, each.words), each.status) << each.text;
}

TEST(DiscreteWords, PowerUnitsHaveNumbersForStatusAndRedundancy)
{
    struct Case {
        std::string text;
        int status, redundancy;
    };
    for (const Case& each :
         {Case{"", -1, 2}, Case{" , ", -1, 2}, Case{"READING_UNAVAILABLE", 2, 2}, Case{"OK", 3, 3},
          Case{"Redundancy Regained", 3, 3}, Case{"All Deasserted", 3, 8},
          Case{"All Deasserted,Redundancy Degraded", 4, 8}, Case{"Full Redundancy", 3, 3},
          Case{"Redundancy Degraded,Full Redundancy", 4, 4}, Case{degradedFromFull, 4, 4}, Case{degradedFromLost, 4, 4},
          Case{"Redundancy Lost", 5, 5}, Case{"Redundancy Lost,OK", 5, 5}, Case{fromFull, 5, 6},
          Case{fromInsufficient, 5, 6}, Case{"Redundancy Lost,Non-Redundancy with Sufficient Resources", 4, 5},
          Case{"Redundancy Lost,Non-Redundancy with Insufficient Resources", 5, 6}}) {
        EXPECT_EQ(mapValueToStatusEnum(each.text, redundancyWords), each.status) << each.text;
        EXPECT_EQ(mapValueToRedundancyStatus(each.text), each.redundancy) << each.text;
    }
}

/// A group, its first column, and the name of a row whose sensor has none.
struct GroupCase {
    int type;
    _SMAttribute first;
    std::unique_ptr<BaseAccessor> (*make)();
    const char* defaultName;
};

template<class Group>
std::unique_ptr<BaseAccessor> made()
{
    auto group = std::make_unique<Group>();
    EXPECT_EQ(group->init(), 0);
    return group;
}

const GroupCase groupCases[] = {
    {8, POWERSUPPLY_DEVICEID, made<powerSupply>, "HW_PowerSupply"},
    {9, POWERUNIT_DEVICEID, made<powerUnit>, "HW_PowerUnit"},
    {10, COOLINGUNIT_DEVICEID, made<coolingUnit>, "HW_CoolingUnit"},
    {2, DISCRETEVOLTAGE_DEVICEID, made<discreteVoltage>, "HW_DiscreteVoltage"},
    {4, DISCRETECOOLING_DEVICEID, made<discreteCooling>, "HW_DiscreteCooling"},
    {13, DRIVESLOT_PRESENCE_SENSOR_DEVICEID, made<driveSlot>, "Drive Slot Presence Sensor"},
    {41, MISCELLANEOUS_SENSOR_DEVICEID, made<miscSensor>, "HW_MiscellaneousSensor"},
    {7, DISCRETE_PROCESSOR_DEVICEID, made<discreteProcessor>, "HW_DiscreteProcessor"},
    {12, DISCRETE_MEMORY_DEVICEID, made<discreteMemory>, "HW_DiscreteMemory"},
};

class DiscreteGroups : public ClientFixture {
protected:
    static _SMAttribute at(const GroupCase& group, DiscreteColumn column)
    {
        return static_cast<_SMAttribute>(group.first + static_cast<int>(column));
    }
    static std::string textOf(BaseAccessor& group, int (BaseAccessor::*get)(_SMAttribute, int, char*&),
                              _SMAttribute attribute, int row = 0)
    {
        char* out = nullptr;
        EXPECT_EQ((group.*get)(attribute, row, out), 0);
        const std::string text = out ? out : "none";
        std::free(out);
        return text;
    }
};

TEST_F(DiscreteGroups, MissingRowsAndForeignAttributesHaveTheirResults)
{
    for (const GroupCase& each : groupCases) {
        addSensor({.type = each.type, .linearization = 1});
        const auto group = each.make();
        long number = 0;
        char* text = nullptr;
        EXPECT_EQ(group->getIntInfo(at(each, DiscreteColumn::DeviceId), 1, number), 25);
        EXPECT_EQ(group->getStrInfo(at(each, DiscreteColumn::Description), -1, text), 25);
        EXPECT_EQ(group->getIntData(at(each, DiscreteColumn::Status), 1, number), 25);
        EXPECT_EQ(number, 3);
        EXPECT_EQ(group->getStrData(at(each, DiscreteColumn::StatusString), 1, text), 25);
        EXPECT_EQ(group->getIntInfo(at(each, DiscreteColumn::Status), 0, number), 9);
        EXPECT_EQ(group->getStrInfo(at(each, DiscreteColumn::StatusString), 0, text), 9);
        EXPECT_EQ(group->getIntData(at(each, DiscreteColumn::DeviceId), 0, number), 9);
        EXPECT_EQ(group->getStrData(at(each, DiscreteColumn::Description), 0, text), 9);
        EXPECT_EQ(group->setIntData(at(each, DiscreteColumn::Status), 0, 1), 4);
    }
}

TEST_F(DiscreteGroups, OnlyVoltagesAndFansLeaveOutLinearSensorsAndNamelessOnesHaveThatOfTheGroup)
{
    for (const GroupCase& each : groupCases) {
        cache_map.clear();
        addSensor({.number = 1, .type = each.type, .name = "linear", .linearization = 0});
        addSensor({.number = 2, .type = each.type, .name = "", .linearization = 1});
        const auto group = each.make();
        const bool nonLinearOnly = each.type == 2 || each.type == 4;
        ASSERT_EQ(group->getCount(), nonLinearOnly ? 1 : 2) << each.defaultName;
        EXPECT_STREQ(group->getDesc(group->getCount() - 1), each.defaultName);
    }
}

TEST_F(DiscreteGroups, MiscellaneousCollectsItsTypesInOrderAndReadsThresholdsOfOneOnly)
{
    const std::vector<int> types = {5, 11, 15, 16, 18, 19, 20, 21, 22, 24, 33, 35, 37, 40, 41, 243};
    for (int type = 255; type >= 0; --type)
        addSensor({.number = type, .type = type, .name = std::to_string(type)});
    miscSensor group;
    ASSERT_EQ(group.init(), 0);
    ASSERT_EQ(group.getCount(), 16);
    for (int row = 0; row < 16; ++row)
        EXPECT_EQ(group.getDesc(row), std::to_string(types[static_cast<std::size_t>(row)]));
    for (const std::string& query : sdk.asked)
        EXPECT_TRUE(query.find("/THRESHOLD/") == std::string::npos || query.starts_with("/BMC/SENSOR[15]/")) << query;
}

TEST_F(DiscreteGroups, AReadThatFailsShowsTheTextOfTheStart)
{
    const Sensor sensor{.type = 12, .value = "STATE_DEASSERTED"};
    addSensor(sensor);
    discreteMemory group;
    group.init();
    EXPECT_EQ(textOf(group, &BaseAccessor::getStrData, DISCRETE_MEMORY_STATUSSTRING), "Healthy");
    changeReading(sensor, "no such word");
    EXPECT_EQ(textOf(group, &BaseAccessor::getStrData, DISCRETE_MEMORY_STATUSSTRING), "Unavailable");
    cache_map.clear();
    sdk.answers.clear();
    EXPECT_EQ(textOf(group, &BaseAccessor::getStrData, DISCRETE_MEMORY_STATUSSTRING), "Healthy");
}

} // namespace
