#include "client/groups/clThresholdProbes.hpp"

#include "client/words/Numbers.hpp"
#include "tests/client/ClientFixture.hpp"

#include <cstdlib>

namespace {

using client::groups::ThresholdProbe;

class Probes : public ClientFixture {
protected:
    static long intData(BaseAccessor& group, _SMAttribute attribute, int row = 0)
    {
        long out = 0;
        EXPECT_EQ(group.getIntData(attribute, row, out), 0);
        return out;
    }
    static long intInfo(BaseAccessor& group, _SMAttribute attribute, int row = 0)
    {
        long out = 0;
        EXPECT_EQ(group.getIntInfo(attribute, row, out), 0);
        return out;
    }
    static std::string statusWord(BaseAccessor& group, _SMAttribute attribute)
    {
        char* out = nullptr;
        EXPECT_EQ(group.getStrData(attribute, 0, out), 0);
        std::string word = out;
        std::free(out);
        return word;
    }
};

TEST_F(Probes, StatusFollowsTheReadingWhileTheRowKeepsThatOfTheStart)
{
    const Sensor sensor;
    addSensor(sensor);
    voltageProbe group;
    group.init();
    changeReading(sensor, "14.5");
    EXPECT_EQ(intData(group, VOLTAGE_STATUS), 4);
    EXPECT_EQ(statusWord(group, VOLTAGE_STATUSSTRING), "Critical");
    changeReading(sensor, "READING_UNAVAILABLE");
    EXPECT_EQ(intData(group, VOLTAGE_READING), noValue);
    EXPECT_EQ(statusWord(group, VOLTAGE_STATUSSTRING), "Unavailable");
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

TEST_F(Probes, NonLinearSensorsLeaveNoGapsExceptAmongTemperatures)
{
    for (const int type : {4, 1}) {
        addSensor({.number = 1, .type = type, .name = "one"});
        addSensor({.number = 2, .type = type, .name = "two", .linearization = 7});
        addSensor({.number = 3, .type = type, .name = "three", .value = "55"});
    }
    coolingDevice fans;
    temperatureProbe degrees;
    fans.init();
    degrees.init();
    EXPECT_EQ(fans.getCount(), 2);
    EXPECT_STREQ(fans.getDesc(1), "three");
    EXPECT_EQ(intData(fans, COOLINGDEVICE_READING, 1), 55);
    EXPECT_EQ(fans.getIndex(0x032000), 2);
    EXPECT_EQ(fans.getIndex(0x022000), 0);
    EXPECT_EQ(degrees.getCount(), 3);
}

TEST_F(Probes, TemperatureIsInTenthsAndIgnoresLowerBounds)
{
    const Sensor sensor{.type = 1, .value = "40", .bounds = {"5", "10", "0", "60", "70", "80"}, .unit = 1};
    addSensor(sensor);
    temperatureProbe group;
    group.init();
    EXPECT_EQ(intData(group, TEMPERATURE_READING), 400);
    EXPECT_EQ(intInfo(group, TEMPERATURE_RESOLUTION), 300);
    EXPECT_EQ(intInfo(group, TEMPERATURE_TOLERANCE), 20);
    EXPECT_EQ(intInfo(group, TEMPERATURE_ACCURACY), 7);
    EXPECT_EQ(intData(group, TEMPERATURE_LOWERNONCRITHRESHOLD), 100);
    for (const auto& [value, status] : {std::pair{"-50", 2}, {"61", 3}, {"71", 4}}) {
        changeReading(sensor, value);
        EXPECT_EQ(intData(group, TEMPERATURE_STATUS), status) << value;
    }
    changeReading(sensor, "READING_UNAVAILABLE");
    EXPECT_EQ(intData(group, TEMPERATURE_READING), noValue);
    changeReading(sensor, "2000000000");
    EXPECT_EQ(intData(group, TEMPERATURE_READING), greatestValue);
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

TEST_F(Probes, FansShowNonCriticalBoundsAsNonRecoverableAndUseTheFanRule)
{
    const Sensor fan{.type = 4, .value = "500", .bounds = {"200", "400", "100", "900", "950", "990"}};
    addSensor(fan);
    sdk.answer("/BIOS/PlatformID", "Larch-1");
    coolingDevice group;
    group.init();
    EXPECT_EQ(intData(group, COOLINGDEVICE_UPPERNONRECTHRESHOLD), 900);
    EXPECT_EQ(intData(group, COOLINGDEVICE_UPPERCRITICALTHRESHOLD), 950);
    EXPECT_EQ(intData(group, COOLINGDEVICE_LOWERNONRECTHRESHOLD), 400);
    EXPECT_EQ(intData(group, COOLINGDEVICE_LOWERCRITICALTHRESHOLD), 200);
    EXPECT_EQ(intInfo(group, COOLINGDEVICE_RESOLUTION), 30);
    EXPECT_EQ(intData(group, COOLINGDEVICE_STATUS), 2);
    changeReading(fan, "399");
    EXPECT_EQ(intData(group, COOLINGDEVICE_STATUS), 4);
    sdk.answer("/BIOS/PlatformID", "Larch-7");
    cache_map.erase("/BIOS/PlatformID");
    EXPECT_EQ(statusWord(group, COOLINGDEVICE_STATUSSTRING), "Warning");
}

TEST_F(Probes, MissingRowsAndForeignAttributesHaveTheirResults)
{
    addSensor({.type = 2});
    addSensor({.type = 4});
    voltageProbe volts;
    coolingDevice fans;
    volts.init();
    fans.init();
    long number = 5;
    char* text = nullptr;
    for (const int row : {-1, 1, 1 << 30}) {
        EXPECT_EQ(volts.getIntInfo(VOLTAGE_DEVICEID, row, number), 25);
        EXPECT_EQ(volts.getStrData(VOLTAGE_STATUSSTRING, row, text), 25);
        EXPECT_EQ(fans.getIntData(COOLINGDEVICE_READING, row, number), 30);
        EXPECT_EQ(number, -1);
        EXPECT_EQ(fans.getStrInfo(COOLINGDEVICE_DESCRIPTION, row, text), 30);
        EXPECT_EQ(volts.setIntData(VOLTAGE_UPPERCRITICALTHRESHOLD, row, 1), 25);
    }
    EXPECT_EQ(volts.getIntInfo(VOLTAGE_READING, 0, number), 9);
    EXPECT_EQ(volts.getIntData(VOLTAGE_DEVICEID, 0, number), 9);
    EXPECT_EQ(volts.getIntData(CURRENT_READING, 0, number), 9);
    EXPECT_EQ(volts.getStrInfo(VOLTAGE_STATUSSTRING, 0, text), 9);
    EXPECT_EQ(volts.getStrData(VOLTAGE_DESCRIPTION, 0, text), 9);
    EXPECT_EQ(volts.setIntData(VOLTAGE_READING, 0, 1), 9);
    EXPECT_EQ(volts.setIntData(VOLTAGE_UPPERCRITICALTHRESHOLD, 0, 1), 0);
}

} // namespace
