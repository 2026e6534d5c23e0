#include "TranslatorSupport.hpp"

#include "common/ErrorName.hpp"
#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

#include <gtest/gtest.h>

using namespace translator;

namespace {

TranslationFile fileOf(std::wstring_view text)
{
    return TranslationFile(parseTranslations(text));
}

std::wstring sectionOf(int number, std::wstring_view lines, int count = 99)
{
    return L"$" + std::to_wstring(number) + L" " + std::to_wstring(count) + L"\n&heading 1 2 3\n" +
           std::wstring(lines) + L"^\n";
}

template<class Error, class Lookup>
std::string errorOf(Lookup lookup)
{
    try {
        lookup();
    } catch (const Error& error) {
        return narrowText(error.getText());
    }
    return "";
}

} // namespace

TEST(TranslationFile, WordSectionsFillTheirTablesInAnyOrder)
{
    std::wstring text = L"a remark\n";
    for (const int number : {15, 3, 1, 14, 5, 2, 7, 4, 6})
        text += sectionOf(number, L"1F\t\"word " + std::to_wstring(number) + L"\"\n");
    const TranslationFile file = fileOf(text + sectionOf(0, L"Oak:1F\t\"word 0\"\n"));
    const std::vector<std::wstring> words = {
        file.findModel(0x1F),      file.findDevice(0x1F),     file.findDevice1(0x1F),  file.findSeverity(0x1F),
        file.findSensorType(0x1F), file.findSensorUnit(0x1F), file.findEntityID(0x1F), file.findProductID(0x1F)};
    for (std::size_t number = 0; number < words.size(); ++number)
        EXPECT_EQ(words[number], L"word " + std::to_wstring(number));
    EXPECT_EQ(file.findRecommendation(0x1F), L"word 14");
    EXPECT_EQ(file.findMiscString(0x1F), L"word 15");
}

TEST(TranslationFile, MalformedLinesAreLeftOutAndTheOthersKept)
{
    const std::wstring tooLong = L"2\t\"" + std::wstring(5000, L'x') + L"\"\n";
    const TranslationFile file =
        fileOf(sectionOf(15, L"1\t\"unclosed\n" + tooLong + L"\"no number\"\n3\tno quotes\n\n" +
                                 std::wstring(L"\0\0\n", 3) + L"4\t\"good\"\r\n"));
    EXPECT_EQ(file.findMiscString(4), L"good");
    for (const int absent : {1, 2, 3})
        EXPECT_THROW(file.findMiscString(absent), MetaInfoTableError);
    const TranslationFile events =
        fileOf(L"$x 1\n" + sectionOf(9, L"&0c\t0\nxx\n01\t100\t\t0\t0\t\t\"too large\"\n0a\t\t\t0\t0\t\t\"good\"\n"));
    EXPECT_EQ(events.findSpecificTranslation({.sensorType = 0x0C, .event1 = 0x0A}).translation, L"good");
    EXPECT_THROW(events.findSpecificTranslation({.sensorType = 0x0C, .event1 = 1}), EventTableError);
}

TEST(TranslationFile, TheCountBoundsASectionAndAHugeOneDoesNoHarmAndSectionSixteenEndsTheReading)
{
    const TranslationFile ended = fileOf(sectionOf(3, L"1\t\"kept\"\n") + L"$16 0\n^" + sectionOf(4, L"1\t\"lost\"\n"));
    EXPECT_EQ(ended.findSeverity(1), L"kept");
    EXPECT_THROW(ended.findSensorType(1), MetaInfoTableError);
    EXPECT_THROW(fileOf(sectionOf(15, L"1\t\"a\"\n2\t\"b\"\n", 1)).findMiscString(2), MetaInfoTableError);
    const std::wstring_view groups =
        L"&2016F0C\t0\n1\t\t\t\t\t\t\"type too large\"\n\n&0301\t0\n1\t\t\t\t\t\t\"last\"\n";
    const TranslationFile bounded = fileOf(sectionOf(12, groups, 1));
    EXPECT_THROW(bounded.findOverrideTranslation({.eventType = 3, .sensorType = 1, .event1 = 1}), OverrideTableError);
    EXPECT_THROW(bounded.findOverrideTranslation({.eventType = 0x6F, .sensorType = 0x0C, .event1 = 1}),
                 OverrideTableError);
    const TranslationFile file = fileOf(L"$15 2147483648999999\n&\n1\t\"a\"\n");
    EXPECT_EQ(file.findMiscString(1), L"a");
}

TEST(TranslationFile, ExactEventDataGoBeforeAny)
{
    const TranslationFile file = fileOf(sectionOf(9, L"&0F\t1\n"
                                                     L"02\t\t\t0\t0\t0\t\"any\"\n"
                                                     L"02\t05\t\t0\t0\t0\t\"data 2\"\n"
                                                     L"02\t\t06\t0\t0\t0\t\"data 3\"\n"
                                                     L"02\t05\t06\t0\t0\t0\t\"both\"\n"
                                                     L"\n03\t\t\t0\t0\t0\t\"behind the group's end\"\n"
                                                     L"&10\t0\n02\t\t06\t0\t0\t0\t\"data 3 is no key\"\n"));
    const auto textOf = [&](unsigned type, unsigned data2, unsigned data3) {
        return file.findSpecificTranslation({.sensorType = type, .event1 = 2, .event2 = data2, .event3 = data3})
            .translation;
    };
    EXPECT_EQ(textOf(0x0F, 5, 6), L"both");
    EXPECT_EQ(textOf(0x0F, 5, 7), L"data 2");
    EXPECT_EQ(textOf(0x0F, 4, 6), L"data 3");
    EXPECT_EQ(textOf(0x0F, 4, 7), L"any");
    EXPECT_EQ(textOf(0x10, 4, 7), L"data 3 is no key");
    EXPECT_THROW(file.findSpecificTranslation({.sensorType = 0x0F, .event1 = 3}), EventTableError);
}

TEST(TranslationFile, AMissingEventIsNamedInTheErrorOfItsTable)
{
    const TranslationFile file = fileOf(L"");
    const EventKey key{.eventType = 0x6F, .sensorType = 0x0C, .event1 = 0xA3, .event2 = 0x1B, .event3 = 2};
    EXPECT_EQ(errorOf<MetaInfoTableError>([] { fileOf(sectionOf(15, L"1\t\"\"\n")).findMiscString(1); }),
              "Cannot find the miscellaneous string in the translation file represented by the index 0x1. Please check "
              "to make sure it is defined.")
        << "empty";
    EXPECT_EQ(errorOf<EventTableError>([&] { file.findGenericTranslation(key); }),
              "Unable to translate generic event with type code 0x6f and offset 0x3");
    EXPECT_EQ(errorOf<EventTableError>([&] { file.findSpecificTranslation(key); }),
              "Unable to translate sensor-specific event with type code 0xc, offset 0x3, event2 0x1b, and event3 0x2");
    EXPECT_THROW(file.findOverrideTranslation(key), OverrideTableError);
    EXPECT_THROW(file.findPlatformOverrideTranslation(0x28, key), PlatformTableError);
}

TEST(TranslationFile, AMissingFileIsError1183)
{
    TempRoot folder;
    const auto open = [](const std::string& name) {
        return failureOf([&] { TranslationFile(name.c_str(), "de_DE.utf8"); }).code;
    };
    EXPECT_EQ(open(folder.resolve("/hrs_enu.ini")), ERROR_NO_HRS_INI_FILE_PRESENT);
    EXPECT_EQ(open(folder.resolve("/")), ERROR_NO_HRS_INI_FILE_PRESENT) << "a directory is no file";
    EXPECT_EQ(open(folder.write("/empty.ini", "")), 0);
}
