#include "client/groups/clDiscreteGroups.hpp"

#include "client/door/Functions.hpp"
#include "tests/client/ClientFixture.hpp"

namespace {

using namespace client::status;

/// Texts that no controller's states make, or that hang on how a list is taken apart; the others are held against
/// ipmitool.
TEST(DiscreteWords, ListsAreTakenWordByWord)
{
    const std::string padding(505, ' ');
    const std::tuple<const StatusWords&, std::string, const char*> cases[] = {
        {redundancyWords, "Redundancy Lost,Non-Redundancy with Sufficient Resources", "warning"},
        {redundancyWords, "Redundancy Lost, Non-Redundancy with Sufficient Resources", "critical"},
        {redundancyWords, "OK, Redundancy Lost,no such word", "critical"},
        {discreteCoolingWords, "performance is lagging", "ok"},
        {powerSupplyWords, "Power Supply Input (AC/DC) Lost,All Deasserted,Configuration Error", "warning"},
        {driveSlotWords, "PREDICTIVE_FAILURE", "ok"},
        {driveSlotWords, "IN_FAILED_ARRAY,no such word", "unknown"},
        {discreteProcessorWords, ",, ,  OK,", "ok"},
        {discreteProcessorWords, "OK ", "unknown"},
        {discreteProcessorWords, padding.substr(1) + "IERR,OK", "critical"},
        {discreteProcessorWords, padding + "  OK,,IERR", "ok"},
        {powerSupplyWords, "PRESENT", "critical"},
        {powerSupplyWords, "READING_UNAVAILABLE", "unknown"},
    };
    for (const auto& [words, text, status] : cases)
        EXPECT_STREQ(mapValueToStatus(text, words), status) << text;
    const std::tuple<const char*, int, int> ofPowerUnits[] = {
        {"", -1, 2},
        {" , ", -1, 2},
        {"READING_UNAVAILABLE", 2, 2},
        {"Redundancy Regained", 3, 3},
        {"All Deasserted", 3, 8},
        {"All Deasserted,Redundancy Degraded", 4, 8},
        {"State changed from Full or Degraded Redundancy to Non-Redunduncy with Sufficient Resources", 5, 6},
    };
    for (const auto& [text, status, redundancy] : ofPowerUnits) {
        EXPECT_EQ(mapValueToStatusEnum(text, redundancyWords), status) << text;
        EXPECT_EQ(mapValueToRedundancyStatus(text), redundancy) << text;
    }
    constexpr const char* offsetThree = "Redundancy Lost,Non-Redundancy with Sufficient Resources";
    EXPECT_EQ(mapValueToRedundancyStatus(offsetThree), 5);
    EXPECT_EQ(mapValueToRedundancyStatus(offsetThree, true), 6);
}

/// The SDK's words of a sensor of `readingType` and `sensorType`.
TEST(DiscreteWords, InAllStatesTheWorstCountsByOneList)
{
    const std::tuple<int, int, const StatusWords&, const char*, const char*> cases[] = {
        {0x6F, 0x07, discreteProcessorWords, "THERMAL_TRIP, PROCESSOR_PRESENCE_DETECTED", "critical"},
        {0x6F, 0x07, discreteProcessorWords, "PROCESSOR_PRESENCE_DETECTED, no such word", "ok"},
        {0x6F, 0x0C, discreteMemoryWords, "UNCORRECTABLE_ECC, SPARE", "critical"},
        {0x6F, 0x08, powerSupplyWords, "POWER_SUPPLY_FAILURE_DETECTED, POWER_SUPPLY_INPUT_LOST", "critical"},
        {0x6F, 0x08, powerSupplyWords, "READING_UNAVAILABLE", "unknown"},
        {0x6F, 0x09, redundancyWords, "POWER_UNIT_FAILURE_DETECTED", "critical"},
        {0x6F, 0x0D, driveSlotWords, "DRIVE_PRESENCE, PREDICTIVE_FAILURE", "nonCritical"},
        {0x6F, 0x0D, driveSlotWords, "REBUILD/REMAP_ABORTED", "critical"},
        {0x6F, 0x13, miscSensorWords, "FATAL_NMI", "nonRecoverable"},
        {0x6F, 0x25, miscSensorWords, "ENTITY_ABSENT", "ok"},
        {0x08, 0x04, discreteCoolingWords, "DEVICE_REMOVED/DEVICE_ABSENT", "unknown"},
        {0x08, 0x0D, driveSlotWords, "DEVICE_REMOVED/DEVICE_ABSENT", "ok"},
        {0x03, 0x02, discreteVoltageWords, "STATE_ASSERTED", "critical"},
        {0x03, 0x16, miscSensorWords, "STATE_ASSERTED", "unknown"},
        {0x72, 0xC3, miscSensorWords, "UNKNOWN", "unknown"},
        {0x6F, 0x10, miscSensorWords, "ALL_DEASSERTED", "ok"},
    };
    for (const auto& [readingType, sensorType, words, states, status] : cases)
        EXPECT_STREQ(
            judgeStates(states,
                        ipmi::statesOf(static_cast<std::uint8_t>(readingType), static_cast<std::uint8_t>(sensorType)),
                        words),
            status)
            << states;
}

/// A group, and the name of a row whose sensor has none.
struct GroupCase {
    int type;
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
    {8, made<powerSupply>, "HW_PowerSupply"},         {9, made<powerUnit>, "HW_PowerUnit"},
    {10, made<coolingUnit>, "HW_CoolingUnit"},        {2, made<discreteVoltage>, "HW_DiscreteVoltage"},
    {4, made<discreteCooling>, "HW_DiscreteCooling"}, {13, made<driveSlot>, "Drive Slot Presence Sensor"},
    {41, made<miscSensor>, "HW_MiscellaneousSensor"}, {7, made<discreteProcessor>, "HW_DiscreteProcessor"},
    {12, made<discreteMemory>, "HW_DiscreteMemory"},
};

using DiscreteGroups = ClientFixture;

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
    EXPECT_EQ(strData(group, DISCRETE_MEMORY_STATUSSTRING), "Healthy");
    changeReading(sensor, "no such word");
    EXPECT_EQ(strData(group, DISCRETE_MEMORY_STATUSSTRING), "Unavailable");
    cache_map.clear();
    sdk.answers.clear();
    EXPECT_EQ(strData(group, DISCRETE_MEMORY_STATUSSTRING), "Healthy");
}

} // namespace
