#include "TranslatorSupport.hpp"

#include "translator/TranslationErrors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// An SDR of `type` whose id stands behind the type and length byte at `place`.
SDREntry named(int type, std::size_t place, std::vector<std::uint8_t> typeLengthAndText)
{
    std::vector<std::uint8_t> sdr(64);
    sdr[3] = static_cast<std::uint8_t>(type);
    std::ranges::copy(typeLengthAndText, sdr.begin() + static_cast<std::ptrdiff_t>(place));
    return SDREntry(sdr.data(), static_cast<int>(sdr.size()));
}

} // namespace

TEST(Records, OnlyAFullRecordWithALinearFormulaIsLinear)
{
    const auto linear = [](int type, int function) {
        auto sdr = voltageSdr();
        sdr[3] = static_cast<std::uint8_t>(type);
        sdr[23] = static_cast<std::uint8_t>(function);
        return SDREntry(sdr.data(), static_cast<int>(sdr.size())).isLinear();
    };
    EXPECT_TRUE(linear(1, 0x00));
    EXPECT_TRUE(linear(1, 0xEF));
    EXPECT_FALSE(linear(1, 0x70));
    EXPECT_FALSE(linear(2, 0x00));
}

TEST(Records, IdStringsOfEveryRecordTypeAndCoding)
{
    EXPECT_EQ(named(1, 47, {0xC3, 'P', '5', 'V', 'x'}).getIDString(), L"P5V");
    EXPECT_EQ(named(2, 31, {0xC3, 'F', 'a', 'n'}).getIDString(), L"Fan");
    EXPECT_EQ(named(3, 16, {0xC2, 'E', 'v'}).getIDString(), L"Ev");
    EXPECT_EQ(named(0x11, 15, {0xC2, 'F', 'R'}).getIDString(), L"FR");
    EXPECT_EQ(named(1, 47, {0x83, 0x29, 0xDC, 0xA6}).getIDString(), L"IPMI") << "the standard's example";
    EXPECT_EQ(named(1, 47, {0x42, 0x12, 0xAB}).getIDString(), L"12 -");
    EXPECT_EQ(named(1, 47, {0x04, 'A', 0, 'B', 0}).getIDString(), L"AB");
    EXPECT_EQ(named(0xC0, 47, {0xC3, 'P', '5', 'V'}).getIDString(), L"");
    EXPECT_EQ(named(1, 47, {0xDF}).getIDString(), L"") << "length past the record";
    EXPECT_EQ(SDREntry(nullptr, 64).getIDString(), L"");
}

TEST(Records, RepositoryLeavesOutWhatIsNoSensor)
{
    auto locator = voltageSdr();
    locator[3] = 0x11;
    std::ranges::copy(std::string_view("FRU"), locator.begin() + 48);
    const SDRRepository repository({std::vector<std::uint8_t>(64), voltageSdr(), locator, {1, 2}});
    EXPECT_EQ(repository.size(), 1u);
    EXPECT_EQ(repository.find(0x200005).getIDString(), L"P5V");
    EXPECT_THROW(repository.find(0x200006), SDRRepositoryError);
}
