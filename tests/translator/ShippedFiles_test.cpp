#include "TranslatorSupport.hpp"

#include "translator/WideText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace translator;

using ::testing::HasSubstr;

namespace {

constexpr std::size_t longestDescription = 1023; ///< of the agent's event record
constexpr std::size_t longestSeverity = 19;

/// How many offsets each type has, by the event tables of the standard; sensor types as 100h + type.
const std::map<int, int> offsetsOfTypes{
    {0x01, 12}, {0x02, 3},  {0x03, 2},   {0x04, 2},  {0x05, 2},   {0x06, 2},   {0x07, 9},  {0x08, 2},  {0x09, 2},
    {0x0A, 9},  {0x0B, 8},  {0x0C, 4},   {0x105, 7}, {0x106, 6},  {0x107, 13}, {0x108, 8}, {0x109, 8}, {0x10C, 11},
    {0x10D, 9}, {0x10F, 3}, {0x110, 7},  {0x111, 8}, {0x112, 6},  {0x113, 12}, {0x114, 5}, {0x119, 2}, {0x11B, 2},
    {0x11D, 8}, {0x11E, 5}, {0x11F, 11}, {0x120, 6}, {0x121, 10}, {0x122, 15}, {0x123, 9}, {0x124, 4}, {0x125, 3},
    {0x127, 2}, {0x128, 6}, {0x129, 3},  {0x12A, 4}, {0x12B, 8},  {0x12C, 8}};
const std::map<int, std::vector<int>> gaps{{0x123, {4, 5, 6, 7}}, {0x122, {13}}};

/// Each offset of the standard as an assertion: of its sensor type, or of a generic type at each of a few sensor types.
std::vector<Event> standardEvents()
{
    std::vector<Event> events;
    for (const auto& [type, count] : offsetsOfTypes)
        for (int offset = 0; offset < count; ++offset) {
            if (gaps.contains(type) && std::ranges::count(gaps.at(type), offset) != 0)
                continue;
            if (type >= 0x100)
                events.push_back({.sensorType = type & 0xFF, .event1 = offset});
            else
                for (const int sensorType : {0x02, 0x04, 0x07, 0x08, 0x0A, 0x0C, 0x0D, 0x13, 0x17, 0xDC})
                    events.push_back({.sensorType = sensorType, .eventType = type, .event1 = offset});
        }
    return events;
}

/// The same with the end of each, and both with bytes that the standard knows.
std::vector<Event> everyEvent()
{
    std::vector<Event> events;
    for (const Event& event : standardEvents())
        for (const bool deasserted : {false, true})
            for (const int event2 : {0xFF, 0x00, 0x01, 0x02, 0x03, 0x08, 0x0B, 0x12}) {
                Event variant = event;
                variant.deasserted = deasserted;
                variant.event2 = event2;
                variant.event3 = event2;
                variant.event1 |= event2 == 0xFF ? 0 : event.eventType == 0x01 ? 0x50 : 0xF0;
                events.push_back(variant);
            }
    return events;
}

/// Phrases by which the agent chooses the trap of a failure.
constexpr std::string_view failurePhrases[] = {"power supply's presence has been lost",
                                               "power supply has suffered a failure",
                                               "predictive failure has been detected",
                                               "input (AC/DC) has been lost",
                                               "Input (AC/DC) Lost",
                                               "correctable ECC",
                                               "Parity Error",
                                               "memory scrub failed",
                                               "IERR (Internal Error)",
                                               "Thermal Trip",
                                               "FRB1/BIST Failure",
                                               "FRB2/Hang in POST Failure",
                                               "FRB3:",
                                               "Configuration Error",
                                               "processor has been disabled",
                                               "Uncorrectable CPU-Complex Error",
                                               "undetermined system hardware failure",
                                               "drive removed",
                                               "there has been a chassis intrusion",
                                               "it has been asserted"};

class ShippedFiles : public ::testing::TestWithParam<const char*> {
protected:
    TranslatorImpl translator{HWAGENT_TRANSLATIONS "hrs_enu.ini", "", true};
    std::string text(const Event& event) { return narrowText(translated(translator, event)); }
};

} // namespace

TEST_F(ShippedFiles, NoRecoveryHoldsThePhraseOfAFailure)
{
    for (const Event& event : everyEvent()) {
        const std::string said = text(event);
        const bool isRecovery = event.deasserted && said.ends_with("OK");
        for (const std::string_view phrase : failurePhrases)
            EXPECT_FALSE(isRecovery && said.find(phrase) != said.npos) << said;
    }
}

TEST_F(ShippedFiles, EachEventOfTheStandardHasWordsForItsBeginningAndForItsEnd)
{
    for (Event event : standardEvents()) {
        const std::string begin = text(event);
        event.deasserted = true;
        const std::string end = text(event);
        EXPECT_NE(begin, end);
        EXPECT_EQ((begin + end).find("event of type"), begin.npos) << begin;
    }
}

TEST_F(ShippedFiles, ThresholdTextsSayWhatWasCrossed)
{
    translator.setSDRRepository({voltageSdr()});
    EXPECT_EQ(
        text({.sensorType = 2, .eventType = 1, .event1 = 0x52, .event2 = 180, .event3 = 190}),
        "P5V reports its reading is at or below the Lower Critical threshold, reading 4.493 Volts, threshold "
        "4.743 Volts. Check the power supplies and the board that this voltage feeds; replace the faulty one if the "
        "deviation returns. Status is Lower Critical");
    EXPECT_EQ(text({.sensorType = 2, .eventType = 1, .event1 = 0x59, .event2 = 180, .event3 = 190, .deasserted = true}),
              "P5V reports its reading is back below the Upper Critical threshold, reading 4.493 Volts, threshold "
              "4.743 Volts - transition to OK");
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
    for (int offset = 0; offset < 12; ++offset)
        EXPECT_THAT(text({.sensorType = 2, .eventType = 1, .event1 = offset}),
                    HasSubstr(offset < 6 ? "the Lower " : "the Upper "));
}

TEST_F(ShippedFiles, BytesThatOnlyTheMakerCanReadAreShownAndNothingIsAdvised)
{
    const Event known{.sensorType = 0x0C, .event1 = 0x31, .event3 = 24};
    const std::pair<Event, std::string_view> rows[] = {
        {known, "the sensor reports an uncorrectable ECC error of the memory (module 24). Replace the memory module. "
                "Status is Critical"},
        {{.sensorType = 0x0C, .event1 = 0x21, .event3 = 24},
         "the sensor reports an uncorrectable ECC error of the memory (event data 3 18h). Status is Critical"},
        {{.sensorType = 0x0C, .event1 = 0x01, .event2 = 0x00, .event3 = 24},
         "the sensor reports an uncorrectable ECC error of the memory (event data 3 18h). Status is Critical"},
        {{.sensorType = 0x0C, .event1 = 0x01},
         "the sensor reports an uncorrectable ECC error of the memory. Replace the memory module. Status is Critical"},
        {{.sensorType = 0x0F, .event1 = 0xC0, .event2 = 0x0B},
         "the sensor reports an error in the power-on self-test: firmware image corrupt. Restore the firmware image by "
         "its recovery procedure. Status is Critical"},
        {{.sensorType = 0x0F, .event1 = 0x80, .event2 = 0x0B},
         "the sensor reports an error in the power-on self-test (event data 2 0Bh). Status is Critical"},
        {{.sensorType = 0x2A, .event1 = 0xA2, .event2 = 3, .event3 = 1},
         "the sensor reports a log-in with an invalid user name or password (event data 2 03h, event data 3 01h). "
         "Status is Non-Critical"},
        {{.sensorType = 0x01, .eventType = 0x01, .event1 = 0xA9, .event2 = 3, .event3 = 0x20},
         "the sensor reports its reading is at or above the Upper Critical threshold (event data 2 03h, event data 3 "
         "20h). Status is Upper Critical"},
    };
    for (const auto& [event, said] : rows)
        EXPECT_EQ(text(event), said);
}

TEST_F(ShippedFiles, WhatNoTableKnowsIsToldByItsBytes)
{
    const std::pair<Event, std::string_view> rows[] = {
        {{.sensorType = 0xC3, .eventType = 0x72, .event1 = 0xA2, .event2 = 1},
         "the sensor reports an event of type 72h (event data A2h 01h FFh)."},
        {{.sensorType = 0x0C, .eventType = 0x7E, .deasserted = true},
         "the sensor reports the end of an event of type 7Eh (event data 00h FFh FFh)."},
        {{.sensorType = 0xC3, .event1 = 5}, "the sensor reports an event of type 6Fh (event data 05h FFh FFh)."},
        {{.sensorType = 0x08, .event1 = 0x0E}, "the sensor reports an event of type 6Fh (event data 0Eh FFh FFh)."},
        {{.sensorType = 0x0C, .eventType = 0x6F, .event1 = 1, .recordType = 0xC1},
         "An OEM record of type C1h, of the manufacturer 262176 (0x040020), bytes 0C 05 6F 01 FF FF"},
        {{.sensorType = 0x0C, .event1 = 1, .recordType = 0xE0},
         "An OEM record of type E0h, without a time, bytes 0D 0C 0B 4A 20 00 04 0C 05 6F 01 FF FF"},
    };
    for (const auto& [event, said] : rows)
        EXPECT_EQ(text(event), said);
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
                check({.sensorType = sensorType,
                       .eventType = eventType & 0x7F,
                       .event1 = event1,
                       .event2 = sensorType,
                       .event3 = eventType,
                       .deasserted = eventType > 0x7F});
    for (int recordType = 0; recordType < 256; ++recordType)
        for (int byte = 0; byte < 256; byte += 15)
            check({.sensorType = byte, .eventType = byte & 0x7F, .event2 = byte, .recordType = recordType});
    EXPECT_THAT(failures, ::testing::IsSubsetOf({0, 1270, 1271}));
}

TEST_P(ShippedFiles, EveryTextNamesTheSensorAndEndsInItsSeverity)
{
    const std::string file = std::string(HWAGENT_TRANSLATIONS) + GetParam();
    translator.setTranslationFile(file.c_str(), "");
    const TranslationFile loaded(file.c_str(), "");
    translator.setPlatformID(0x28);
    translator.setSDRRepository({voltageSdr()});
    const std::map<std::string_view, int> words{
        {"OK", 0}, {"Non-Critical", 1}, {"Critical", 2}, {"Non-Recoverable", 2}, {"", 0}};
    for (const Event& event : everyEvent()) {
        const std::string said = text(event);
        EXPECT_THAT(said, ::testing::StartsWith("P5V "));
        const std::string_view last = said.ends_with('.') ? "" : std::string_view(said).substr(said.rfind(' ') + 1);
        ASSERT_TRUE(words.contains(last)) << said;
        EXPECT_EQ(translator.getEventSeverity(), loaded.findSeverity(words.at(last))) << said;
    }
}

TEST_F(ShippedFiles, GermanSaysTheSameEventInGerman)
{
    translator.setTranslationFile(HWAGENT_TRANSLATIONS "hrs_enu.ini", "de_DE.utf8");
    translator.setSDRRepository({voltageSdr()});
    EXPECT_EQ(
        text({.sensorType = 2, .eventType = 1, .event1 = 0x59, .event2 = 180, .event3 = 190, .deasserted = true}),
        "P5V meldet: Messwert wieder unter der Schwelle (obere, kritisch), Messwert 4.493 Volt, Schwelle 4.743 Volt "
        "- \xC3\x9C"
        "bergang zu OK");
}
