#include "client/traps/TrapFunctions.hpp"

#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace client::traps;
using namespace client::words;

eventData event(int group, int severity, const char* text)
{
    eventData made;
    made.nEventGroup = group;
    made.nSeverity = severity;
    copyText(made.stEventDesc, text);
    return made;
}

/// An event and the two last numbers of its trap's name, 0, 0 for no trap; choices that no record of the event log
/// makes, or that hang on an order.
struct Choice {
    int group;
    int severity;
    const char* text;
    SubId arc[2];
};
constexpr Choice choices[] = {{4, 4, "lower", {70, 6}},
                              {4, 4, "LOWER", {70, 8}},
                              {4, 2, "Lower", {0, 0}},
                              {5, 6, "", {0, 0}},
                              {8, 5, "uncorrectable ECC", {60, 1}},
                              {9, 4, "OFF", {80, 2}},
                              {9, 3, "ON, OFF", {80, 3}},
                              {9, 6, "", {0, 0}},
                              {11, 6, "", {0, 0}},
                              {14, 4, "lower", {70, 17}},
                              {15, 4, "lower", {50, 12}},
                              {3, 3, "the chassis is now closed", {30, 1}},
                              {3, 5, "LAN Leash Lost: System Unplugged From LAN", {30, 2}},
                              {3, 5, "there has been a chassis intrusion, the chassis is now closed", {0, 0}},
                              {10, 3, "Power Supply Input (AC/DC) Lost", {50, 8}},
                              {12, 5, "FRB2/Hang in POST Failure, IERR (Internal Error)", {40, 1}},
                              {17, 3, "performance has been met", {50, 17}},
                              {17, 3, "performance is lagging", {50, 18}},
                              {17, 3, "performance is lagging.", {0, 0}},
                              {18, 3, "performance has been met", {70, 11}},
                              {18, 3, "performance is lagging", {70, 12}},
                              {20, 5, "it reports it has been asserted", {0, 0}}};

TEST(TrapChoice, EveryEventHasTheTrapOfItsGroupSeverityAndText)
{
    traceWanted = false;
    std::vector<Choice> all(std::begin(choices), std::end(choices));
    for (int severity = 0; severity < 8; ++severity)
        all.push_back({1, severity, "", {severity % 7 == 0 ? 0U : 20U, static_cast<SubId>(severity)}});
    for (const Choice& choice : all) {
        SCOPED_TRACE(testing::Message() << choice.group << ' ' << choice.severity << ' ' << choice.text);
        const TrapGroup* const group = findTrapGroup(choice.group);
        ASSERT_NE(group, nullptr);
        const TrapOid* const oid = group->chooseOid(event(choice.group, choice.severity, choice.text));
        if (choice.arc[0] == 0)
            EXPECT_EQ(oid, nullptr);
        else
            EXPECT_THAT(oid, testing::Pointee(testing::ElementsAre(1, 3, 6, 1, 4, 1, 44444, 2, 10, 3, 5, 1000,
                                                                   choice.arc[0], choice.arc[1])));
    }
}

std::vector<SubId> name(std::initializer_list<SubId> tail)
{
    std::vector<SubId> all(trapBase.begin(), trapBase.end());
    all.insert(all.end(), tail);
    return all;
}

const std::vector<SubId> trapOidName = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};

TEST(TrapVarbinds, SeverityOnTheWireHasFourSteps)
{
    const long shown[] = {1, 1, 1, 2, 3, 4, 4, 1};
    for (int severity = 0; severity < 8; ++severity)
        EXPECT_EQ(TrapMaker::makeTwoObjects(event(2, severity, ""), SysBoot).back().value,
                  (std::variant<long, std::string, std::vector<SubId>>(shown[severity])))
            << severity;
}

TEST(TrapVarbinds, FourObjectsAreNamedByTableAndRow)
{
    traceWanted = false;
    TrapMaker maker;
    eventData made = event(14, 5, "Status is Lower Critical");
    made.nInstIndex = 258;
    made.nDeviceId = 0x01032001;
    copyText(made.stDeviceDesc, "Front Panel Temp");
    EXPECT_EQ(maker.makeFourObjects(*findTrapGroup(14), made, TLowCri),
              (Trap{{trapOidName, name({1000, 70, 14})},
                    {name({1000, 10, 1}), std::string("Status is Lower Critical")},
                    {name({600, 40, 1, 5, 258}), 4L},
                    {name({600, 40, 1, 3, 258}), std::string("Front Panel Temp")},
                    {name({600, 40, 1, 2, 258}), 0x01032001L}}));
}

TEST(TrapVarbinds, ASlotsObjectsKeepTheTailOfTheTrapBefore)
{
    traceWanted = false;
    TrapMaker maker;
    const TrapGroup& slots = *findTrapGroup(9);
    const eventData slot = event(9, 3, "");
    const Trap first = maker.makeFourObjects(slots, slot, SlotOk);
    EXPECT_EQ(first[2].name, name({1000, 10, 2, 0, 0}));
    EXPECT_EQ(first[3].name, name({1000, 10, 3, 0, 0}));
    EXPECT_EQ(first[4].name, name({1000, 10, 4, 0, 0}));
    eventData fan = event(4, 3, "");
    fan.nInstIndex = 7;
    maker.makeFourObjects(*findTrapGroup(4), fan, CEventOk);
    const Trap second = maker.makeFourObjects(slots, slot, SlotOk);
    EXPECT_EQ(second[2].name, name({1000, 10, 2, 5, 7}));
    EXPECT_EQ(second[3].name, name({1000, 10, 3, 3, 7}));
    EXPECT_EQ(second[4].name, name({1000, 10, 4, 2, 7}));
}

} // namespace
