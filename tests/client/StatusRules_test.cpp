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
    const std::tuple<int, Bounds, const char*> cases[] = {
        {70, all, "ok"},       {71, all, "nonCritical"}, {80, all, "nonCritical"},  {81, all, "critical"},
        {91, all, "critical"}, {30, all, "ok"},          {29, all, "nonCritical"},  {19, all, "critical"},
        {9, all, "critical"},  {-500, upperOnly, "ok"},  {noValue, all, "unknown"}, {50, {}, "unknown"}};
    for (const auto& [reading, bounds, word] : cases)
        EXPECT_STREQ(statusOf(reading, bounds), word) << reading;
}

TEST(Status, AReadingAtABoundIsBeyondItByTheRuleForAllTables)
{
    constexpr Limits limits{90, 80, 70, 30, 20, 10};
    const std::tuple<double, Limits, std::string> cases[] = {{69.9, limits, "ok"},
                                                             {70, limits, "Upper nonCritical"},
                                                             {80, limits, "Upper critical"},
                                                             {90, limits, "Upper nonRecoverable"},
                                                             {30, limits, "Lower nonCritical"},
                                                             {20, limits, "Lower critical"},
                                                             {-5, limits, "Lower nonRecoverable"},
                                                             {-500, {.upperCritical = 80}, "ok"},
                                                             {50, {}, "ok"},
                                                             {std::nan(""), limits, "unknown"}};
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
    const std::tuple<int, const char*, int, const char*> cases[] = {
        {1, "other", 1, "Unavailable"},   {2, "unknown", 1, "Unavailable"}, {3, "ok", 2, "Healthy"},
        {4, "nonCritical", 3, "Warning"}, {5, "critical", 4, "Critical"},   {6, "nonRecoverable", 4, "Critical"}};
    for (const auto& [number, word, ofRow, shown] : cases) {
        EXPECT_STREQ(getStringStatus(number), word);
        EXPECT_EQ(getNewHealthEnum(number), ofRow) << word;
        EXPECT_STREQ(healthWord(number), shown) << word;
        EXPECT_EQ(rowStatusOf(word), ofRow) << word;
    }
    for (const int number : {0, 7})
        EXPECT_EQ(getNewHealthEnum(number), 1);
    EXPECT_EQ(rowStatusOf("warning"), 3);
    EXPECT_EQ(rowStatusOf("Healthy"), 1);
}

} // namespace
