#include "client/query/Publication.hpp"

#include "client/door/Functions.hpp"
#include "client/door/smClient.hpp"
#include "client/reader/Reader.hpp"
#include "common/ConfigFile.hpp"
#include "common/Facts.hpp"
#include "common/Paths.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "tests/client/ClientFixture.hpp"
#include "tests/support/CaughtLog.hpp"
#include "tests/support/TempRoot.hpp"

namespace {

using namespace std::chrono_literals;

/// The client in the practical mode over a scripted SDK; the test plays the reading thread.
class Published : public ClientFixture {
protected:
    static constexpr char reading[] = "/BMC/SENSOR[1]/OWNER[32]/LUN[0]/INTERPRET_SENSOR_VALUE";

    Published() { sdk.answer("/BMC/SDR", "/BMC/SDR[1]"); }

    /// What a thread that must not wait gets; "none" for nothing.
    static std::string look(const std::string& query)
    {
        ResultMap result;
        return lookUp(query, result) ? result.begin()->second.mXNodeList.front() : "none";
    }
    static PassEnd pass()
    {
        const ReadingScope reads;
        return readWanted([] { return true; });
    }
    void failInterface()
    {
        sdk.onGet = [](const std::string& query) {
            throw ResultStatus(ERROR_BMC_INTERFACE_ERROR, "no answer", query, COMMAND_GET);
        };
    }

    common::ScopedPolicy practical{common::practicalPolicy()};
    CaughtLog log;
    ScopedSeam<common::SystemLog> useLog{log};
};

TEST_F(Published, AMissAsksNobodyAndIsAnsweredByTheNextPass)
{
    sdk.answer("/A", "1");
    ResultMap result;
    EXPECT_THROW(CallQLInterface("/A", result), ResultStatus);
    EXPECT_TRUE(sdk.asked.empty());
    EXPECT_TRUE(takeNewlyWanted());
    EXPECT_EQ(pass(), PassEnd::whole);
    EXPECT_EQ(look("/A"), "1");
    EXPECT_FALSE(takeNewlyWanted());
}

TEST_F(Published, ReadingsAreAskedInEachPassAndAllElseOnce)
{
    sdk.answer(reading, "1");
    sdk.answer("/A", "1");
    want(reading);
    want("/A");
    for (int passes = 0; passes < 3; ++passes)
        pass();
    EXPECT_EQ(sdk.timesAsked(reading), 3);
    EXPECT_EQ(sdk.timesAsked("/A"), 1);
    forgetStanding("/A");
    pass();
    EXPECT_EQ(sdk.timesAsked("/A"), 2);
}

TEST_F(Published, AReadingHoldsForThreePeriodsHoweverLongAPassTakes)
{
    sdk.answer(reading, "1");
    want(reading);
    pass();
    setRefreshPeriod(10s);
    clock.advance(30s);
    EXPECT_EQ(look(reading), "1");
    clock.advance(1ns);
    EXPECT_EQ(look(reading), "none");
    sdk.onGet = [this](const std::string&) { clock.advance(100s); }; // a controller of that many seconds a pass
    pass();
    clock.advance(300s);
    EXPECT_EQ(look(reading), "1");
    clock.time -= 1h; // an administrator sets the time of day
    EXPECT_EQ(look(reading), "1");
}

TEST_F(Published, AFailingQueryHarmsItselfAndIsToldOnce)
{
    sdk.answer(reading, "1");
    want(reading);
    want("/fails");
    for (int passes = 0; passes < 4; ++passes) {
        EXPECT_EQ(pass(), PassEnd::whole);
        setRefreshPeriod(10s);
        clock.advance(10s);
    }
    EXPECT_EQ(sdk.timesAsked(reading), 4);
    EXPECT_EQ(sdk.timesAsked("/fails"), 2); // at once, then after two periods, then after four
    EXPECT_EQ(log.lines, "no answer to /fails: 1001, no such answer\n");
}

TEST_F(Published, ASilentControllerEndsThePassAndWhatWasLookedUpLastComesFirst)
{
    for (const char* query : {"/A", "/B", "/C", "/D"})
        want(query);
    clock.advance(1s);
    look("/C");
    failInterface();
    EXPECT_EQ(pass(), PassEnd::silent);
    EXPECT_EQ(sdk.asked.size(), 3U);
    EXPECT_TRUE(log.lines.empty()); // the transport tells of a silent controller
    sdk.onGet = nullptr;
    sdk.asked.clear();
    pass();
    EXPECT_EQ(sdk.asked.front(), "/C");
}

/// The whole client, behind the flat functions as SNMP requests use them.
class FilledBehind : public Published {
protected:
    FilledBehind()
    {
        root.write(common::configPath, "debugenabled=1\n");
        gSubagent = &client;
    }
    ~FilledBehind() override { gSubagent = nullptr; }

    void start()
    {
        client.init();
        traceWanted = false;
        sdk.asked.clear();
    }
    void turns(int count)
    {
        for (int turn = 0; turn < count; ++turn)
            reader.turn();
    }
    static long voltage(_SMAttribute attribute, int row = 0)
    {
        long out = -1;
        const int result = getIntData(VOLTAGE, attribute, row, out);
        return result ? -result : out;
    }

    TempRoot root;
    client::reader::Reader reader;
    smClient client;
};

TEST_F(FilledBehind, StartsWithoutAQueryAndFillsBehind)
{
    const Sensor sensor;
    addSensor(sensor);
    start();
    EXPECT_TRUE(sdk.asked.empty());
    EXPECT_EQ(getCount(VOLTAGE), 0);
    EXPECT_EQ(getHealthStatus(), ENUM_STATUS_UNAVAILABLE);
    common::noteFact(common::transportFact, "a port");
    turns(1);
    EXPECT_EQ(log.lines, "rows: voltageProbe 1, chassisInfo 1\nthe event log of the BMC cannot be read\n"
                         "the way to the BMC: a port\n");
    EXPECT_EQ(getCount(VOLTAGE), 1);
    EXPECT_EQ(voltage(VOLTAGE_READING), 12050);
    EXPECT_EQ(voltage(VOLTAGE_UPPERCRITICALTHRESHOLD), 14000);
    EXPECT_EQ(voltage(VOLTAGE_STATUS), ENUM_STATUS_HEALTHY);
    const std::string bound = sensor.path() + "/THRESHOLD/UPPER_CRITICAL";
    turns(30);
    EXPECT_EQ(sdk.timesAsked(bound), 1);
    EXPECT_GT(sdk.timesAsked(sensor.path() + "/INTERPRET_SENSOR_VALUE"), 1);
}

TEST_F(FilledBehind, WhoeverHoldsTheGroupsAsksNobodyNotEvenOnTheReadingThread)
{
    addSensor({});
    start();
    sdk.onGet = [this](const std::string& query) {
        if (query.ends_with("/INTERPRET_SENSOR_VALUE"))
            throw ResultStatus(ERROR_BMC_INTERFACE_ERROR, "no answer", query, COMMAND_GET);
    };
    turns(1);
    sdk.onGet = nullptr;
    sdk.asked.clear();
    const ReadingScope reads;
    EXPECT_EQ(voltage(VOLTAGE_READING), noValue);
    const auto standing = client::door::standingOfGroups();
    EXPECT_EQ(std::ranges::find(standing, "voltageProbe", &client::door::GroupStanding::name)->silent.size(), 1U);
    client::door::followReadings();
    EXPECT_TRUE(sdk.asked.empty()) << sdk.asked.front();
}

TEST_F(FilledBehind, HealthIsTheWorstOfWhatTheSensorsSayAndUnavailableWithoutThem)
{
    Sensor hot{.number = 1, .type = 1, .value = "20", .unit = 1};
    addSensor(hot);
    start();
    const auto healthAfter = [this](int count) {
        turns(count);
        client::door::followReadings();
        return getHealthStatus();
    };
    EXPECT_EQ(healthAfter(0), ENUM_STATUS_UNAVAILABLE);
    EXPECT_EQ(healthAfter(1), ENUM_STATUS_CRITIC);            // beyond 14, from the first reading on
    sdk.answer(hot.path() + "/INTERPRET_SENSOR_VALUE", "13"); // at a bound is beyond it
    EXPECT_EQ(healthAfter(20), ENUM_STATUS_WARNING);
    sdk.answer(hot.path() + "/INTERPRET_SENSOR_VALUE", "12");
    EXPECT_EQ(healthAfter(20), ENUM_STATUS_HEALTHY);
    eventData event;
    event.nDeviceId = client.mTemperatureProbe->getAddress(0)->nDeviceId;
    event.nEventGroup = 14;
    event.nSeverity = ENUM_STATUS_CRITICAL;
    client.mEventHandler->checkEventLists(event);
    EXPECT_EQ(healthAfter(1), ENUM_STATUS_CRITIC); // the reading may be older than the event
    EXPECT_EQ(healthAfter(40), ENUM_STATUS_HEALTHY);
    failInterface();
    EXPECT_EQ(healthAfter(60), ENUM_STATUS_UNAVAILABLE);
}

TEST_F(FilledBehind, RowsComeWithThePiecesOfTheRepositoryAndAreReadInBetween)
{
    // the order of texts would be 1, 10, 11, 2
    int read = 0;
    sdk.onRead = [&](std::chrono::nanoseconds time) {
        clock.advance(time);
        for (const int last = std::min(read + 4, 12); read < last;)
            addSensor({.number = ++read, .name = "S" + std::to_string(read)});
        return read < 12;
    };
    sdk.onGet = [this](const std::string& query) {
        if (query.ends_with("/INTERPRET_SENSOR_VALUE"))
            clock.advance(1s);
    };
    start();
    const std::string bound = Sensor{}.path() + "/THRESHOLD/UPPER_CRITICAL";
    turns(1);
    EXPECT_EQ(sdk.timesAsked(bound), 0) << "readings first";
    EXPECT_EQ(getCount(VOLTAGE), 4);
    EXPECT_EQ(voltage(VOLTAGE_READING, 0), 12050);
    EXPECT_EQ(voltage(VOLTAGE_READING, 3), noValue) << "half as long as the piece took";
    turns(1);
    EXPECT_EQ(getCount(VOLTAGE), 8);
    EXPECT_EQ(voltage(VOLTAGE_READING, 3), 12050);
    turns(20);
    for (int row = 0; row < 12; ++row) {
        EXPECT_EQ(strInfo(*client.mVoltageProbe, VOLTAGE_DESCRIPTION, row), "S" + std::to_string(row + 1));
        EXPECT_EQ(voltage(VOLTAGE_STATUS, row), ENUM_STATUS_HEALTHY);
    }
    EXPECT_EQ(sdk.timesAsked(bound), 1);
}

TEST_F(FilledBehind, RowsKeepTheirNumbersWhenTheRepositoryChanges)
{
    for (const int number : {1, 2, 3})
        addSensor({.number = number, .name = "S" + std::to_string(number)});
    start();
    turns(1);
    sdk.answers.erase("/BMC/SDR/SENSOR_TYPE[2]");
    for (const int number : {3, 4, 1})
        addSensor({.number = number, .name = "S" + std::to_string(number)});
    sdk.changed = true;
    turns(40);
    EXPECT_EQ(getCount(VOLTAGE), 3);
    for (const char* name : {"S1", "S4", "S3"})
        EXPECT_EQ(strInfo(*client.mVoltageProbe, VOLTAGE_DESCRIPTION, name[1] == '4' ? 1 : name[1] - '1'), name);
}

} // namespace
