#include "client/groups/clChassisInfo.hpp"
#include "client/groups/clDiscreteGroups.hpp"
#include "client/groups/clInventory.hpp"
#include "client/groups/clThresholdProbes.hpp"
#include "client/words/Numbers.hpp"
#include "common/Policy.hpp"
#include "tests/client/ClientFixture.hpp"

// What the groups make of their sources, as far as no board of the system tests shows it.

namespace {

using namespace client::status;

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

template<class Group>
std::unique_ptr<BaseAccessor> made()
{
    auto group = std::make_unique<Group>();
    EXPECT_EQ(group->init(), 0);
    return group;
}

using Groups = ClientFixture;

TEST_F(Groups, StatusFollowsTheReadingWhileTheRowKeepsThatOfTheStart)
{
    const Sensor sensor;
    addSensor(sensor);
    const auto group = made<voltageProbe>();
    changeReading(sensor, "14.5");
    EXPECT_EQ(intData(*group, VOLTAGE_STATUS), 4);
    EXPECT_EQ(strData(*group, VOLTAGE_STATUSSTRING), "Critical");
    changeReading(sensor, "READING_UNAVAILABLE");
    EXPECT_EQ(intData(*group, VOLTAGE_READING), noValue);
    EXPECT_EQ(strData(*group, VOLTAGE_STATUSSTRING), "Unavailable");
    EXPECT_EQ(group->getGroupStatus(), 2);
    forget();
    EXPECT_EQ(intData(*group, VOLTAGE_READING), 12050) << "that of the start, since the read failed";
}

TEST_F(Groups, AControllerThatIsBusyAtTheStartGivesNoReadingAndNoTrouble)
{
    const Sensor sensor;
    addSensor(sensor);
    sdk.answers.erase(sensor.path() + "/INTERPRET_SENSOR_VALUE");
    const auto group = made<voltageProbe>();
    EXPECT_EQ(group->getGroupStatus(), 1) << "less than healthy, so that the system's status does not move";
    EXPECT_EQ(intData(*group, VOLTAGE_READING), noValue);
    EXPECT_EQ(intData(*group, VOLTAGE_STATUS), 1);
    changeReading(sensor, "14.5");
    EXPECT_EQ(intData(*group, VOLTAGE_STATUS), 4);
}

/// A group, and what a row is called whose sensor has no name.
struct GroupCase {
    int type;
    std::unique_ptr<BaseAccessor> (*make)();
    const char* name;
    bool takesLinear = true, takesOthers = true;
};

constexpr GroupCase groupCases[] = {{1, made<temperatureProbe>, "HW_TemperatureSensor"},
                                    {2, made<voltageProbe>, "HW_VoltageSensor", true, false},
                                    {3, made<currentProbe>, "HW_CurrentSensor", true, false},
                                    {4, made<coolingDevice>, "HW_CoolingDevice", true, false},
                                    {8, made<powerSupply>, "HW_PowerSupply"},
                                    {9, made<powerUnit>, "HW_PowerUnit"},
                                    {10, made<coolingUnit>, "HW_CoolingUnit"},
                                    {2, made<discreteVoltage>, "HW_DiscreteVoltage", false},
                                    {4, made<discreteCooling>, "HW_DiscreteCooling", false},
                                    {13, made<driveSlot>, "Drive Slot Presence Sensor"},
                                    {41, made<miscSensor>, "HW_MiscellaneousSensor"},
                                    {7, made<discreteProcessor>, "HW_DiscreteProcessor"},
                                    {12, made<discreteMemory>, "HW_DiscreteMemory"}};

TEST_F(Groups, LinearAndNonLinearSensorsOfVoltagesAndFansPartAndNamelessOnesHaveTheNameOfTheGroup)
{
    for (const GroupCase& each : groupCases) {
        SCOPED_TRACE(each.name);
        forget();
        addSensor({.number = 1, .type = each.type, .name = "", .linearization = 0});
        addSensor({.number = 2, .type = each.type, .name = "", .linearization = 1});
        const auto group = each.make();
        ASSERT_EQ(group->getCount(), each.takesLinear + each.takesOthers);
        EXPECT_STREQ(group->getDesc(group->getCount() - 1), each.name);
    }
    forget();
    addSensor({.type = 2, .name = "BB_+12.0V_AUX"});
    EXPECT_STREQ(made<voltageProbe>()->getDesc(0), "BB_+12.0V");
}

TEST_F(Groups, FiguresOfTemperaturesAreInTenthsUpToTheGreatestNumberAndBoundsAreConvertedByUnit)
{
    for (const auto& [unit, shown] : {std::pair{0, 300}, {1, 3000}, {2, 270}, {3, 270}, {4, 0}}) {
        forget();
        addSensor(
            {.type = 1, .value = "2000000000", .bounds = {"NOT SUPPORTED", "1", "2", "3", "300", "5"}, .unit = unit});
        const auto group = made<temperatureProbe>();
        EXPECT_EQ(intData(*group, TEMPERATURE_UPPERCRITICALTHRESHOLD), shown) << unit;
        EXPECT_EQ(intData(*group, TEMPERATURE_LOWERCRITICALTHRESHOLD), noValue);
        EXPECT_EQ(intData(*group, TEMPERATURE_READING), greatestValue);
        EXPECT_EQ(intInfo(*group, TEMPERATURE_RESOLUTION), 300);
        EXPECT_EQ(intInfo(*group, TEMPERATURE_TOLERANCE), 20);
        EXPECT_EQ(intInfo(*group, TEMPERATURE_ACCURACY), 7);
    }
}

TEST_F(Groups, FansUseTheRuleOfTheirBoard)
{
    addSensor({.type = 4, .value = "399", .bounds = {"200", "400", "100", "900", "950", "990"}});
    for (const auto& [model, word] : {std::pair{"Larch-1", "Critical"}, {"Larch-7", "Warning"}}) {
        sdk.answer("/BIOS/PlatformID", model);
        cache_map.clear();
        EXPECT_EQ(strData(*made<coolingDevice>(), COOLINGDEVICE_STATUSSTRING), word);
    }
}

TEST_F(Groups, BoundsAreNotSetAndGroupsNotFilledHaveNoRow)
{
    addSensor({.type = 2});
    const auto volts = made<voltageProbe>();
    EXPECT_EQ(volts->setIntData(VOLTAGE_UPPERCRITICALTHRESHOLD, 1, 1), 25);
    EXPECT_EQ(volts->setIntData(VOLTAGE_READING, 0, 1), 9);
    EXPECT_EQ(volts->setIntData(VOLTAGE_UPPERCRITICALTHRESHOLD, 0, 1), 0);
    coolingDevice fans;
    EXPECT_EQ(intData(fans, COOLINGDEVICE_READING), -30);
}

TEST_F(Groups, MiscellaneousCollectsItsTypesInOrderAndReadsThresholdsOfOneOnly)
{
    const std::vector<int> types = {5, 11, 15, 16, 18, 19, 20, 21, 22, 24, 33, 35, 37, 40, 41, 243};
    for (int type = 255; type >= 0; --type)
        addSensor({.number = type, .type = type, .name = std::to_string(type)});
    const auto group = made<miscSensor>();
    ASSERT_EQ(group->getCount(), 16);
    for (int row = 0; row < 16; ++row)
        EXPECT_EQ(group->getDesc(row), std::to_string(types[static_cast<std::size_t>(row)]));
    for (const std::string& query : sdk.asked)
        EXPECT_TRUE(query.find("/THRESHOLD/") == std::string::npos || query.starts_with("/BMC/SENSOR[15]/")) << query;
}

TEST_F(Groups, OnlyAnOpenLidIsCritical)
{
    for (const auto& [eventType, reading, status] : {std::tuple{0x6F, "0 C0 0 0", 2},
                                                     {0x6F, "0 C0 1 0", 4},
                                                     {0x6F, "ff C0 fe ff", 2},
                                                     {0x6F, "0 E0 1 0", 2},
                                                     {0x6F, "0 C0", 2},
                                                     {0x6F, "", 2},
                                                     {0x03, "0 C0 1 0", 2},
                                                     {0x03, "0 C0 2 0", 4},
                                                     {0x03, "0 E0 2 0", 2},
                                                     {0x08, "0 C0 3 0", 2}}) {
        forget();
        addSensor({.number = 0x72, .type = 5, .recordType = 3}); // nobody can read an event-only sensor
        addSensor({.number = 0x73, .type = 5, .eventType = eventType});
        sdk.answer("/BMC/SENSOR[115]/VALUE", reading);
        EXPECT_EQ(intData(*made<chassisInfo>(), CHASSIS_STATUS), status) << eventType << ' ' << reading;
    }
}

/// A firmware table of two processors and a memory array with one module in two places.
class Inventory : public ClientFixture {
protected:
    Inventory()
    {
        sdk.answer("/SMBIOS/ProcessorInfo/TotalNoOfProcessorPresent", "2");
        for (const std::string path : {"/SMBIOS/ProcessorInfo[1]", "/SMBIOS/ProcessorInfo[2]"})
            put(path, "ProcessorFamily", "Xeon");
        sdk.answers["/SMBIOS/MemoryArray"][array] = branch();
        sdk.answer(array + "/TotalNoOfDevicePresent", "1");
        put(array, "Use", "System memory");
        putModule(1, {{"Size", "16384"}});
        putModule(2, {{"Size", "16384"}}, "False");
    }

    /// `path` has a leaf of that name.
    void put(const std::string& path, const std::string& name, const std::string& value)
    {
        sdk.answers[path][path + "/" + name] = ScriptedBackend::leaf({value});
    }
    void putModule(int number, const std::map<std::string, std::string>& leaves, const char* presence = "True")
    {
        const std::string path = array + "/MemoryDevice[" + std::to_string(number) + "]";
        sdk.answers[array + "/MemoryDevice"][path] = branch();
        sdk.answer(path + "/DevicePresent", presence);
        for (const auto& [name, value] : leaves)
            put(path, name, value);
    }
    static _XNode branch() { return {.mType = NODE_NONLEAF, .mXNodeList = {}, .mOptionMap = {}}; }

    const std::string array = "/SMBIOS/MemoryArray[1]";
};

TEST_F(Inventory, AnEventFindsTheProcessorThatItsSensorAloneWatches)
{
    const auto record = [](const char* owner, const char* lun, const char* sensor) {
        return ScriptedBackend::leaf(
            {std::string("1 0 51 2 20 ") + owner + " " + lun + " " + sensor + " 3 1 67 40 7 6F"});
    };
    ResultMap& records = sdk.answers["/BMC/SDR/RECORD_TYPE[2]"];
    records = {{"/BMC/SDR[1]", record("22", "31", "9A")}};
    const auto group = made<processorDevice>();
    EXPECT_EQ(group->getIndex(0x019A2201), 0) << "it watches both";
    records["/BMC/SDR[2]"] = record("20", "0", "9A");
    records["/BMC/SDR[3]"] = record("20", "0", "9B");
    cache_map.clear();
    EXPECT_EQ(group->getIndex(0x019A2201), 1);
    EXPECT_EQ(group->getIndex(0x009A2000), 2) << "the same number on another controller";
    EXPECT_EQ(group->getIndex(0x009B2000), 0) << "there is no third processor";
}

TEST_F(Inventory, AnEventFindsTheOneModuleThatIsCalledAsItsSensor)
{
    putModule(1, {{"DeviceLocator", "DIMM_A1"}, {"BankLocator", "Bank 0"}});
    putModule(2, {{"DeviceLocator", "DIMM_B1"}, {"BankLocator", "Bank 0"}});
    putModule(3, {{"DeviceLocator", "DIMM_C1"}, {"BankLocator", "Node 1"}});
    memoryDevice group;
    group.init();
    ASSERT_EQ(group.getCount(), 3);
    for (const auto& [name, index] :
         {std::pair{"Dimm B1", 2}, {"node1", 3}, {"BANK 0", 0 /* two are called so */}, {"DIMM_B", 0}, {"--", 0}})
        EXPECT_EQ(group.findModule(name), index) << name;
}

TEST_F(Inventory, NamesSayWhatHasNoColumnAndNoTwoAreAlike)
{
    for (const std::string path : {"/SMBIOS/ProcessorInfo[1]", "/SMBIOS/ProcessorInfo[2]"})
        for (const auto& [name, value] : {std::pair{"SocketDesignation", "CPU"},
                                          {"Upgrade", "Socket SP5"},
                                          {"CoreCount", "96"},
                                          {"ThreadCount", "0"}})
            put(path, name, value);
    for (const auto& [number, bank, type] :
         {std::tuple{1, "P0", "DDR5"}, {2, "P1", "DDR5"}, {3, "P1", "DDR5"}, {4, "P0", "0X7f"}})
        putModule(number, {{"DeviceLocator", "DIMM 0"}, {"BankLocator", bank}, {"MemoryType", type}});
    const auto names = [this] {
        cache_map.clear();
        std::string list = strInfo(*made<processorDevice>(), PROC_DESCRIPTION);
        const auto modules = made<memoryDevice>();
        for (int row = 0; row < modules->getCount(); ++row)
            list += "; " + strInfo(*modules, MEMORYDEVICE_DESCRIPTION, row);
        return list;
    };
    EXPECT_EQ(names(), "CPU; DIMM 0; DIMM 0; DIMM 0; DIMM 0");
    const common::ScopedPolicy telling(common::Policy{.describesInventory = true, .tellsRowsApart = true});
    EXPECT_EQ(names(), "CPU (Socket SP5, 96 cores, number 1); DIMM 0 (DDR5, P0); DIMM 0 (DDR5, P1, number 2); "
                       "DIMM 0 (DDR5, P1, number 3); DIMM 0");
}

/// A number and a text of a group, as information or as data, and what a row that it has not results in.
struct Columns {
    std::unique_ptr<BaseAccessor> (*make)();
    long (*number)(BaseAccessor&, _SMAttribute, int);
    std::string (*text)(BaseAccessor&, _SMAttribute, int);
    _SMAttribute numeric, textual;
    int noRow = 25;
};

TEST_F(Inventory, MissingRowsAndForeignAttributesHaveTheirResults)
{
    addSensor({.type = 2});
    addSensor({.type = 10, .linearization = 1});
    for (const Columns& of : {Columns{made<voltageProbe>, intInfo, strInfo, VOLTAGE_DEVICEID, VOLTAGE_DESCRIPTION},
                              {made<voltageProbe>, intData, strData, VOLTAGE_READING, VOLTAGE_STATUSSTRING},
                              {made<coolingUnit>, intInfo, strInfo, COOLINGUNIT_DEVICEID, COOLINGUNIT_DESCRIPTION},
                              {made<coolingUnit>, intData, strData, COOLINGUNIT_STATUS, COOLINGUNIT_STATUSSTRING},
                              {made<processorDevice>, intInfo, strInfo, PROC_STATUS, PROC_DESCRIPTION, 22},
                              {made<memoryArray>, intInfo, strInfo, MEMORYARRAY_STATUS, MEMORYARRAY_TAG},
                              {made<memoryDevice>, intInfo, strInfo, MEMORYDEVICE_SIZE, MEMORYDEVICE_TAG}}) {
        const auto group = of.make();
        for (const int row : {-1, group->getCount(), 1 << 30}) {
            EXPECT_EQ(of.number(*group, of.numeric, row), -of.noRow);
            EXPECT_EQ(of.text(*group, of.textual, row), "! " + std::to_string(of.noRow));
        }
        EXPECT_EQ(of.number(*group, of.textual, 0), -9);
        EXPECT_EQ(of.text(*group, of.numeric, 0), "! 9");
    }
}

} // namespace
