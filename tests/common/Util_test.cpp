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
    for (const auto& [text, base, value] : {std::tuple{"ff", 16, 255},
                                            {"0x10", 16, 16},
                                            {"0x10", 0, 16},
                                            {"-7", 10, -7},
                                            {"12ab", 10, 12},
                                            {"text", 10, 0},
                                            {"", 10, 0},
                                            {"010", 10, 10},
                                            {"99999999999999999999", 10, 0},
                                            {" 8 9", 10, 8}})
        EXPECT_EQ(Util::string_to_long(text, base), value) << text;
}

} // namespace
