#include "common/ErrorName.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/Failure.hpp"
#include "tests/support/SmbiosImage.hpp"

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;

/// Reads a copy that ends where the image ends, so that the sanitizer sees a read behind it; 0 or the error.
int readAll(const std::string& image, ResultMap& values)
{
    const std::vector<unsigned char> copy(image.begin(), image.end());
    return failureOf([&] {
               const SMBIOSProtocolImpl reader(copy.data(), static_cast<unsigned>(copy.size()));
               ResultMap types;
               reader.SMBiosSearch("/SMBIOS", types);
               for (const auto& [path, node] : types)
                   reader.SMBiosSearch(path, values);
           })
        .code;
}

std::string valueIn(const ResultMap& values, const std::string& path)
{
    const auto found = values.find("/SMBIOS/" + path);
    return found == values.end() ? "(none)" : found->second.mXNodeList.front();
}

/// A sound chassis, one structure with a defect, and a memory array behind it.
TEST(SmbiosHostile, SoundStructuresInFrontOfADefectStay)
{
    struct Case {
        const char* name;
        unsigned length;
        std::string rest;
        bool walksOn; ///< the structure behind is reached
        const char *path = "Type3/Manufacturer", *value = "Sound";
        unsigned type = 2;
    };
    const std::string none = SmbiosImage::zeros(2), endless = std::string("\x01\x02", 2) + "Whole" + '\0' + "Cut off";
    const std::string longString(300, 'x'), cut(255, 'x');
    const Case cases[] = {
        {"length 0", 0, none, false},
        {"length 3", 3, none, false},
        {"length behind the end", 255, none, false},
        {"only a header", 4, none, true},
        {"end of table", 4, none, false, "Type3/Manufacturer", "Sound", 127},
        {"empty first string", 5, std::string("\x02\0Second\0\0", 10), true},
        {"string index beyond the list", 5, std::string("\xC8Only\0\0", 7), true, "Type2/Manufacturer", ""},
        {"long string", 6, std::string("\1\2", 2) + longString + '\0' + "Next" + none, true, "Type2/Manufacturer",
         cut.c_str()},
        {"number behind a long string", 6, std::string("\1\2", 2) + longString + '\0' + "Next" + none, true,
         "Type2/Product", "Next"},
        {"more handles told than there are", 17, SmbiosImage::zeros(10) + std::string("\xFF\1\0", 3) + none, true,
         "Type2/ContainObjectHandles", "1"},
        {"list without end", 6, endless, false, "Type2/Manufacturer", "Whole"},
        {"string cut off by the end", 6, endless, false, "Type2/Product", ""},
    };
    for (const Case& one : cases) {
        SmbiosImage image(2, 7);
        image.add(3, bodyOf("'Sound' 01"));
        image.addRaw(one.type, one.length, 1, one.rest);
        if (one.rest != endless)
            image.add(16, bodyOf("03 03 03"));
        ResultMap values;
        EXPECT_EQ(readAll(image.dump(), values), 0) << one.name;
        EXPECT_EQ(valueIn(values, one.path), one.value) << one.name;
        EXPECT_EQ(values.contains("/SMBIOS/Type16/Use"), one.walksOn) << one.name;
    }
}

TEST(SmbiosHostile, CountsAndLengthsThatDisagreeEndAtTheSmaller)
{
    // The whole table holds a chassis (13 bytes) and a board: count, length, what the board is.
    constexpr std::tuple<const char*, unsigned, unsigned, const char*> cases[] = {
        {"count too high", 65535, 0, "Board"},
        {"count too low", 1, 0, "(none)"},
        {"count 0", 0, 0, "(none)"},
        {"length within the board", 2, 20, "(none)"},
        {"length beyond the image", 2, 65535, "Board"}};
    for (const auto& [name, count, length, tag] : cases) {
        SmbiosImage image(2, 7);
        image.add(3, bodyOf("'Sound' 01"));
        image.add(2, bodyOf("'Board' *6"));
        image.count = count;
        image.tableLength = length;
        ResultMap values;
        EXPECT_EQ(readAll(image.dump(), values), 0) << name;
        EXPECT_EQ(valueIn(values, "Type2/Manufacturer"), tag) << name;
    }
}

TEST(SmbiosHostile, EntryPointsThatCannotBeTrustedAreRefused)
{
    const std::tuple<const char*, void (*)(std::string & dump), int> cases[] = {
        {"no anchor", [](std::string& dump) { dump[0] = 'x'; }, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"the other anchor", [](std::string& dump) { dump.replace(0, 5, "_SM3_"); }, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"sum", [](std::string& dump) { ++dump[4]; }, ERROR_CHECKSUM_INCORRECT},
        {"length 0", [](std::string& dump) { dump[5] = 0; }, ERROR_CHECKSUM_INCORRECT},
        {"length 255", [](std::string& dump) { dump[5] = '\xFF', dump.resize(200); }, ERROR_CHECKSUM_INCORRECT},
        {"cut off", [](std::string& dump) { dump.resize(20); }, ERROR_CHECKSUM_INCORRECT},
        {"empty", [](std::string& dump) { dump.clear(); }, ERROR_NO_SMBIOS_ENTRY_PTR},
        {"table outside", [](std::string& dump) { dump = SmbiosImage(2, 7).entryPoint(0x10000); },
         ERROR_NO_SMBIOS_ENTRY_PTR}};
    for (const auto& [name, spoil, error] : cases) {
        std::string dump = serverImage(2, 7).dump();
        spoil(dump);
        ResultMap values;
        EXPECT_EQ(readAll(dump, values), error) << name;
    }
}

/// The longest table there can be, of structures of every type and length.
TEST(SmbiosHostile, TableOf65535BytesIsReadToItsEnd)
{
    SmbiosImage image(3, 0);
    while (image.table.size() + 64 < 65535)
        image.add(image.count % 120, SmbiosImage::Body().bytes({1, 1, 1, 1}).dword(image.count).text("Text"));
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
        image.addRaw(17, 6, 8, bodyOf("0007").data + SmbiosImage::zeros(2));
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

} // namespace
