#include "common/Policy.hpp"
#include "ipmi/SdrView.hpp"
#include "tests/modules/bmc/SdrFixture.hpp"
#include "tests/support/TextTable.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/BmcMessage.hpp"

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
    constexpr char values[] = R"(
[5]/NAME | T
[5]/VALUE | 25.000000
[5]/UNITS | Degrees Celsius
[5]/THRESHOLD/UPPER_NONCRITICAL | 80
[5]/THRESHOLD/UPPER_CRITICAL | NOT SUPPORTED
[6]/NUMBER | 6
[5]/OWNER[36]/LUN[0]/OWNER | 36)";
    for (const auto& row : rowsOf(values))
        EXPECT_THAT(shown.at("/BMC/SENSOR" + row[0]).mXNodeList, ElementsAre(row[1]));
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
    // sensor type, reading type, mask, flags, states; plainly, practically
    constexpr char rows[] = R"(
05 6F 7F C0 00 | UNKNOWN | ALL_DEASSERTED
05 6F 7F 80 00 | UNKNOWN | READING_UNAVAILABLE
08 6F 0F C0 00 | UNKNOWN | UNKNOWN
08 6F 0E C0 00 | UNKNOWN | ALL_DEASSERTED
08 6F 00 C0 02 | UNKNOWN | POWER_SUPPLY_FAILURE_DETECTED
04 08 03 C0 00 | DEVICE_REMOVED/DEVICE_ABSENT | UNKNOWN
C3 72 03 C0 00 | UNKNOWN | UNKNOWN)";
    for (const auto& row : rowsOf(rows)) {
        const Bytes bytes = ipmi::parseBytes(row[0]);
        Module::BMCConfig::Cache::instance().Clear();
        records = {compact(1, 1, bytes[0], bytes[1])};
        records[0][ipmi::sdr::readableStates] = bytes[2];
        records[0][ipmi::sdr::readableStates + 1] = 0;
        bmc.on(0x04, 0x2D, IpmiAnswer{0, 0, bytes[3], bytes[4], 0x80});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), row[1]) << row[0];
        const common::ScopedPolicy practical({.heedsScanning = true, .namesDeasserted = true});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), row[2]) << row[0];
    }
}

TEST_F(Sensor, CurvesAreOfTheStandardAndAReadingWithoutAFormulaIsNone)
{
    constexpr char rows[] = R"(
00 00 | 0.900000 | 0.900000
04 00 | 8103.083928 | 2.459603
70 00 | 0.000000 | READING_UNAVAILABLE
0C 00 | 0.000000 | READING_UNAVAILABLE
00 C0 | 0.900000 | READING_UNAVAILABLE)";
    for (const auto& row : rowsOf(rows)) { // linearisation and units, plainly, practically
        const Bytes bytes = ipmi::parseBytes(row[0]);
        Module::BMCConfig::Cache::instance().Clear();
        records = {full(1, 1, 1, {bytes[1], 1, 0, bytes[0], 1, 0, 0, 0, 0, 0xF0})};
        bmc.on(0x04, 0x2D, IpmiAnswer{0, 9, 0xC0, 0, 0});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), row[1]) << row[0];
        const common::ScopedPolicy practical({.convertsByStandard = true});
        EXPECT_EQ(text("/BMC/SENSOR[1]/INTERPRET_SENSOR_VALUE"), row[2]) << row[0];
    }
}

/// The network function's byte of the message that is bridged to the sensor's owner: its low bits are the LUN.
TEST_F(Sensor, OwnersLunStandsInTheBridgedRequest)
{
    records = {full(1, 5, 1, {})};
    records[0][5] = 0x24, records[0][6] = 0x61;
    EXPECT_EQ(text("/BMC/SENSOR[5]/OWNER[36]/LUN[97]/NAME"), "T");
    PortMachine ports;
    InitilizeIPMB_Interface();
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
