#include "client/status/StatusRules.hpp"
#include "client/status/StatusWords.hpp"

#include <gtest/gtest.h>

namespace {

using namespace client::status;
using client::words::noValue;

constexpr Bounds all{.upperNonRec = 90,
                     .upperCritical = 80,
                     .upperNonCri = 70,
                     .lowerNonCri = 30,
                     .lowerCritical = 20,
                     .lowerNonRec = 10};

TEST(Status, ReadingIsHeldAgainstTheBoundsThatAreSet)
{
    constexpr Bounds upperOnly{.upperNonRec = 90, .upperCritical = 80, .upperNonCri = 70};
    struct Case {
        int reading;
        Bounds bounds;
        const char* word;
    };
    for (const Case& c :
         {Case{50, all, "ok"}, Case{70, all, "ok"}, Case{71, all, "nonCritical"}, Case{80, all, "nonCritical"},
          Case{81, all, "critical"}, Case{91, all, "critical"}, Case{30, all, "ok"}, Case{29, all, "nonCritical"},
          Case{19, all, "critical"}, Case{9, all, "critical"}, Case{noValue, all, "unknown"}, Case{50, {}, "unknown"},
          Case{-500, upperOnly, "ok"}})
        EXPECT_STREQ(statusOf(c.reading, c.bounds), c.word) << c.reading;
}

TEST(Status, AReadingAtABoundIsBeyondItByTheRuleForAllTables)
{
    constexpr Limits limits{90, 80, 70, 30, 20, 10};
    const std::tuple<double, Limits, std::string> cases[] = {
        {50, limits, "ok"},
        {69.9, limits, "ok"},
        {70, limits, "Upper nonCritical"},
        {80, limits, "Upper critical"},
        {90, limits, "Upper nonRecoverable"},
        {30, limits, "Lower nonCritical"},
        {20, limits, "Lower critical"},
        {-5, limits, "Lower nonRecoverable"},
        {-500, {.upperCritical = 80}, "ok"},
        {50, {}, "ok"},
        {std::nan(""), limits, "unknown"},
    };
    for (const auto& [reading, bounds, said] : cases) {
        const Judgement judged = judgeReading(reading, bounds);
        EXPECT_EQ(judged.side + std::string(judged.status), said) << reading;
    }
}

TEST(Status, FanBeyondItsNonRecoverableBoundIsCriticalOnlyOnListedBoards)
{
    constexpr Bounds narrow{.upperNonRec = 70,
                            .upperCritical = 80,
                            .upperNonCri = 70,
                            .lowerNonCri = 30,
                            .lowerCritical = 20,
                            .lowerNonRec = 30};
    for (const auto& [model, word] :
         {std::pair{"Larch-3", "critical"}, {"Larch-6", "nonCritical"}, {"", "nonCritical"}}) {
        EXPECT_STREQ(fanStatusOf(29, narrow, model), word);
        EXPECT_STREQ(fanStatusOf(71, narrow, model), word);
        EXPECT_STREQ(fanStatusOf(50, narrow, model), "ok");
        EXPECT_STREQ(fanStatusOf(15, {.lowerCritical = 20}, model), "critical");
        EXPECT_STREQ(fanStatusOf(25, all, model), "nonCritical");
        EXPECT_STREQ(fanStatusOf(noValue, all, model), "unknown");
    }
}

TEST(Status, BothScalesHaveTheirWordsAndNumbers)
{
    struct Case {
        int number;
        const char* word;
        int ofRow;
        const char* shown;
    };
    for (const Case& c : {Case{1, "other", 1, "Unavailable"}, Case{2, "unknown", 1, "Unavailable"},
                          Case{3, "ok", 2, "Healthy"}, Case{4, "nonCritical", 3, "Warning"},
                          Case{5, "critical", 4, "Critical"}, Case{6, "nonRecoverable", 4, "Critical"},
                          Case{0, nullptr, 1, "Unavailable"}, Case{7, nullptr, 1, "Unavailable"}}) {
        EXPECT_STREQ(getStringStatus(c.number), c.word) << c.number;
        EXPECT_EQ(getNewHealthEnum(c.number), c.ofRow) << c.number;
        EXPECT_STREQ(healthWord(c.number), c.shown) << c.number;
        if (c.word) {
            EXPECT_EQ(rowStatusOf(c.word), c.ofRow);
        }
    }
    EXPECT_EQ(rowStatusOf("warning"), 3);
    EXPECT_EQ(rowStatusOf("Healthy"), 1);
}

} // namespace
