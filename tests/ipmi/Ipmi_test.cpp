#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "ipmi/SelView.hpp"
#include "ipmi/SensorReading.hpp"
#include "ipmi/TimeStamp.hpp"

#include <cmath>

namespace {

using ipmi::Bytes;
using testing::ElementsAre;

/// A record in which each byte is its own place, of the type given.
Bytes countingRecord(std::uint8_t type, std::size_t length = 64)
{
    Bytes record(length);
    for (std::size_t at = 0; at < length; ++at)
        record[at] = static_cast<std::uint8_t>(at);
    record[3] = type;
    return record;
}

TEST(Hex, TextOfAnyWriterGivesTheSameBytes)
{
    EXPECT_THAT(ipmi::parseBytes(" 0a 2 FF  0x1c"), ElementsAre(0x0A, 0x02, 0xFF, 0x1C));
    EXPECT_THAT(ipmi::parseBytes("1ab zz"), ElementsAre(0xAB, 0x00));
    EXPECT_TRUE(ipmi::parseBytes("  ").empty());
    EXPECT_EQ(ipmi::hexBytes(ipmi::parseBytes("a 0 fe")), "0A 00 FE");
}

TEST(SdrView, FieldsAreWhereTheStandardHasThem)
{
    const Bytes full = countingRecord(1), compact = countingRecord(2), eventOnly = countingRecord(3);
    for (const Bytes& record : {full, compact, eventOnly}) {
        const ipmi::SdrView view(record);
        EXPECT_TRUE(view.isSensor());
        EXPECT_EQ((std::vector<int>{view.version(), view.owner(), view.lunByte(), view.number(), view.entityId(),
                                    view.entityInstance()}),
                  (std::vector<int>{2, 5, 6, 7, 8, 9}));
    }
    EXPECT_EQ(ipmi::SdrView(full).sensorType(), 12);
    EXPECT_EQ(ipmi::SdrView(compact).eventType(), 13);
    EXPECT_EQ(ipmi::SdrView(eventOnly).sensorType(), 10);
    EXPECT_EQ(ipmi::SdrView(eventOnly).eventType(), 11);
    EXPECT_FALSE(ipmi::SdrView(eventOnly).isReadable());
    EXPECT_EQ(ipmi::SdrView(full).readableStates(), 0x1312);
    EXPECT_EQ(ipmi::SdrView(full).units().base, 21);
    EXPECT_EQ(ipmi::SdrView(full).units().modifier, 22);
}

TEST(SdrView, ALocatorIsNoSensorAndAShortRecordHasNothing)
{
    const Bytes locator = countingRecord(0x12);
    EXPECT_FALSE(ipmi::SdrView(locator).isSensor());
    EXPECT_EQ(ipmi::SdrView(locator).sensorType(), std::nullopt);
    const Bytes cut = countingRecord(1, 12);
    EXPECT_EQ(ipmi::SdrView(cut).sensorType(), std::nullopt);
    EXPECT_EQ(ipmi::SdrView(cut).number(), 7);
    EXPECT_EQ(ipmi::SdrView(cut).at(40), 0);
    EXPECT_TRUE(ipmi::SdrView(cut).name().bytes.empty());
}

TEST(SdrView, ChannelLunAndPackedIdComeFromOneByte)
{
    struct Row {
        std::uint8_t owner, lunByte, number;
        int channel, lun;
        std::int32_t id;
    };
    constexpr Row rows[] = {
        {0x20, 0x00, 0x05, 0, 0, 0x00052000},
        {0x2C, 0x63, 0x41, 6, 3, 0x0341'2C03},
        {0xC0, 0xF1, 0xFE, 15, 1, 0x07FE'C001},
        {0x41, 0x1C, 0x80, 1, 0, 0x0080'4100}, // the bits between are reserved
    };
    for (const Row& row : rows) {
        Bytes record = countingRecord(2);
        record[5] = row.owner, record[6] = row.lunByte, record[7] = row.number;
        const ipmi::SdrView view(record);
        EXPECT_EQ(view.channel(), row.channel);
        EXPECT_EQ(view.lun(), row.lun);
        EXPECT_EQ(view.packedId(), row.id);
    }
}

TEST(SdrView, NamesStandBehindTheirTypeLengthByteInEachTypeOfRecord)
{
    constexpr std::pair<std::uint8_t, std::size_t> places[] = {{1, 47},    {2, 31},    {3, 16},
                                                               {0x10, 15}, {0x11, 15}, {0x12, 15}};
    for (const auto& [type, place] : places) {
        Bytes record = countingRecord(type);
        record[place] = 0x40 | 3;
        const ipmi::TypeLengthText name = ipmi::SdrView(record).name();
        EXPECT_EQ(name.coding, ipmi::TextCoding::bcdPlus);
        ASSERT_EQ(name.bytes.size(), 3U);
        EXPECT_EQ(name.bytes[0], place + 1);
    }
    Bytes cut = countingRecord(2, 34);
    cut[31] = 0xC0 | 31;
    EXPECT_EQ(ipmi::SdrView(cut).name().bytes.size(), 2U);
}

TEST(Conversion, FactorsTakeTheirBitsFromSharedBytes)
{
    Bytes record = countingRecord(1);
    record[23] = 0x87;                    // the uppermost bit is reserved
    record[24] = 0x34, record[25] = 0x7F; // M = 134h
    record[26] = 0xFF, record[27] = 0xE5; // B = 3FFh
    record[28] = 0xA3;
    record[29] = 0xD4; // K2 = -3, K1 = 4
    const ipmi::SdrView view(record);
    const ipmi::Factors factors = view.factors();
    EXPECT_EQ(factors.m, 0x134);
    EXPECT_EQ(factors.b, -1);
    EXPECT_EQ(factors.resultExponent, -3);
    EXPECT_EQ(factors.bExponent, 4);
    EXPECT_EQ(view.linearisation(), 7);
    EXPECT_EQ(ipmi::toleranceOf(record[25]), 0x3FU);
    EXPECT_EQ(ipmi::accuracyOf(record[27], record[28]), 0x2A5U);
    EXPECT_DOUBLE_EQ(factors.apply(200), (0x134 * 200 - 10000) / 1000.0);
}

TEST(Conversion, EachLinearisationIsItsOwnFunction)
{
    const double values[] = {8, std::log(8), std::log10(8), 3, std::exp(8), 1e8, 256, 0.125, 64, 512, std::sqrt(8), 2,
                             8};
    for (std::uint8_t code = 0; code < std::size(values); ++code)
        EXPECT_DOUBLE_EQ(ipmi::linearise(code, 8), values[code]) << int{code};
}

TEST(Units, BitsOfTheFlagsAreReadApart)
{
    const ipmi::Units units{0b10'101'01'1, 4, 0};
    EXPECT_EQ(units.format(), ipmi::DataFormat::twosComplement);
    EXPECT_EQ(units.rate(), 5);
    EXPECT_EQ(units.modifierUse(), ipmi::ModifierUse::perUnit);
    EXPECT_TRUE(units.isPercentage());
}

TEST(SelView, FieldsAreWhereTheStandardHasThem)
{
    const Bytes record = ipmi::parseBytes("01 02 02 10 20 30 40 41 63 04 05 06 87 5A 11 12 99");
    const ipmi::SelView view(record);
    EXPECT_EQ(view.id(), 0x0201U);
    EXPECT_EQ(view.seconds(), 0x40302010U);
    EXPECT_EQ(view.generator(), 0x41);
    EXPECT_EQ(view.channel(), 6);
    EXPECT_EQ(view.lun(), 3);
    EXPECT_EQ(view.sensorType(), 5);
    EXPECT_EQ(view.sensorNumber(), 6);
    EXPECT_TRUE(view.isDeassertion());
    EXPECT_EQ(view.eventType(), 7);
    EXPECT_EQ(view.offset(), 0x0A);
    EXPECT_EQ(view.data2Kind(), ipmi::DataKind::reading);
    EXPECT_EQ(view.data3Kind(), ipmi::DataKind::reading);
    EXPECT_EQ(view.eventData(2), 0x11);
    EXPECT_EQ(view.eventData(3), 0x12);
    EXPECT_EQ(view.manufacturer(), 0x046341U);
    EXPECT_THAT(view.extension(), ElementsAre(0x99));
    EXPECT_EQ(view.oemTimestampedData().front(), 5);
    EXPECT_EQ(view.oemData().front(), 0x10);
}

TEST(TimeStamp, WhatIsNoTimeSaysSo)
{
    EXPECT_EQ(ipmi::timeStampText(0xFFFFFFFF), "Invalid Time Stamp");
    EXPECT_EQ(ipmi::timeStampText(0x20000000), "Pre-Init Time Stamp");
    EXPECT_EQ(ipmi::timeStampText(0x20000001), "01/05/1987-18:48:33");
    EXPECT_EQ(ipmi::dateAndTime(ipmi::fruEpoch), "01/01/1996-00:00:00");
}

TEST(SensorReading, AShortAnswerHasNoStates)
{
    const Bytes answer{0x12, 0x20, 0x02, 0x81};
    const ipmi::SensorReading reading(answer);
    EXPECT_EQ(reading.raw(), 0x12);
    EXPECT_TRUE(reading.isUnavailable());
    EXPECT_EQ(reading.states(), 0x8102);
    EXPECT_TRUE(reading.isSet(1));
    EXPECT_FALSE(reading.isSet(0));
    EXPECT_EQ(ipmi::SensorReading(ipmi::ByteView(answer).first(2)).states(), 0);
}

} // namespace
