#include "TranslatorSupport.hpp"

#include "translator/WideText.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace translator;

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

constexpr std::size_t longestDescription = 1023; ///< of the agent's event record
constexpr std::size_t longestSeverity = 19;

/// The agent's severity (3 to 6, 2 for none) by the last word of a text.
int severityByTail(std::string_view text)
{
    constexpr std::pair<std::string_view, int> words[] = {
        {"OK", 3}, {"Non-Critical", 4}, {"Critical", 5}, {"Non-Recoverable", 6}};
    for (const auto& [word, severity] : words)
        if (text.ends_with(word))
            return severity;
    return 2;
}

class ShippedFiles : public ::testing::TestWithParam<const char*> {
protected:
    TranslatorImpl translator{HWAGENT_TRANSLATIONS "hrs_enu.ini", "", true};
    std::string text(const Event& event) { return narrowText(translated(translator, event)); }
};

std::string nameOf(const Event& event)
{
    return "sensor type " + std::to_string(event.sensorType) + ", event type " + std::to_string(event.eventType) +
           ", offset " + std::to_string(event.event1 & 15) + (event.deasserted ? ", deasserted" : "");
}

} // namespace

TEST_F(ShippedFiles, TextsThatAreComparedAsAWholeStandAlone)
{
    for (const int sensorType : {0x02, 0x04}) {
        EXPECT_EQ(text({.sensorType = sensorType, .eventType = 6, .event1 = 0}), "performance has been met");
        EXPECT_EQ(text({.sensorType = sensorType, .eventType = 6, .event1 = 1}), "performance is lagging");
    }
    // The chassis rules ask for two other texts first, so that this one chooses no trap of its own.
    EXPECT_EQ(text({.sensorType = 5, .event1 = 4}), "LAN Leash Lost: System Unplugged From LAN");
    EXPECT_THAT(text({.sensorType = 5}), HasSubstr("there has been a chassis intrusion"));
    EXPECT_THAT(text({.sensorType = 5, .deasserted = true}), HasSubstr("the chassis is now closed"));
    EXPECT_THAT(text({.sensorType = 5, .deasserted = true}), Not(HasSubstr("there has been a chassis intrusion")));
}

TEST_F(ShippedFiles, TheLastWordTellsTheSeverity)
{
    const std::pair<Event, int> rows[] = {
        {{.sensorType = 0x08, .event1 = 0}, 3},
        {{.sensorType = 0x08, .event1 = 1}, 5},
        {{.sensorType = 0x08, .event1 = 1, .deasserted = true}, 3},
        {{.sensorType = 0x08, .event1 = 2}, 4},
        {{.sensorType = 0x08, .eventType = 0x0B, .event1 = 0}, 3},
        {{.sensorType = 0x08, .eventType = 0x01, .event1 = 0x57}, 4},
        {{.sensorType = 0x08, .eventType = 0x01, .event1 = 0x59}, 5},
        {{.sensorType = 0x08, .eventType = 0x01, .event1 = 0x5B}, 6},
        {{.sensorType = 0x08, .eventType = 0x01, .event1 = 0x5B, .deasserted = true}, 3},
        {{.sensorType = 0x0C, .event1 = 0}, 4},
        {{.sensorType = 0x0C, .event1 = 1}, 5},
        {{.sensorType = 0x0C, .eventType = 0x0B, .event1 = 1}, 5},
        {{.sensorType = 0x0A, .eventType = 0x0B, .event1 = 0}, 3},
        {{.sensorType = 0x0A, .eventType = 0x0B, .event1 = 1}, 5},
        {{.sensorType = 0x0A, .eventType = 0x0B, .event1 = 2}, 4},
        {{.sensorType = 0x0A, .eventType = 0x07, .event1 = 3}, 6},
        {{.sensorType = 0x07, .event1 = 2}, 6},
    };
    for (const auto& [event, severity] : rows)
        EXPECT_EQ(severityByTail(text(event)), severity) << text(event);
}

TEST_F(ShippedFiles, ThresholdTextsSayWhatWasCrossed)
{
    translator.setSDRRepository({voltageSdr()});
    EXPECT_EQ(
        text({.sensorType = 2, .eventType = 1, .event1 = 0x52, .event2 = 180, .event3 = 190}),
        "P5V reports its reading is at or below the Lower Critical threshold (reading 4.493, threshold 4.743, unit "
        "Volts). Check the power supplies and the board that this voltage feeds; replace them if the deviation "
        "returns. Status is Lower Critical");
    EXPECT_EQ(
        text({.sensorType = 2, .eventType = 1, .event1 = 0x59, .event2 = 180, .event3 = 190, .deasserted = true}),
        "P5V reports its reading is back below the Upper Critical threshold (reading 4.493, threshold 4.743, unit "
        "Volts) - transition to OK");
    for (int offset = 0; offset < 12; ++offset)
        EXPECT_THAT(text({.sensorType = 2, .eventType = 1, .event1 = offset}),
                    HasSubstr(offset < 6 ? "the Lower " : "the Upper "));
}

TEST_F(ShippedFiles, EveryEventOfTheStandardHasAText)
{
    // How many offsets each type has, by the event tables of the standard; sensor types as 100h + type.
    const std::map<int, std::vector<int>> gaps{{0x123, {4, 5, 6, 7}}, {0x122, {13}}};
    const std::map<int, int> offsets{
        {0x01, 12}, {0x02, 3},  {0x03, 2},   {0x04, 2},  {0x05, 2},   {0x06, 2},   {0x07, 9},  {0x08, 2},  {0x09, 2},
        {0x0A, 9},  {0x0B, 8},  {0x0C, 4},   {0x105, 7}, {0x106, 6},  {0x107, 13}, {0x108, 8}, {0x109, 8}, {0x10C, 11},
        {0x10D, 9}, {0x10F, 3}, {0x110, 7},  {0x111, 8}, {0x112, 6},  {0x113, 12}, {0x114, 5}, {0x119, 2}, {0x11B, 2},
        {0x11D, 8}, {0x11E, 5}, {0x11F, 11}, {0x120, 6}, {0x121, 10}, {0x122, 15}, {0x123, 9}, {0x124, 4}, {0x125, 3},
        {0x127, 2}, {0x128, 6}, {0x129, 3},  {0x12A, 4}, {0x12B, 8},  {0x12C, 8}};
    for (const auto& [type, count] : offsets) {
        for (int offset = 0; offset < count; ++offset) {
            const bool specific = type >= 0x100;
            const Event event{
                .sensorType = specific ? type & 0xFF : 0x17, .eventType = specific ? 0x6F : type, .event1 = offset};
            const bool gap = gaps.contains(type) && std::ranges::count(gaps.at(type), offset) != 0;
            EXPECT_EQ(failureOf([&] { EXPECT_NE(text(event), ""); }) != 0, gap) << nameOf(event);
        }
    }
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
            EXPECT_EQ(said.find_first_of("{["), said.npos) << said;
            EXPECT_EQ(said.find("%"), said.npos) << said;
            EXPECT_FALSE(event.recordType == 2 && event.eventType == 0x6F && translator.hasFailed()) << nameOf(event);
        }));
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

TEST_P(ShippedFiles, EveryOffsetOfTheCommonSensorsEndsWithASeverity)
{
    translator.setTranslationFile((std::string(HWAGENT_TRANSLATIONS) + GetParam()).c_str(), "");
    for (const int sensorType : {0x07, 0x08, 0x09, 0x0A, 0x0C, 0x0D, 0x21})
        for (const int eventType : {0x01, 0x03, 0x07, 0x0B, 0x6F})
            for (int event1 = 0; event1 < 32; ++event1)
                failureOf([&] {
                    const Event event{.sensorType = sensorType,
                                      .eventType = eventType,
                                      .event1 = event1 & 15,
                                      .deasserted = event1 > 15};
                    const std::string said = text(event);
                    EXPECT_TRUE(severityByTail(said) != 2) << nameOf(event) << ": " << said;
                });
}

TEST_F(ShippedFiles, GermanSaysTheSameEventInGerman)
{
    translator.setTranslationFile(HWAGENT_TRANSLATIONS "hrs_enu.ini", "de_DE.utf8");
    translator.setSDRRepository({voltageSdr()});
    EXPECT_EQ(text({.sensorType = 2, .eventType = 1, .event1 = 0x59, .event2 = 180, .event3 = 190, .deasserted = true}),
              "P5V meldet: Messwert wieder unter der Schwelle (obere, kritisch: Messwert 4.493, Schwelle 4.743, "
              "Einheit Volt) "
              "- \xC3\x9C"
              "bergang zu OK");
}
