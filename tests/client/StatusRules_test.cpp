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

} // namespace
