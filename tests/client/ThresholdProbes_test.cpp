#include "client/groups/clThresholdProbes.hpp"

#include "client/words/Numbers.hpp"
#include "tests/client/ClientFixture.hpp"

namespace {

using client::groups::ThresholdProbe;

using Probes = ClientFixture;

TEST_F(Probes, StatusFollowsTheReadingWhileTheRowKeepsThatOfTheStart)
{
    const Sensor sensor;
    addSensor(sensor);
    voltageProbe group;
    group.init();
    changeReading(sensor, "14.5");
    EXPECT_EQ(intData(group, VOLTAGE_STATUS), 4);
    EXPECT_EQ(strData(group, VOLTAGE_STATUSSTRING), "Critical");
    changeReading(sensor, "READING_UNAVAILABLE");
    EXPECT_EQ(intData(group, VOLTAGE_READING), noValue);
    EXPECT_EQ(strData(group, VOLTAGE_STATUSSTRING), "Unavailable");
    EXPECT_EQ(group.getGroupStatus(), 2);
    cache_map.clear();
    sdk.answers.clear();
    EXPECT_EQ(intData(group, VOLTAGE_READING), 12050) << "that of the start, since the read failed";
}

TEST_F(Probes, AControllerThatIsBusyAtTheStartGivesNoReadingAndNoTrouble)
{
    const Sensor sensor;
    addSensor(sensor);
    sdk.answers.erase(sensor.path() + "/INTERPRET_SENSOR_VALUE");
    voltageProbe group;
    group.init();
    EXPECT_EQ(group.getGroupStatus(), 1) << "less than healthy, so that the system's status does not move";
    EXPECT_EQ(intData(group, VOLTAGE_READING), noValue);
    EXPECT_EQ(intData(group, VOLTAGE_STATUS), 1);
    changeReading(sensor, "14.5");
    EXPECT_EQ(intData(group, VOLTAGE_STATUS), 4);
}

TEST_F(Probes, NamesAreCutOrReplaced)
{
    for (const auto& [type, name, shown] : {std::tuple{2, "BB_+12.0V_AUX", "BB_+12.0V"},
                                            {2, "", "HW_VoltageSensor"},
                                            {3, "", "HW_CurrentSensor"},
                                            {1, "", "HW_TemperatureSensor"},
                                            {4, "", "HW_CoolingDevice"},
                                            {4, "System Fan 10", "System Fan 10"}}) {
        cache_map.clear();
        sdk.answers.clear();
        addSensor({.type = type, .name = name});
        voltageProbe volts;
        currentProbe amperes;
        temperatureProbe degrees;
        coolingDevice fans;
        ThresholdProbe* const groups[] = {nullptr, &degrees, &volts, &amperes, &fans};
        ASSERT_EQ(groups[type]->init(), 0);
        EXPECT_STREQ(groups[type]->getDesc(0), shown);
    }
}

TEST_F(Probes, FiguresOfTemperaturesAreInTenthsUpToTheGreatestNumber)
{
    const Sensor sensor{.type = 1, .value = "2000000000", .bounds = {"5", "10", "0", "60", "70", "80"}, .unit = 1};
    addSensor(sensor);
    temperatureProbe group;
    group.init();
    EXPECT_EQ(intData(group, TEMPERATURE_READING), greatestValue);
    EXPECT_EQ(intInfo(group, TEMPERATURE_RESOLUTION), 300);
    EXPECT_EQ(intInfo(group, TEMPERATURE_TOLERANCE), 20);
    EXPECT_EQ(intInfo(group, TEMPERATURE_ACCURACY), 7);
}

TEST_F(Probes, TemperatureBoundsAreConvertedByUnit)
{
    for (const auto& [unit, shown] : {std::pair{0, 300}, {1, 3000}, {2, 270}, {3, 270}, {4, 0}}) {
        cache_map.clear();
        sdk.answers.clear();
        addSensor({.type = 1, .bounds = {"NOT SUPPORTED", "1", "2", "3", "300", "5"}, .unit = unit});
        temperatureProbe group;
        group.init();
        EXPECT_EQ(intData(group, TEMPERATURE_UPPERCRITICALTHRESHOLD), shown) << unit;
        EXPECT_EQ(intData(group, TEMPERATURE_LOWERCRITICALTHRESHOLD), noValue);
    }
}

TEST_F(Probes, FansUseTheRuleOfTheirBoard)
{
    addSensor({.type = 4, .value = "399", .bounds = {"200", "400", "100", "900", "950", "990"}});
    for (const auto& [model, word] : {std::pair{"Larch-1", "Critical"}, {"Larch-7", "Warning"}}) {
        sdk.answer("/BIOS/PlatformID", model);
        cache_map.clear();
        coolingDevice group;
        group.init();
        EXPECT_EQ(strData(group, COOLINGDEVICE_STATUSSTRING), word);
    }
}

TEST_F(Probes, MissingRowsAndForeignAttributesHaveTheirResults)
{
    addSensor({.type = 2});
    voltageProbe volts;
    volts.init();
    coolingDevice fans;
    for (const int row : {-1, 1, 1 << 30}) {
        EXPECT_EQ(intInfo(volts, VOLTAGE_DEVICEID, row), -25);
        EXPECT_EQ(strData(volts, VOLTAGE_STATUSSTRING, row), "! 25");
        EXPECT_EQ(intData(fans, COOLINGDEVICE_READING, row), -30);
        EXPECT_EQ(volts.setIntData(VOLTAGE_UPPERCRITICALTHRESHOLD, row, 1), 25);
    }
    EXPECT_EQ(intInfo(volts, VOLTAGE_READING), -9);
    EXPECT_EQ(intData(volts, CURRENT_READING), -9);
    EXPECT_EQ(strInfo(volts, VOLTAGE_STATUSSTRING), "! 9");
    EXPECT_EQ(volts.setIntData(VOLTAGE_READING, 0, 1), 9);
    EXPECT_EQ(volts.setIntData(VOLTAGE_UPPERCRITICALTHRESHOLD, 0, 1), 0);
}

} // namespace
