#include "client/door/Functions.hpp"
#include "client/words/Text.hpp"
#include "common/Policy.hpp"
#include "tests/client/EventFixture.hpp"
#include "tests/support/CaughtLog.hpp"

#include <gmock/gmock.h>

namespace {
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class Events : public EventFixture {
protected:
    void happen(int group, int deviceId, int severity, const char* text = "Status is what it is")
    {
        eventData event;
        event.nEventGroup = group;
        event.nDeviceId = deviceId;
        event.nSeverity = severity;
        copyText(event.stEventDesc, text);
        addEvent(event);
        lastResult = processEvent();
    }

    int lastResult = 0;
};

TEST_F(Events, HealthGoesToCriticalAndBackWithATrapForEachChange)
{
    happen(14, 7, 5);
    EXPECT_THAT(trapsSent(),
                ElementsAre("70.18 Status is what it is", "20.5 System health was changed from ok to critical."));
    EXPECT_EQ(handler().m_nHealthStatus, 5);
    EXPECT_EQ(getHealthStatus(), 4);
    EXPECT_THAT(handler().mCriticalList, ElementsAre(7));

    happen(14, 8, 5);
    EXPECT_THAT(trapsSent(), ElementsAre("70.18 Status is what it is"));
    EXPECT_THAT(handler().mCriticalList, ElementsAre(7, 8));

    happen(14, 7, 3);
    EXPECT_THAT(trapsSent(), ElementsAre("70.16 Status is what it is"));
    happen(14, 8, 3);
    EXPECT_THAT(trapsSent(),
                ElementsAre("70.16 Status is what it is", "20.3 System health was changed from critical to ok."));
    EXPECT_EQ(handler().m_nHealthStatus, 3);
    EXPECT_EQ(getHealthStatus(), 2);
    EXPECT_THAT(handler().mCriticalList, IsEmpty());
}

TEST_F(Events, WithoutTrapsListsAndHealthFollowWithoutAWait)
{
    client.mSystemManagement->m_nTrapsEnabled = 0;
    happen(12, 7, 6, "IERR (Internal Error)");
    EXPECT_THAT(trapsSent(), IsEmpty());
    EXPECT_THAT(clock.sleeps, IsEmpty());
    EXPECT_THAT(handler().mNonRecList, ElementsAre(7));
    EXPECT_EQ(handler().m_nHealthStatus, 6);
    EXPECT_EQ(getHealthStatus(), 4);
}

TEST_F(Events, EachTrapWaitsThreeSecondsAndKeepsItsPlace)
{
    eventData event;
    event.nEventGroup = 14;
    for (const int severity : {4, 3, 5}) {
        event.nSeverity = severity;
        addEvent(event);
    }
    EXPECT_EQ(processEvent(), 0);
    EXPECT_EQ(trapNames(), "70.17 20.4 70.16 20.3 70.18 20.5 ");
    EXPECT_EQ(clock.sleeps, std::vector<std::chrono::nanoseconds>(6, 3s));
    EXPECT_THAT(handler().mEventQueue, IsEmpty());
}

TEST_F(Events, GroupsAndSendersMustFit)
{
    eventData event;
    event.nSeverity = 3;
    for (const auto& [group, ofTwo, ofFour] : {std::tuple{14, 9, 0}, {1, 0, 9}, {2, 9, 9}}) {
        event.nEventGroup = group;
        EXPECT_EQ(handler().send2ObjEvent(event), ofTwo) << group;
        EXPECT_EQ(handler().send4ObjEvent(event), ofFour) << group;
    }
}

TEST_F(Events, NothingIsSentBeforeTheGroupsAreFilled)
{
    client.m_bInitComplete = 0;
    clock.onSleep = [this] { client.m_bInitComplete = clock.sleeps.size() >= 2; };
    happen(14, 7, 3);
    EXPECT_EQ(clock.sleeps, (std::vector<std::chrono::nanoseconds>{1s, 1s, 3s}));
}

/// Traps with a pace of their own: a burst of three, then two a second, at most six waiting.
class PacedEvents : public Events {
protected:
    /// `count` events of a group without any say in the health; the trap's text is the number.
    void happenTimes(int count)
    {
        for (int time = 0; time < count; ++time)
            happen(2, 0, 0, ("undetermined system hardware failure " + std::to_string(++number)).c_str());
    }

    /// Numbers of the traps that the main thread gets.
    static std::string taken()
    {
        std::string numbers;
        for (const std::string& trap : trapsSent())
            numbers += trap.substr(trap.rfind(' '));
        trapsArrived(1000);
        return numbers;
    }

    common::ScopedPolicy paced{
        {.practical = true, .pacesTrapsApart = true, .trapBurst = 3, .trapsPerSecond = 2, .trapQueue = 6}};
    CaughtLog log;
    ScopedSeam<common::SystemLog> useLog{log};
    int number = 0;
};

TEST_F(PacedEvents, HealthFollowsAtOnceWhileTrapsLeaveInTheirOrderAndPace)
{
    happen(14, 7, 5);
    happen(14, 7, 3);
    happen(14, 8, 5);
    EXPECT_EQ(getHealthStatus(), 4);
    EXPECT_THAT(clock.sleeps, IsEmpty());
    EXPECT_EQ(trapNames(), "70.18 20.5 70.16 ");
    EXPECT_EQ(client::door::pauseBeforeTraps(), 500ms);
    clock.advance(499ms);
    EXPECT_THAT(trapsSent(), IsEmpty());
    clock.advance(1ms);
    EXPECT_EQ(trapNames(), "20.3 ");
    clock.advance(1h);
    EXPECT_EQ(trapNames(), "70.18 20.5 ");
    EXPECT_EQ(client::door::pauseBeforeTraps(), 10s);
}

TEST_F(PacedEvents, WhatFindsNoRoomIsDroppedAndSaidToBe)
{
    happenTimes(9);
    EXPECT_EQ(log.lines, "more than 6 traps wait for the master agent: new ones are dropped\n");
    log.lines.clear();
    beginRecord(1, 0x1A);
    EXPECT_EQ(taken(), " 1 2 3");
    EXPECT_EQ(log.lines, "trap trapHardwareFail: undetermined system hardware failure 1\n"
                         "trap trapHardwareFail: undetermined system hardware failure 2\n"
                         "trap trapHardwareFail: undetermined system hardware failure 3\n"
                         "3 traps were dropped; there is room again\n");
    log.lines.clear();
    happenTimes(1);
    clock.advance(1500ms);
    EXPECT_EQ(taken(), " 4 5 6");
    clock.advance(1h);
    EXPECT_EQ(taken(), " 10");
    EXPECT_THAT(log.lines, testing::EndsWith("trap trapHardwareFail of record 001A: undetermined system hardware "
                                             "failure 10\n"));
}

TEST_F(PacedEvents, OldEventsGiveWayToReadingsAndNewOnesDoNot)
{
    const client::status::DeviceStatus sound[] = {{7, 3}};
    handler().holdHealth(true);
    happen(14, 7, 5);
    EXPECT_EQ(handler().m_nHealthStatus, 3);
    handler().followReadings(sound, 20s);
    handler().holdHealth(false);
    EXPECT_EQ(handler().m_nHealthStatus, 3);
    happen(14, 7, 5);
    handler().followReadings(sound, 20s);
    EXPECT_EQ(handler().m_nHealthStatus, 5);
}

TEST_F(PacedEvents, HealthIsToldWhenAllRowsHaveBeenReadAndOnlyIfItIsAnotherThanTheLastTold)
{
    using Present = std::vector<client::status::DeviceStatus>;
    const auto follow = [this](const Present& present, bool all) {
        handler().followReadings(present, 20s, all);
        return handler().m_nHealthStatus;
    };
    follow({}, false);
    EXPECT_EQ(follow({{7, 3}}, false), 3);
    EXPECT_EQ(follow({{7, 3}, {8, 5}}, false), 5);
    EXPECT_EQ(follow({{7, 3}, {8, 5}, {9, 6}}, true), 6);
    EXPECT_THAT(trapsSent(), IsEmpty()) << "a start, however slow";
    EXPECT_LT(follow({}, false), 3);
    EXPECT_EQ(follow({{7, 3}, {8, 3}, {9, 3}}, false), 3);
    EXPECT_EQ(follow({{7, 3}, {8, 5}, {9, 6}}, true), 6);
    EXPECT_THAT(trapsSent(), IsEmpty()) << "a silence, and as before";
    EXPECT_EQ(follow({{7, 4}, {8, 3}, {9, 3}}, false), 4);
    clock.advance(1h);
    EXPECT_EQ(follow({{7, 5}, {8, 3}, {9, 3}}, false), 5);
    EXPECT_THAT(trapsSent(), testing::SizeIs(1)) << "not all could be read for long";
}

TEST_F(PacedEvents, WithoutASessionTheyWait)
{
    sessionIs(false);
    happenTimes(4);
    EXPECT_EQ(taken(), "");
    EXPECT_EQ(client::door::pauseBeforeTraps(), 10s);
    sessionIs(true);
    EXPECT_EQ(client::door::pauseBeforeTraps(), 100ms);
    EXPECT_THAT(trapsSent(), testing::SizeIs(3));
    trapsArrived(1);
    sessionIs(false);
    sessionIs(true);
    clock.advance(1h);
    EXPECT_EQ(taken(), " 2 3 4") << "two were not answered";
}

} // namespace
