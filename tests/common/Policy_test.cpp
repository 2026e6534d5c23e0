#include "common/ConfigFile.hpp"
#include "common/Paths.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Seams.hpp"
#include "tests/support/CaughtLog.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/TempRoot.hpp"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

const common::Policy& loadFrom(TempRoot& root, const std::string& text)
{
    root.write(common::configPath, text);
    common::loadPolicy();
    return common::policy();
}

TEST(Policy, IsPlainWithoutTheKeyAndWholeWithIt)
{
    const common::ScopedPolicy putBack({});
    TempRoot root;
    common::loadPolicy();
    EXPECT_FALSE(common::policy().practical);
    EXPECT_FALSE(loadFrom(root, "trapBurst=3\npractical = 0\n").limitsExchanges);
    EXPECT_EQ(common::policy().trapBurst, 3);
    const common::Policy& practical =
        loadFrom(root, "Practical = 1\nrefresh period=0\ntrapqueue=x\nexchangebudget=700");
    EXPECT_TRUE(practical.practical && practical.limitsExchanges && practical.endsWithoutResources);
    EXPECT_EQ(practical.exchangeBudget, 700ms);
    EXPECT_EQ(practical.refreshPeriod, 10s);
    EXPECT_EQ(practical.trapQueue, 10'000);
}

TEST(Report, RepeatsOfAKeyAreToldOncePerHourWithTheirNumber)
{
    FakeClock clock;
    CaughtLog log;
    const ScopedSeam<Clock> useClock(clock);
    const ScopedSeam<common::SystemLog> useLog(log);
    common::reportLimited(common::Gravity::error, "k", "plain mode: nothing");
    const common::ScopedPolicy practical(common::practicalPolicy());
    for (int times = 0; times < 3; ++times)
        common::reportLimited(common::Gravity::error, "k", "refused");
    common::reportLimited(common::Gravity::error, "other", "lost");
    clock.sleepFor(1h);
    common::reportLimited(common::Gravity::error, "k", "refused");
    common::reportEnded("k");
    common::reportLimited(common::Gravity::error, "k", "refused");
    EXPECT_EQ(log.lines, "refused\nlost\nrefused (2 more in the last hour)\nrefused\n");
}

} // namespace
