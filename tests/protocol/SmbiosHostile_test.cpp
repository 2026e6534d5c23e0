#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/SmbiosImage.hpp"

#include <gtest/gtest.h>
#include <random>

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;
using Body = SmbiosImage::Body;

/// Reads a copy that ends where the image ends, so that the sanitizer sees a read behind it; 0 or the error.
int readAll(const std::string& image, ResultMap& values)
{
    const std::vector<unsigned char> copy(image.begin(), image.end());
    try {
        const SMBIOSProtocolImpl reader(copy.data(), static_cast<unsigned>(copy.size()));
        ResultMap types;
        reader.SMBiosSearch("/SMBIOS", types);
        for (const auto& [path, node] : types)
            reader.SMBiosSearch(path, values);
        return 0;
    } catch (const ResultStatus& status) {
        return status.getval();
    }
}

/// The values of a table of one sound chassis and what `spoil` adds.
ResultMap readSpoiled(void (*spoil)(SmbiosImage&))
{
    SmbiosImage image(2, 7);
    image.add(3, Body().text("Sound").byte(1));
    spoil(image);
    ResultMap values;
    EXPECT_EQ(readAll(image.dump(), values), 0);
    return values;
}

TEST(SmbiosHostile, SoundStructuresInFrontOfADefectStay)
{
    struct Case {
        const char* name;
        void (*spoil)(SmbiosImage&);
        bool walksOn; ///< the structure behind is reached
    };
    static const Case cases[] = {
        {"length 0", [](SmbiosImage& image) { image.addRaw(2, 0, 1, SmbiosImage::zeros(2)); }, false},
        {"length 1", [](SmbiosImage& image) { image.addRaw(2, 1, 1, SmbiosImage::zeros(2)); }, false},
        {"length 2", [](SmbiosImage& image) { image.addRaw(2, 2, 1, SmbiosImage::zeros(2)); }, false},
        {"length 3", [](SmbiosImage& image) { image.addRaw(2, 3, 1, SmbiosImage::zeros(2)); }, false},
        {"length behind the end", [](SmbiosImage& image) { image.addRaw(2, 255, 1, SmbiosImage::zeros(2)); }, false},
        {"only a header", [](SmbiosImage& image) { image.addRaw(2, 4, 1, SmbiosImage::zeros(2)); }, true},
        {"end of table", [](SmbiosImage& image) { image.add(127, Body()); }, false},
        {"empty first string", [](SmbiosImage& image) { image.addRaw(2, 5, 1, std::string("\x02\0Second\0\0", 10)); },
         true},
        {"string index beyond the list", [](SmbiosImage& image) { image.add(2, Body().byte(200).text("Only")); }, true},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        SmbiosImage image(2, 7);
        image.add(3, Body().text("Sound").byte(1));
        one.spoil(image);
        image.add(16, Body().bytes({3, 3, 3}));
        ResultMap values;
        EXPECT_EQ(readAll(image.dump(), values), 0);
        EXPECT_EQ(values.at("/SMBIOS/Type3/Manufacturer").mXNodeList.front(), "Sound");
        EXPECT_EQ(values.contains("/SMBIOS/Type16/Use"), one.walksOn);
    }
}

TEST(SmbiosHostile, LongStringsAreCutAndTheNextKeepsItsNumber)
{
    const ResultMap values =
        readSpoiled([](SmbiosImage& image) { image.add(2, Body().text(std::string(300, 'x')).text("Next")); });
    EXPECT_EQ(values.at("/SMBIOS/Type2/Manufacturer").mXNodeList.front(), std::string(255, 'x'));
    EXPECT_EQ(values.at("/SMBIOS/Type2/Product").mXNodeList.front(), "Next");
}

TEST(SmbiosHostile, HandlesThatAreCountedAndNotThereAreNotRead)
{
    const ResultMap values = readSpoiled([](SmbiosImage& image) {
        image.add(2, Body().bytes({0, 0, 0, 0, 0, 0, 0, 0, 0, 0}).byte(255).word(1));
    });
    EXPECT_EQ(values.at("/SMBIOS/Type2/ContainObjectHandles").mXNodeList.front(), "1");
}

TEST(SmbiosHostile, StringListWithoutEndClosesTheTable)
{
    const ResultMap values = readSpoiled(
        [](SmbiosImage& image) { image.addRaw(2, 6, 1, std::string("\x01\x02", 2) + "Whole" + '\0' + "Cut off"); });
    EXPECT_EQ(values.at("/SMBIOS/Type2/Manufacturer").mXNodeList.front(), "Whole");
    EXPECT_EQ(values.at("/SMBIOS/Type2/Product").mXNodeList.front(), "");
}

TEST(SmbiosHostile, CountsAndLengthsThatDisagreeEndAtTheSmaller)
{
    struct Case {
        const char* name;
        unsigned count, length;
        const char* tag;
    };
    // The whole table holds a chassis (13 bytes) and a board.
    static constexpr Case cases[] = {{"count too high", 65535, 0, "Board"},
                                     {"count too low", 1, 0, "(none)"},
                                     {"count 0", 0, 0, "(none)"},
                                     {"length within the board", 2, 20, "(none)"},
                                     {"length beyond the image", 2, 65535, "Board"}};
    for (const Case& one : cases) {
        SmbiosImage image(2, 7);
        image.add(3, Body().text("Sound").byte(1));
        image.add(2, Body().text("Board").bytes({0, 0, 0, 0, 0, 0}));
        image.count = one.count;
        image.tableLength = one.length;
        ResultMap values;
        EXPECT_EQ(readAll(image.dump(), values), 0) << one.name;
        const auto board = values.find("/SMBIOS/Type2/Manufacturer");
        EXPECT_EQ(board == values.end() ? "(none)" : board->second.mXNodeList.front(), one.tag) << one.name;
    }
}

TEST(SmbiosHostile, TableThatBeginsWithItsEndIsEmpty)
{
    SmbiosImage image(2, 7);
    image.add(127, Body());
    image.add(3, Body().text("Behind").byte(1));
    ResultMap values;
    EXPECT_EQ(readAll(image.dump(), values), 0);
    EXPECT_TRUE(values.empty());
}

TEST(SmbiosHostile, EntryPointsThatCannotBeTrustedAreRefused)
{
    struct Case {
        const char* name;
        void (*spoil)(std::string& dump);
        int error;
    };
    static const Case cases[] = {
        {"no anchor", [](std::string& dump) { dump[0] = 'x'; }, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"the other anchor", [](std::string& dump) { dump.replace(0, 5, "_SM3_"); }, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"sum", [](std::string& dump) { ++dump[4]; }, ERROR_CHECKSUM_INCORRECT},
        {"length 0", [](std::string& dump) { dump[5] = 0; }, ERROR_CHECKSUM_INCORRECT},
        {"length 255",
         [](std::string& dump) {
             dump[5] = '\xFF';
             dump.resize(200);
         },
         ERROR_CHECKSUM_INCORRECT},
        {"cut off", [](std::string& dump) { dump.resize(20); }, ERROR_CHECKSUM_INCORRECT},
        {"empty", [](std::string& dump) { dump.clear(); }, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"table outside", [](std::string& dump) { dump = SmbiosImage(2, 7).entryPoint(0x10000); },
         ERROR_NO_SMBIOS_ENTRY_PTR}};
    for (const Case& one : cases) {
        std::string dump = serverImage(2, 7).dump();
        one.spoil(dump);
        ResultMap values;
        EXPECT_EQ(readAll(dump, values), one.error) << one.name;
    }
}

/// The longest table there can be, of structures of every type and length.
TEST(SmbiosHostile, TableOf65535BytesIsReadToItsEnd)
{
    SmbiosImage image(3, 0);
    while (image.table.size() + 64 < 65535)
        image.add(image.count % 120, Body().bytes({1, 1, 1, 1}).dword(image.count).text("Text"));
    image.table.resize(65535, '\x05');
    const std::string dump = image.dump();
    const SMBIOSProtocolImpl reader(reinterpret_cast<const unsigned char*>(dump.data()),
                                    static_cast<unsigned>(dump.size()));
    const auto* const last = reader.FindRecord(static_cast<std::uint16_t>(0x100 + image.count - 1));
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->number(8, 4), image.count - 1);
}

/// Each of 4,000 arrays would claim each of 4,000 devices.
TEST(SmbiosHostile, DevicesOfArraysWithOneHandleHaveOnePlace)
{
    SmbiosImage image(2, 7);
    for (int i = 0; i < 4000; ++i) {
        image.addRaw(16, 4, 7, SmbiosImage::zeros(2));
        image.addRaw(17, 6, 8, Body().word(7).data + SmbiosImage::zeros(2));
    }
    const std::string dump = image.dump();
    const SMBIOSProtocolImpl reader(reinterpret_cast<const unsigned char*>(dump.data()),
                                    static_cast<unsigned>(dump.size()));
    ResultMap first;
    reader.SMBiosSearch("/SMBIOS/MemoryArray[1]/MemoryDevice", first);
    EXPECT_EQ(first.size(), 4000U);
    ResultMap second;
    reader.SMBiosSearch("/SMBIOS/MemoryArray[2]/MemoryDevice", second);
    EXPECT_TRUE(second.empty());
}

/// Bytes of the table, and now and then its end, are changed at random; the seed is fixed, so that a failure repeats.
TEST(SmbiosHostile, MutatedTablesAreReadWithinTheirBounds)
{
    std::mt19937 random(20101121);
    const std::string sound = serverImage(2, 7).table;
    std::size_t answered = 0;
    for (int round = 0; round < 400; ++round) {
        SmbiosImage image(2, 3 + round % 5);
        image.table = sound;
        image.count = 64;
        for (unsigned change = 0; change < 1 + random() % 8; ++change)
            image.table[random() % image.table.size()] = static_cast<char>(random());
        if (round % 4 == 0)
            image.table.resize(1 + random() % image.table.size());
        ResultMap values;
        EXPECT_EQ(readAll(image.dump(), values), 0) << "round " << round;
        answered += !values.empty();
    }
    EXPECT_GT(answered, 300U);
}

} // namespace
