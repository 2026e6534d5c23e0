#include "TranslatorSupport.hpp"

#include "ipmi/States.hpp"
#include "translator/WideText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace translator;

namespace {

constexpr std::size_t longestDescription = 1023; ///< of the agent's event record
constexpr std::size_t longestSeverity = 19;

/// Each state that the standard names, its beginning and its end, with bytes that the standard knows. Which words they
/// have, the agent's own hold (tests/client/event-road.txt).
std::vector<Event> everyEvent()
{
    std::vector<Event> events;
    for (int eventType = 1; eventType <= 0x6F; ++eventType)
        for (int sensorType = 1; sensorType <= 0x2C; ++sensorType) {
            const auto states =
                ipmi::statesOf(static_cast<std::uint8_t>(eventType), static_cast<std::uint8_t>(sensorType));
            for (int offset = 0; offset < (eventType == 1 ? 12 : static_cast<int>(states.size())); ++offset) {
                if (eventType != 1 && !states[static_cast<std::size_t>(offset)].word)
                    continue;
                for (const int event2 : {0xFF, 0x00, 0x01, 0x02, 0x03, 0x08, 0x0B, 0x12}) {
                    const int upper = event2 == 0xFF ? 0 : eventType == 1 ? 0x50 : 0xF0;
                    for (const bool deasserted : {false, true})
                        events.push_back({sensorType, eventType, offset | upper, event2, event2, deasserted});
                }
            }
        }
    return events;
}

class ShippedFiles : public ::testing::TestWithParam<const char*> {
protected:
    TranslatorImpl translator{HWAGENT_TRANSLATIONS "hrs_enu.ini", "", true};
    std::string text(const Event& event) { return narrowText(translated(translator, event)); }
};

} // namespace

TEST_F(ShippedFiles, ThresholdTextsSayWhatWasCrossed)
{
    translator.setSDRRepository({voltageSdr()});
    EXPECT_EQ(
        text({.sensorType = 2, .eventType = 1, .event1 = 0x52, .event2 = 180, .event3 = 190}),
        "P5V reports its reading is at or below the Lower Critical threshold, reading 4.493 Volts, threshold "
        "4.743 Volts. Check the power supplies and the board that this voltage feeds; replace the faulty one if the "
        "deviation returns. Status is Lower Critical");
    auto sdr = voltageSdr();
    sdr[18] = 0x1B; // both sides, critical and non-critical
    sdr[37] = 190;
    sdr[38] = 170;
    sdr[40] = 100;
    sdr[41] = 120;
    translator.setSDRRepository({sdr});
    const std::tuple<int, int, std::string_view> rows[] = {
        {0x59, 180, " - transition to Non-Critical"}, {0x59, 169, " - transition to OK"},
        {0x57, 180, " - transition to OK"},           {0x19, 180, " - transition to OK"},
        {0x52, 110, " - transition to Non-Critical"}, {0x52, 121, " - transition to OK"}};
    for (const auto& [event1, reading, end] : rows)
        EXPECT_THAT(text({.sensorType = 2, .eventType = 1, .event1 = event1, .event2 = reading, .deasserted = true}),
                    ::testing::EndsWith(std::string(end)))
            << event1 << " " << reading;
}

TEST_F(ShippedFiles, BytesThatOnlyTheMakerCanReadAreShownAndNothingIsAdvised)
{
    constexpr char rows[] = R"(
0C 6F 31 FF 18 | an uncorrectable ECC error of the memory (module 24). Replace the memory module. | Critical
0C 6F 21 FF 18 | an uncorrectable ECC error of the memory (event data 3 18h). | Critical
0C 6F 01 00 18 | an uncorrectable ECC error of the memory (event data 3 18h). | Critical
0F 6F 80 0B | an error in the power-on self-test (event data 2 0Bh). | Critical
2A 6F A2 03 01 | a log-in with an invalid user name or password (event data 2 03h, event data 3 01h). | Non-Critical
C3 72 A2 01 | an event of type 72h (event data A2h 01h FFh). |
0C FE 00 | the end of an event of type 7Eh (event data 00h FFh FFh). |)";
    for (const auto& row : rowsOf(rows))
        EXPECT_EQ(text(eventOf(row[0])),
                  "the sensor reports " + row[1] + (row[2].empty() ? "" : " Status is " + row[2]));
    EXPECT_EQ(text(eventOf("01 01 A9 03 20")),
              "the sensor reports its reading is at or above the Upper Critical threshold (event data 2 03h, event "
              "data 3 20h). Status is Upper Critical");
    EXPECT_EQ(text(eventOf("0F 6F C0 0B")),
              "the sensor reports an error in the power-on self-test: firmware image corrupt. Restore the firmware "
              "image by its recovery procedure. Status is Critical");
    EXPECT_EQ(text(eventOf("0C 6F 01 FF FF C1")),
              "An OEM record of type C1h, of the manufacturer 262176 (0x040020), bytes 0C 05 6F 01 FF FF");
    EXPECT_EQ(text(eventOf("0C 6F 01 FF FF E0")),
              "An OEM record of type E0h, without a time, bytes 0D 0C 0B 4A 20 00 04 0C 05 6F 01 FF FF");
    EXPECT_EQ(translator.getEventSeverity(), L"Informational");
}

INSTANTIATE_TEST_SUITE_P(Languages, ShippedFiles,
                         ::testing::Values("hrs_enu.ini", "hrs_alder.ini", "hr_sel_de_DE.ini"));

TEST_P(ShippedFiles, EveryRecordEndsInAWholeTextOrACleanFailure)
{
    translator.setTranslationFile((std::string(HWAGENT_TRANSLATIONS) + GetParam()).c_str(), "");
    translator.setPlatformID(0x28);
    translator.setSDRRepository({voltageSdr()});
    std::set<int> failures;
    const auto check = [&](const Event& event) {
        failures.insert(failureOf([&] {
                            const std::string said = text(event);
                            EXPECT_LE(said.size(), longestDescription) << said;
                            EXPECT_LE(translator.getEventSeverity().size(), longestSeverity);
                            EXPECT_EQ(said.find_first_of("{[<>"), said.npos) << said;
                            EXPECT_EQ(said.find("%"), said.npos) << said;
                            EXPECT_FALSE(event.recordType == 2 && event.eventType == 0x6F && translator.hasFailed())
                                << said;
                        }).code);
    };
    for (int sensorType = 0; sensorType < 256; ++sensorType)
        for (int eventType = 0; eventType < 256; ++eventType)
            for (const int event1 : {eventType & 0x0F, 0xF0 | (sensorType & 0x0F), 0x50, 0xA7})
                check({sensorType, eventType & 0x7F, event1, sensorType, eventType, eventType > 0x7F});
    for (int recordType = 0; recordType < 256; ++recordType)
        for (int byte = 0; byte < 256; byte += 15)
            check({.sensorType = byte, .eventType = byte & 0x7F, .event2 = byte, .recordType = recordType});
    EXPECT_THAT(failures, ::testing::IsSubsetOf({0, 1270, 1271}));
}

TEST_P(ShippedFiles, EachEventOfTheStandardHasWordsForItsEndsThatNameTheSensorAndItsSeverity)
{
    const std::string file = std::string(HWAGENT_TRANSLATIONS) + GetParam();
    translator.setTranslationFile(file.c_str(), "");
    const TranslationFile loaded(file.c_str(), "");
    translator.setPlatformID(0x28);
    translator.setSDRRepository({voltageSdr()});
    const std::map<std::string_view, int> words{
        {"OK", 0}, {"Non-Critical", 1}, {"Critical", 2}, {"Non-Recoverable", 2}, {"", 0}};
    std::string before;
    for (const Event& event : everyEvent()) {
        const std::string said = text(event);
        EXPECT_TRUE(!event.deasserted || said != before) << said;
        EXPECT_EQ(said.find("event of type"), said.npos) << said;
        before = said;
        EXPECT_THAT(said, ::testing::StartsWith("P5V "));
        const std::string_view last = said.ends_with('.') ? "" : std::string_view(said).substr(said.rfind(' ') + 1);
        ASSERT_TRUE(words.contains(last)) << said;
        EXPECT_EQ(translator.getEventSeverity(), loaded.findSeverity(words.at(last))) << said;
    }
}
