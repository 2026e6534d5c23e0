#include "client/groups/clDiscreteGroups.hpp"

#include "client/door/Functions.hpp"
#include "tests/client/ClientFixture.hpp"

#include <cstdlib>

namespace {

using namespace client::status;
using client::groups::DiscreteColumn;

const std::string fromFull =
    "State changed from Full or Degraded Redundancy to Non-Redunduncy with Sufficient Resources";
const std::string fromInsufficient =
    "State changed from Insufficient Resources to Non-Redundancy with Sufficient Resources";
const std::string degradedFromFull = "State changed from Full Redundancy to Redundancy Degraded";
const std::string degradedFromLost = "State changed from Redundancy Lost to Redundancy Degraded";

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
             Case{powerSupplyWords, "PRESENT", "critical"},
             Case{discreteCoolingWords, "performance is lagging", "ok"},
             Case{driveSlotWords, "PREDICTIVE_FAILURE", "ok"},
             Case{miscSensorWords, "BATTERY_FAILED,BATTERY_LOW", "critical"},
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
        std::string text = out ? out : "none";
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
