#include "TranslatorSupport.hpp"

#include "common/ErrorName.hpp"
#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

#include <gtest/gtest.h>

using namespace translator;

namespace {

constexpr char content[] =
    "$1 1\n&\n20\t\"BMC\"\n^ $2 1\n&\n1\t\"POST\"\n^ $4 2\n&\n2\t\"Voltage\"\nC\t\"Memory\"\n^\n"
    "$3 3\n&\n0\t\"Informational\"\n1\t\"Warning\"\n2\t\"CRITICAL\"\n^\n"
    "$5 3\n&\n4\t\"Volts\"\n12\t\"RPM\"\n14\t\"seconds\"\n^ $6 1\n&\n3\t\"processor\"\n^ $7 1\n&\n28\t\"ALDER\"\n^\n"
    "$14 1\n&\n7\t\"Do it.\"\n^\n"
    "$15 5\n&\n3\t\"per second\"\n7\t\"/\"\nA\t\"none\"\nB\t\"*\"\n17\t\"OEM severity\"\n^\n"
    "$8 3\n&\n&01\t0\n"
    "00\t\t\t1\t0\t7\t\"[severity] [sensor_name] %UpperOrLower% [event_data_byte_2_translated] [sensor_units] "
    "[event_data_byte_3_translated] [recommended_action]||[sensor_name]%Transition%\"\n"
    "02\t\t\t\t\t\t\"no numbers\"\n09\t\t\t\t\t\t\"%UpperOrLower%\"\n\n"
    "&03\t0\n00\t\t\t0\t0\t\t\"[offset_string]\"\n01\t\t\t0\t0\t\t\"[offset_string]\"\n\n"
    "&70\t0\n00\t\t\t0\t0\t\t\"oem generic\"\n\n^\n"
    "$9 1\n&\n&0C\t0\n00\t\t\t2\t1\t\t\"specific\"\n01\t\t\t0\t0\t\t\"specific 1\"\n02\t\t\t0\t0\t\t\"specific 2\"\n^\n"
    "$12 1\n&\n&6F0C\t0\n01\t\t\t0\t0\t\t\"override\"\n02\t\t\t0\t0\t\t\"override 2\"\n^\n"
    "$13 2\n&\n&28\t6F0C\t0\n02\t\t\t0\t0\t\t\"platform\"\n\n&FFFF\t6F0C\t0\n02\t\t\t0\t0\t\t\"unknown\"\n^\n"
    "$10 1\n&\n4321\t01\t\t\t\t\t\t07\t\"[gen_id] [oem_ts_string] [timestamp] [severity] [recommended_action]\"\n^\n"
    "$11 1\n&\n\t\t\t\t\t\t\t\t\t\t\t\tEE\t\t\"[oem_non_ts_string]\"\n^\n";

class TranslatorOfRecords : public ::testing::Test {
protected:
    TempRoot folder;
    TranslatorImpl translator{folder.write("/hrs_enu.ini", content).c_str(), "", true};

    std::string text(const Event& event) { return narrowText(translated(translator, event)); }
    std::string textOfToken(const std::string& token, Event event)
    {
        event.sensorType = 0x0C;
        const std::string file = "$9 1\n&\n&0C\t0\n00\t\t\t0\t0\t\t\"" + token + "\"\n^";
        translator.setTranslationFile(folder.write("/token.ini", file).c_str(), "");
        return text(event);
    }
};

} // namespace

TEST_F(TranslatorOfRecords, TextAndSeverityFollowTypeOffsetAndDirection)
{
    constexpr char rows[] = R"(
02 01 50 C8 BE | Warning P5V Lower 4.993 Volts 4.743 Do it. | Warning
02 81 50 | P5V - transition to OK | Informational
02 01 59 | Upper | CRITICAL
02 01 02 | no numbers | CRITICAL
02 81 02 | no numbers | Informational
0C 6F 00 | specific | CRITICAL
0C EF 00 | specific | Warning
0C 6F 01 | override | Informational
0C 00 00 | Unknown Event. | Informational
0C 70 00 | oem generic | Informational
0C 0D 00 |  | Informational
0C 6E 00 |  | Informational
0C 7F 00 |  | Informational
00 03 01 | reports it has been asserted, Assertion Event. | Informational
00 83 01 | reports it has been asserted, Deassertion Event. | Informational
00 03 00 | reports it has been deasserted, Assertion Event. | Informational
00 03 A0 1C 02 | reports it has been deasserted (event data 2 0x1C, event data 3 0x02). | Informational)";
    translator.setSDRRepository({voltageSdr()});
    for (const auto& row : rowsOf(rows)) {
        EXPECT_EQ(text(eventOf(row[0])), row[1]) << row[0];
        EXPECT_EQ(narrowText(translator.getEventSeverity()), row[2]) << row[0];
    }
}

/// Behind the bytes of units and modifier what the values of readings FEh and 01h are.
TEST_F(TranslatorOfRecords, UnitsHaveModifierAndRateAndReadingsTheirFormat)
{
    constexpr char rows[] = R"(
02 04 14 | 6.343 Volts/seconds 0.018
04 04 14 | 6.343 Volts*seconds 0.018
18 12 00 | 6.343 RPM per second 0.018
81 00 00 | -0.057 % 0.018
40 04 00 | -0.032 Volts 0.018
C0 04 00 | none Volts none)";
    for (const auto& row : rowsOf(rows)) {
        auto sdr = voltageSdr();
        std::ranges::copy(ipmi::parseBytes(row[0]), sdr.begin() + 20);
        translator.setSDRRepository({sdr});
        EXPECT_EQ(text(eventOf("02 01 50 FE 01")), "Warning P5V Lower " + row[1] + " Do it.");
    }
}

TEST_F(TranslatorOfRecords, PlatformGoesBeforeOverrideBeforeTable)
{
    EXPECT_EQ(text({.sensorType = 0x0C, .event1 = 2}), "override 2") << "no platform";
    translator.setPlatformID(0x28);
    EXPECT_EQ(text({.sensorType = 0x0C, .event1 = 2}), "platform");
    translator.setPlatformID(0x29);
    EXPECT_EQ(text({.sensorType = 0x0C, .event1 = 2}), "override 2") << "a platform without a name";
    translator.setPlatformName("ALDER");
    EXPECT_EQ(text({.sensorType = 0x0C, .event1 = 2}), "platform");
    translator.setPlatformName("OAKWOOD");
    EXPECT_EQ(text({.sensorType = 0x0C, .event1 = 2}), "override 2") << "a name that the file does not have";
}

TEST_F(TranslatorOfRecords, AnEventThatNoTableHasFailsAndStillGivesTheRest)
{
    EXPECT_EQ(failureOf([&] { text({.sensorType = 2, .event1 = 4}); }).code, ERROR_EVENT_TABLE);
    EXPECT_TRUE(translator.hasFailed());
    EXPECT_EQ(translator.getSensorType(), L"Voltage");
    EXPECT_EQ(translator.getGenerator(), L"BMC");
    EXPECT_EQ(translator.getTimeStamp(), L"05/13/2009-18:06:05");
    for (const auto& [recordType, name] : {std::pair{0xC0, L"OEM Timestamped SEL event"},
                                           {0xDF, L"OEM Timestamped SEL event"},
                                           {0xE0, L"OEM Non-Timestamped SEL event"}}) {
        EXPECT_EQ(failureOf([&] { text({.recordType = recordType}); }).code, ERROR_OEM_TABLE);
        EXPECT_EQ(translator.getSensorName(), name);
    }
    const auto record = Event{}.record();
    EXPECT_EQ(failureOf([&] { translator.translate(record.data(), 15); }).code, ERROR_EVENT_TABLE);
    translator.destroy();
    EXPECT_EQ(failureOf([&] { text({}); }).code, ERROR_NO_HRS_INI_FILE_PRESENT);
}

TEST_F(TranslatorOfRecords, OemRecordsAreFoundByTheirBytes)
{
    std::array<unsigned char, 16> timed{0, 0, 0xC1, 0x0D, 0x0C, 0x0B, 0x4A, 0x21, 0x43, 0, 1, 2, 3, 4, 5, 6};
    EXPECT_EQ(translator.translate(timed.data(), 16),
              L"0x004321 01 02 03 04 05 06 05/13/2009-18:06:05 OEM severity Do it.");
    EXPECT_EQ(translator.getSensorName(), L"OEM Timestamped SEL event");
    EXPECT_EQ(translator.getEventSeverity(), L"OEM severity");
    std::array<unsigned char, 16> timeless{0, 0, 0xE0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0xEE};
    EXPECT_EQ(translator.translate(timeless.data(), 16), L"01 02 03 04 05 06 07 08 09 0A 0B 0C EE");
    EXPECT_EQ(translator.getSensorName(), L"OEM Non-Timestamped SEL event");
}

TEST_F(TranslatorOfRecords, TokensAreFilledFromEventData)
{
    // ADh: bits 101 011 01
    constexpr char rows[] = R"(
A0 23 AD | %evd3% | 173
A0 23 AD | %Number event2:<#>% | <35>
A0 23 AD | %Bits event3:7-5% | 5
A0 23 AD | %Bits event3:4-2| (#)% |  (3)
A0 23 AD | %Bits event3:9-2% | unknown
A0 23 AD | %UserID and ChannelNumber% |  (user ID 35, channel number 13)
00 00 18 | %UserID and ChannelNumber% |  (user ID unspecified, channel number 8)
A0 23 AD | %CPU%%CHANNEL% | CPU_6, Channel = D
00 00 18 | %CHANNEL% | Channel = Reserved
A0 23 AD | %CPU_DIMM Number%! | CPU_6, DIMM_2, !
A0 23 AD | %Memory Pair%! | DIMM_1, DIMM_2, !
A0 23 AD | %Rank info%! | RANK_3, !
A0 23 AD | %CPU bitmap%! | CPU_1, CPU_2, CPU_6, !
A0 23 AD | %bus% |  (BUS:0x23, DEV:0x15, FUN:0x05)
A0 23 AD | %Vendor_ID% | 0xad23
A0 23 AD | %version% | 23.ad
A0 23 AD | %fru state change% | State change by an operator at the hot swap handle
A0 23 AD | %CATERR Type% |  Reserved
A0 23 AD | 100% %none% [none] % | 100% %none% [none] %
A0 23 AD | % | %
A0 23 AD | [sensor_name | [sensor_name
00 00 18 | %Number event3: (module #)% |
00 00 18 | %Number event3% | unknown)";
    for (const auto& row : rowsOf(rows))
        EXPECT_EQ(textOfToken(row[1], eventOf("0C 6F " + row[0])), row[2]) << row[1];
    translator.setSensorName("[severity] %CPU% %n");
    EXPECT_EQ(textOfToken("[sensor_name]!", {}), "[severity] %CPU% %n!") << "taken as it is";
    EXPECT_EQ(textOfToken("[sensor_name]!", {}), "the sensor!") << "given for one record only";
}

TEST_F(TranslatorOfRecords, VersionsFollowTheFirmwareFamilyWhereTheRecordIsLongEnough)
{
    textOfToken("%version%", {});
    std::vector<unsigned char> record(20);
    std::ranges::copy(Event{.sensorType = 0x0C, .event2 = 1, .event3 = 0x2A}.record(), record.begin());
    std::ranges::copy(std::string_view("\x0B\x7\tz"), record.begin() + 16);
    const std::pair<int, const wchar_t*> families[] = {
        {0, L"01.2a"}, {1, L"01.2a.0b.079"}, {2, L"01.2a....z"}, {3, L"01.2a.11"}};
    for (const auto& [family, version] : families) {
        translator.setPlatformBIOSID(family);
        EXPECT_EQ(translator.translate(record.data(), record.size()), version);
        EXPECT_EQ(translator.translate(record.data(), 16), L"01.2a");
    }
}

TEST_F(TranslatorOfRecords, VoltageFaultNamesTheBitOfItsByte)
{
    for (const auto& [bytes, offset] :
         {std::pair{"02 03 81 20", 5}, {"02 03 01 20", -1}, {"02 01 81 20", -1}, {"01 03 81 20", -1}})
        EXPECT_EQ(translator.getVoltageFaultSensorOffset(eventOf(bytes).record().data(), 16), offset) << bytes;
}

TEST(Records, RepositoryLeavesOutWhatIsNoSensor)
{
    auto locator = voltageSdr();
    locator[3] = 0x11;
    const SDRRepository repository({std::vector<std::uint8_t>(64), voltageSdr(), locator, {1, 2}});
    EXPECT_EQ(repository.size(), 1u);
    EXPECT_EQ(repository.find(0x200005).getIDString(), L"P5V");
    EXPECT_THROW(repository.find(0x200006), SDRRepositoryError);
    EXPECT_EQ(SDREntry(nullptr, 64).getIDString(), L"");
    for (const auto& [type, function, linear] :
         {std::tuple{1, 0x00, true}, {1, 0xEF, true}, {1, 0x70, false}, {2, 0, false}}) {
        auto sdr = voltageSdr();
        sdr[3] = static_cast<std::uint8_t>(type);
        sdr[23] = static_cast<std::uint8_t>(function);
        EXPECT_EQ(SDREntry(sdr.data(), static_cast<int>(sdr.size())).isLinear(), linear) << type << " " << function;
    }
}
