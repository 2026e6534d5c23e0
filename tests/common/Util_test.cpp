#include "common/Util.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(Util, SplitTreatsSeparatorsAsASetAndYieldsNoEmptyField)
{
    EXPECT_THAT(Util::split("1.2,,3.", ".,"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(Util::split("  a  b", " "), ElementsAre("a", "b"));
    EXPECT_THAT(Util::split("a b", ""), ElementsAre("a b"));
    EXPECT_THAT(Util::split("", " "), IsEmpty());
    EXPECT_THAT(Util::split(",,", ","), IsEmpty());
}

TEST(Util, NumbersFromText)
{
    const struct {
        const char* text;
        int base;
        long value;
    } cases[] = {
        {"ff", 16, 255}, {"0x10", 16, 16}, {"0x10", 0, 16},
        {"-7", 10, -7},  {"12ab", 10, 12}, {"text", 10, 0},
        {"", 10, 0},     {"010", 10, 10},  {"99999999999999999999", 10, 0},
        {" 8 9", 10, 8},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Util::string_to_long(row.text, row.base), row.value) << row.text;
}

TEST(Util, BytesAndHexText)
{
    const std::vector<std::uint8_t> bytes{0x00, 0x0A, 0xFF};
    EXPECT_EQ(Util::bytesToHexText(bytes), "0 a ff");
    EXPECT_EQ(Util::hexTextToBytes("00 0A  fF"), bytes);
    EXPECT_THAT(Util::hexTextToBytes("1ff zz"), ElementsAre(0xFF, 0x00));
    EXPECT_THAT(Util::hexTextToBytes(" "), IsEmpty());
}

} // namespace
