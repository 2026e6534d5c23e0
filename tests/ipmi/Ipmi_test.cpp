#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "ipmi/States.hpp"
#include "ipmi/TimeStamp.hpp"

#include <cmath>
#include <fstream>
#include <map>
#include <regex>

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

TEST(SdrView, FieldsAreWhereTheStandardHasThemAndALocatorIsNoSensorAndAShortRecordHasNothing)
{
    for (const Bytes& record : {countingRecord(1), countingRecord(2), countingRecord(3)}) {
        const ipmi::SdrView view(record);
        EXPECT_EQ(
            (std::vector<int>{view.version(), view.owner(), view.number(), view.entityId(), view.entityInstance()}),
            (std::vector<int>{2, 5, 7, 8, 9}));
        EXPECT_EQ(view.isReadable(), record[3] != 3);
    }
    EXPECT_FALSE(ipmi::SdrView(countingRecord(0x12)).isSensor());
    EXPECT_EQ(ipmi::SdrView(countingRecord(0x12)).sensorType(), std::nullopt);
    const Bytes cut = countingRecord(1, 12);
    EXPECT_EQ(ipmi::SdrView(cut).sensorType(), std::nullopt);
    EXPECT_EQ(ipmi::SdrView(cut).at(40), 0);
    EXPECT_TRUE(ipmi::SdrView(cut).name().bytes.empty());
}

TEST(SdrView, ChannelLunAndPackedIdComeFromOneByte)
{
    using Row = std::tuple<std::uint8_t, std::uint8_t, std::uint8_t, int, int, std::int32_t>;
    for (const auto& [owner, lunByte, number, channel, lun, id] :
         {Row{0x20, 0x00, 0x05, 0, 0, 0x00052000}, Row{0x2C, 0x63, 0x41, 6, 3, 0x0341'2C03},
          Row{0xC0, 0xF1, 0xFE, 15, 1, 0x07FE'C001}, Row{0x41, 0x1C, 0x80, 1, 0, 0x0080'4100}}) {
        Bytes record = countingRecord(2);
        record[5] = owner, record[6] = lunByte, record[7] = number;
        const ipmi::SdrView view(record);
        EXPECT_EQ(std::tuple(view.channel(), view.lun(), view.packedId()), std::tuple(channel, lun, id));
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

TEST(TimeStamp, WhatIsNoTimeSaysSo)
{
    EXPECT_EQ(ipmi::timeStampText(0xFFFFFFFF), "Invalid Time Stamp");
    EXPECT_EQ(ipmi::timeStampText(0x20000000), "Pre-Init Time Stamp");
    EXPECT_EQ(ipmi::timeStampText(0x20000001), "01/05/1987-18:48:33");
    EXPECT_EQ(ipmi::dateAndTime(ipmi::fruEpoch), "01/01/1996-00:00:00");
}

using ipmi::Gravity;

const std::map<std::string, Gravity> letters = {{"U", Gravity::untold},
                                                {"I", Gravity::fine},
                                                {"W", Gravity::nonCritical},
                                                {"C", Gravity::critical},
                                                {"N", Gravity::nonRecoverable}};

/// The texts of the event log say of each state how grave it is; log and table are two lists of one thing.
TEST(States, AreAsGraveAsTheEventLogSays)
{
    const std::regex section(R"(\[(generic|specific|override)\.(..)(..)?\])"),
        state(R"rx("(..)" = \["(.)", "(.)".*)rx");
    std::ifstream log(HWAGENT_ENGLISH);
    std::span<const ipmi::State> states;
    int count = 0;
    for (std::string line; std::getline(log, line);) {
        std::smatch part;
        if (std::regex_match(line, part, section))
            states = part[1] == "generic"    ? ipmi::statesOf(ipmi::parseByte(part[2]), 0xEE)
                     : part[1] == "specific" ? ipmi::statesOf(0x6F, ipmi::parseByte(part[2]))
                                             : ipmi::statesOf(ipmi::parseByte(part[2]), ipmi::parseByte(part[3]));
        if (!std::regex_match(line, part, state) || part[1] == "FF")
            continue;
        ASSERT_LT(ipmi::parseByte(part[1]), states.size()) << line;
        EXPECT_EQ(states[ipmi::parseByte(part[1])].gravity, letters.at(part[2])) << line;
        EXPECT_EQ(states[ipmi::parseByte(part[1])].ofEnd, letters.at(part[3])) << line;
        ++count;
    }
    EXPECT_GT(count, 200);
}

} // namespace
