#include "client/events/Classifiers.hpp"

#include "client/door/Functions.hpp"
#include "client/events/SNMP_EventClones.hpp"
#include "client/events/SNMP_RouteEvent.hpp"
#include "client/words/Text.hpp"
#include "common/Policy.hpp"
#include "tests/client/EventFixture.hpp"

#include <gmock/gmock.h>

namespace {
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

class Classifying : public EventFixture {
protected:
    Classifying()
    {
        client.mSystemManagement->m_nTrapsEnabled = 0;
        for (int type = 1; type < 256; ++type)
            addSensor({.number = 0x30, .type = type, .name = "Sensor", .lun = 0x41});
        sdk.answers["/BMC/SDR/RECORD_TYPE[1]"] = sdk.answers["/BMC/SDR/SENSOR_TYPE[1]"];
        sdk.answer("/BMC/SENSOR[48]/NAME", "Sensor");
    }

    static EVENT_DATA_STRUCT recordOf(int sensorType, int trigger, int data1)
    {
        EVENT_DATA_STRUCT record;
        record.ucRecordType = 2;
        record.usGeneratorID = 0x20;
        record.ucSensorType = static_cast<unsigned char>(sensorType);
        record.ucSensorNumber = 0x30;
        record.ucEventTrigger = static_cast<unsigned char>(trigger);
        record.ucEventData1 = static_cast<unsigned char>(data1);
        return record;
    }

    /// Routes a record and gives its events, most of the time one.
    std::vector<eventData> route(int sensorType, int trigger, int data1, const char* description = "")
    {
        EVENT_DATA_STRUCT record = recordOf(sensorType, trigger, data1);
        copyText(record.sEventDiscription, description);
        aSelWrapper.m_cInfo.m_cSensorType.SetString(std::to_string(sensorType).c_str());
        watching.kept.clear();
        routeEvent(record);
        return watching.kept;
    }

    WatchingHandler& watching = watchEvents();
};

/// A record, and the event it makes.
struct Case {
    int sensorType;
    int trigger;
    int data1;
    int group;
    int severity;
    const char* text;
};

/// What a record gives when only its fields are there, without the log's bytes: decimal readings, given words.
constexpr Case ownWords[] = {
    {0x01, 0x01, 0, 14, 0, ""},
    {0x01, 0x01, 1, 14, 0, "Status is Upper Non-Critical"},
    {0x01, 0x01, 50, 14, 4, "Status is Lower Non-Critical"},
    {0x01, 0x01, 4, 14, 5, "Status is Lower Critical"},
    {0x01, 0x01, 12, 14, 0, ""},
    {0x01, 0x81, 4, 14, 3, "Status is OK"},
    {0x01, 0x81, 12, 14, 0, ""},
    {0x07, 0x6F, 11, 12, 0, ""},
    {0x07, 0x00, 1, 12, 0, "reports Thermal Trip. Status is Critical"},
    {0x10, 0x70, 0, 2, 0, "reports an event of type 70h"},
    {0x10, 0xF0, 0, 2, 0, "reports the end of an event of type 70h"},
};

TEST_F(Classifying, RecordsBecomeEventsInTheWordsOfTheirFamily)
{
    for (const Case& made : ownWords) {
        SCOPED_TRACE(testing::Message() << std::hex << made.sensorType << ' ' << made.trigger << ' ' << made.data1);
        const auto got = route(made.sensorType, made.trigger, made.data1, "the translator's words. Status is OK");
        ASSERT_EQ(got.size(), 1U);
        EXPECT_EQ(got[0].nEventGroup, made.group);
        EXPECT_EQ(got[0].nSeverity, made.severity);
        EXPECT_STREQ(got[0].stEventDesc, made.text);
    }
    EXPECT_THAT(clock.sleeps, IsEmpty());
}

TEST_F(Classifying, TheFirmwaresOwnProcessorRecordsSayThemselvesHowGraveTheyAre)
{
    addSensor({.number = 0, .type = 7, .name = "Processors"});
    struct FirmwareCase {
        int generator, data1, data2, data3, severity, sensor;
    };
    for (const FirmwareCase& c :
         {FirmwareCase{0x30, 0, 1, 0, 5, 0x30}, FirmwareCase{0x31, 0, 1, 0, 0, 0x30}, FirmwareCase{0x31, 0, 0, 1, 5, 0},
          FirmwareCase{0x3F, 0, 0, 3, 0, 0}, FirmwareCase{0x31, 2, 0, 3, 6, 0}, FirmwareCase{0x40, 0, 0, 3, 5, 0x30}}) {
        EVENT_DATA_STRUCT record = recordOf(0x07, 0x6F, c.data1);
        record.usGeneratorID = static_cast<unsigned short>(c.generator);
        record.ucEventData2 = static_cast<unsigned char>(c.data2);
        record.ucEventData3 = static_cast<unsigned char>(c.data3);
        watching.kept.clear();
        routeEvent(record);
        ASSERT_EQ(watching.kept.size(), 1U);
        EXPECT_EQ(watching.kept.front().nSeverity, c.severity) << c.generator << ' ' << c.data3;
        EXPECT_EQ(watching.kept.front().nDeviceId >> 16 & 0xFF, c.sensor) << c.generator;
    }
}

TEST_F(Classifying, GroupsWithoutACloneAreAskedFiveTimesWithHoursBetweenUnlessNothingMayWait)
{
    for (const int sensorType : {0x06, 0x11, 0x23}) {
        clock.sleeps.clear();
        EXPECT_THAT(route(sensorType, 0x6F, 0), IsEmpty());
        EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>(5, 30'000s)) << sensorType;
        clock.sleeps.clear();
        const common::ScopedPolicy practical({.neverWaitsForRecords = true});
        EXPECT_THAT(route(sensorType, 0x6F, 0), IsEmpty());
        EXPECT_THAT(clock.sleeps, IsEmpty()) << sensorType;
    }
}

TEST_F(Classifying, AmongSensorsOfOneNumberTheOneOfTheEventsMakerIsMeant)
{
    sdk.answers["/BMC/SDR/SENSOR_TYPE[1]"].clear();
    for (const auto& [owner, lun, name] :
         {std::tuple{0x20, 0x00, "BMC"}, {0x20, 0x01, "LUN 1"}, {0x2C, 0x00, "ME"}, {0x2C, 0x60, "ME on 6"}})
        addSensor({.number = 0x30, .type = 1, .name = name, .value = "40", .lun = lun, .owner = owner});
    client.mTemperatureProbe = std::make_unique<temperatureProbe>();
    client.mTemperatureProbe->init();
    for (const auto& [maker, row, name] : {std::tuple{"20 00", 1, "BMC"},
                                           {"20 01", 2, "LUN 1"},
                                           {"2C 00", 3, "ME"},
                                           {"2C 60", 4, "ME on 6"},
                                           {"31 00", 1, "BMC"}}) {
        sSelEntry = std::string("01 00 02 78 56 34 12 ") + maker + " 04 01 30 07 02 FF FF";
        const auto got = route(0x01, 0x07, 2);
        ASSERT_EQ(got.size(), 1U) << maker;
        EXPECT_EQ(got[0].nInstIndex, row) << maker;
        EXPECT_STREQ(got[0].stDeviceDesc, name);
        EXPECT_EQ(watching.shown, std::string(name) + " reports it has become critical. Status is Critical");
    }
}

TEST_F(Classifying, TheRowOfTheFirstTableThatHasTheDeviceIsNamed)
{
    const auto fill = [](auto& group, int deviceId, const char* description) {
        group = std::make_unique<typename std::remove_reference_t<decltype(group)>::element_type>();
        group->allocTable(2);
        group->getAddress(1)->nDeviceId = deviceId;
        copyText(group->getAddress(1)->stDescription, description);
    };
    fill(client.mVoltageProbe, 1, "another");
    fill(client.mDiscreteVoltage, 0x02302001, "VRM state");
    const auto second = route(0x02, 0x01, 52);
    EXPECT_EQ(second.at(0).nInstIndex, 2);
    EXPECT_STREQ(second[0].stDeviceDesc, "VRM state");
    fill(client.mVoltageProbe, 0x02302001, "P12V");
    EXPECT_STREQ(route(0x02, 0x01, 52).at(0).stDeviceDesc, "P12V");
}

TEST_F(Classifying, VoltagesAreLookedForAmongCompactRecordsToo)
{
    sdk.answers["/BMC/SDR/RECORD_TYPE[2]"] = sdk.answers["/BMC/SDR/RECORD_TYPE[1]"];
    sdk.answers["/BMC/SDR/RECORD_TYPE[1]"].clear();
    EXPECT_THAT(route(0x02, 0x01, 52), testing::SizeIs(1));
    cache_map.clear();
    sdk.answers["/BMC/SDR/RECORD_TYPE[2]"].clear();
    const std::string said = diagnosticsOf([this] { EXPECT_THAT(route(0x02, 0x01, 52), IsEmpty()); });
    EXPECT_THAT(said, HasSubstr("The sensor number is not matched for record type 2\n"));
}

TEST_F(Classifying, WithoutARecordOfTheSensorThereIsNoEventAndWithoutANameThereIs)
{
    sdk.answers.erase("/BMC/SENSOR[48]/NAME");
    const std::string said = diagnosticsOf([this] { EXPECT_THAT(route(0x01, 0x01, 4), testing::SizeIs(1)); });
    EXPECT_THAT(said, HasSubstr("\n Temperature_EventOccurred SensorNamequery failed"));
    cache_map.clear();
    sdk.answers.erase("/BMC/SDR/SENSOR_TYPE[1]");
    const std::string refused = diagnosticsOf([this] { EXPECT_THAT(route(0x01, 0x01, 4), IsEmpty()); });
    EXPECT_THAT(refused, HasSubstr("Query Failed to get the SDR's "));
    EXPECT_EQ(Temperature_EventOccurred(nullptr), 0);
}

} // namespace
