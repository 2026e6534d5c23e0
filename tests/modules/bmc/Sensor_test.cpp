#include "common/Policy.hpp"
#include "ipmi/SdrView.hpp"
#include "tests/modules/bmc/SdrFixture.hpp"
#include "tests/transport/FakeKcs.hpp"

using testing::ElementsAre;
using testing::SizeIs;

namespace {

class Sensor : public SdrFixture {
protected:
    std::string nameOf(Bytes coded)
    {
        Module::BMCConfig::Cache::instance().Clear();
        records = {full(1, 5, 1, {}, std::move(coded))};
        return text("/BMC/SENSOR[5]/OWNER[32]/LUN[0]/NAME");
    }
};

TEST_F(Sensor, NamesAreDecodedByTheirCoding)
{
    EXPECT_EQ(nameOf({0xC6, 'I', 'n', 'l', 'e', 't', '1'}), "Inlet1");
    EXPECT_EQ(nameOf({0xC9, 'A', 0x01, 0x1F, 0x80, 0xFF, '%', 'n', '%', 's'}), "A%n%s") << "no other bytes come out";
    EXPECT_EQ(nameOf({0x04, 'U', 0, 'n', 0}), "Un");
    EXPECT_EQ(nameOf({0x83, 0x29, 0xDC, 0xA6}), "IPMI");
    EXPECT_EQ(nameOf({0x84, 0x29, 0xDC, 0xA6, 0x11}), "IPMI1");
    EXPECT_EQ(nameOf({0x43, 0x12, 0xBC, 0xDE}), "12-.:,");
    EXPECT_EQ(nameOf({0xC0}), "");
    EXPECT_EQ(nameOf({0xDF, 'a', 'b'}), "ab") << "a length beyond the record's end";
    EXPECT_EQ(nameOf({0xC2, 'a', 'b', 'c'}), "ab");
    EXPECT_EQ(nameOf({0xDE, 'a', ' ', 'l', 'o', 'n', 'g', ' ', 'n', 'a', 'm', 'e', ' ', 'o', 'f', ' ',
                      't',  'h', 'i', 'r', 't', 'y', ' ', 'c', 'h', 'a', 'r', 's', '.', '.', '.'}),
              "a long name of thirty chars...");
}

TEST_F(Sensor, DisplayListsEachSensorOnceAndGoesOnAfterFailures)
{
    records = {full(1, 5, 1, {0, 1, 0, 0, 1}), compact(2, 6, 8, 0x6F), full(3, 5, 1, {0, 1, 0, 0, 1}),
               record(4, 0x11, {0x20, 0, 0x80, 0, 0})};
    records[2][5] = 0x24;
    bmc.on(0x04, 0x2D, [](const IpmiRequest& request) {
        return request.data[0] == 5 ? IpmiAnswer{0, 0x19, 0xC0} : IpmiAnswer{0xCB};
    });
    bmc.on(0x04, 0x27, IpmiAnswer{0, 0x08, 0, 0, 0, 80, 0, 0});
    ResultMap shown = get("/BMC/SENSOR/DISPLAY");
    EXPECT_THAT(shown.at("/BMC/SENSOR/DISPLAY").mXNodeList,
                ElementsAre("/BMC/SENSOR[5]", "/BMC/SENSOR[6]", "/BMC/SENSOR[5]/OWNER[36]/LUN[0]"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]").mXNodeList, SizeIs(7));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]/NAME").mXNodeList, ElementsAre("T"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]/VALUE").mXNodeList, ElementsAre("25.000000"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]/UNITS").mXNodeList, ElementsAre("Degrees Celsius"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]/THRESHOLD/UPPER_NONCRITICAL").mXNodeList, ElementsAre("80"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]/THRESHOLD/UPPER_CRITICAL").mXNodeList, ElementsAre("NOT SUPPORTED"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[6]/NUMBER").mXNodeList, ElementsAre("6"));
    EXPECT_THAT(shown.at("/BMC/SENSOR[5]/OWNER[36]/LUN[0]/OWNER").mXNodeList, ElementsAre("36"));
}

TEST_F(Sensor, ReadingWithoutItsFlagsIsFilledUpOrNone)
{
    records = {full(1, 1, 1, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0})};
    const auto read = [this](IpmiAnswer answer) {
        bmc.on(0x04, 0x2D, std::move(answer));
        return text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE");
    };
    const std::string filledUp = read({0, 7});
    EXPECT_EQ(filledUp, read({0, 7, 0xC0, 0}));
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_EQ(read({0, 7}), "READING_UNAVAILABLE");
    EXPECT_EQ(read({0}), "READING_UNAVAILABLE");
    EXPECT_EQ(read({0, 7, 0xC0}), filledUp) << "the states are optional";
    EXPECT_EQ(read({0, 7, 0x20}), "READING_UNAVAILABLE");
}

TEST_F(Sensor, WithoutAStateAllAreDeassertedUnlessTheDeviceMayBeMissingOrNobodyLooks)
{
    struct Case {
        std::uint8_t sensorType, readingType, mask, flags, states;
        const char *plain, *practical;
    };
    for (const Case& c : {Case{0x05, 0x6F, 0x7F, 0xC0, 0, "UNKNOWN", "ALL_DEASSERTED"},
                          {0x05, 0x6F, 0x7F, 0x80, 0, "UNKNOWN", "READING_UNAVAILABLE"},
                          {0x08, 0x6F, 0x0F, 0xC0, 0, "UNKNOWN", "UNKNOWN"},
                          {0x08, 0x6F, 0x0E, 0xC0, 0, "UNKNOWN", "ALL_DEASSERTED"},
                          {0x08, 0x6F, 0x00, 0xC0, 2, "UNKNOWN", "POWER_SUPPLY_FAILURE_DETECTED"},
                          {0x04, 0x08, 0x03, 0xC0, 0, "DEVICE_REMOVED/DEVICE_ABSENT", "UNKNOWN"},
                          {0xC3, 0x72, 0x03, 0xC0, 0, "UNKNOWN", "UNKNOWN"}}) {
        Module::BMCConfig::Cache::instance().Clear();
        records = {compact(1, 1, c.sensorType, c.readingType)};
        records[0][ipmi::sdr::readableStates] = c.mask;
        records[0][ipmi::sdr::readableStates + 1] = 0;
        bmc.on(0x04, 0x2D, IpmiAnswer{0, 0, c.flags, c.states, 0x80});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), c.plain);
        const common::ScopedPolicy practical({.heedsScanning = true, .namesDeasserted = true});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), c.practical) << int(c.sensorType);
    }
}

TEST_F(Sensor, CurvesAreOfTheStandardAndAReadingWithoutAFormulaIsNone)
{
    struct Case {
        std::uint8_t linearisation, units;
        const char *plain, *practical;
    };
    for (const Case& c : {Case{0x00, 0, "0.900000", "0.900000"},
                          {0x04, 0, "8103.083928", "2.459603"},
                          {0x70, 0, "0.000000", "READING_UNAVAILABLE"},
                          {0x0C, 0, "0.000000", "READING_UNAVAILABLE"},
                          {0x00, 0xC0, "0.900000", "READING_UNAVAILABLE"}}) {
        Module::BMCConfig::Cache::instance().Clear();
        records = {full(1, 1, 1, {c.units, 1, 0, c.linearisation, 1, 0, 0, 0, 0, 0xF0})};
        bmc.on(0x04, 0x2D, IpmiAnswer{0, 9, 0xC0, 0, 0});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), c.plain) << int(c.linearisation);
        const common::ScopedPolicy practical({.convertsByStandard = true});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), c.practical) << int(c.linearisation);
    }
}

TEST_F(Sensor, EventOnlyRecordHasNoUnits)
{
    records = {record(1, 3, {0x20, 0, 5, 7, 1, 0x13, 0x6F, 1, 0, 0, 0, 0xC8, 'L', 'e', 't', 't', 'e', 'r', 's', '!'})};
    EXPECT_EQ(text("/BMC/SENSOR[5]/OWNER[32]/LUN[0]/NAME"), "Letters!");
    EXPECT_EQ(text("/BMC/SENSOR[5]/OWNER[32]/LUN[0]/INTERPRET_SENSOR_UNITS"), "");
}

/// The network function's byte of the message that is bridged to the sensor's owner: its low bits are the LUN.
TEST_F(Sensor, OwnersLunStandsInTheBridgedRequest)
{
    records = {full(1, 5, 1, {})};
    records[0][5] = 0x24, records[0][6] = 0x61;
    EXPECT_EQ(text("/BMC/SENSOR[5]/OWNER[36]/LUN[97]/NAME"), "T");
    PortMachine ports;
    std::vector<Bytes> bridged;
    ports.bmc.answer = [&](const Bytes& frame) {
        if (frame[1] == 0x34)
            bridged.push_back(frame);
        return Bytes{static_cast<std::uint8_t>(frame[0] + 4), frame[1], 0x83};
    };
    transport::transportState().OpenIPMIPresence = 0;
    for (const char* query : {"/INTERPRET_SENSOR_VALUE", "/VALUE", "/THRESHOLD_STATUS"}) {
        bridged.clear();
        get(std::string("/BMC/SENSOR[5]/OWNER[36]/LUN[97]") + query);
        ASSERT_FALSE(bridged.empty()) << query;
        EXPECT_THAT(Bytes(bridged[0].begin() + 3, bridged[0].begin() + 5), ElementsAre(0x24, 0x11)) << query;
    }
}

} // namespace
