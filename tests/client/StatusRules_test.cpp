#include "client/status/StatusRules.hpp"

#include "client/door/Functions.hpp"
#include "tests/client/ClientFixture.hpp"

namespace {

class Status : public ClientFixture {};

struct Bounds {
    int lowerNonRec = 10, lowerCritical = 20, lowerNonCri = 30, upperNonCri = 70, upperCritical = 80, upperNonRec = 90;
};

template<class Rule>
const char* apply(Rule rule, int reading, const Bounds& b)
{
    return rule(reading, b.lowerCritical, b.lowerNonRec, b.lowerNonCri, b.upperCritical, b.upperNonRec, b.upperNonCri);
}

TEST_F(Status, ReadingIsHeldAgainstTheBoundsThatAreSet)
{
    const Bounds all;
    const Bounds none{noValue, noValue, noValue, noValue, noValue, noValue};
    const Bounds upperOnly{noValue, noValue, noValue, 70, 80, 90};
    struct Case {
        int reading;
        Bounds bounds;
        const char* word;
    };
    for (const Case& c :
         {Case{50, all, "ok"}, Case{70, all, "ok"}, Case{71, all, "nonCritical"}, Case{80, all, "nonCritical"},
          Case{81, all, "critical"}, Case{91, all, "critical"}, Case{30, all, "ok"}, Case{29, all, "nonCritical"},
          Case{19, all, "critical"}, Case{9, all, "critical"}, Case{noValue, all, "unknown"}, Case{50, none, "unknown"},
          Case{-500, upperOnly, "ok"}})
        EXPECT_STREQ(apply(calStatus, c.reading, c.bounds), c.word) << c.reading;
}

TEST_F(Status, FanBeyondItsNonRecoverableBoundIsCriticalOnlyOnListedBoards)
{
    const Bounds narrow{.lowerNonRec = 30, .lowerCritical = 20, .upperNonRec = 70};
    for (const auto& [model, word] : {std::pair{"Larch-3", "critical"}, {"Larch-6", "nonCritical"}}) {
        cache_map.clear();
        sdk.answer("/BIOS/PlatformID", model);
        EXPECT_STREQ(apply(coolingcalStatus, 29, narrow), word);
        EXPECT_STREQ(apply(coolingcalStatus, 71, narrow), word);
        EXPECT_STREQ(apply(coolingcalStatus, 50, narrow), "ok");
        EXPECT_STREQ(apply(coolingcalStatus, 15, {.lowerNonRec = noValue}), "critical");
        EXPECT_STREQ(apply(coolingcalStatus, 25, {}), "nonCritical");
    }
}

} // namespace
