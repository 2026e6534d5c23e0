#include "modules/bmc/BMCConfigModule.hpp"
#include "tests/modules/bmc/EngineFixture.hpp"
#include "tests/support/Threads.hpp"

namespace Module::BMCConfig {
namespace {

using namespace steps;

class Routing : public EngineTest {
protected:
    ResultMap ask(const std::string& key)
    {
        ResultMap results;
        machine().router(key, results);
        return results;
    }
};

TEST_F(Routing, BranchBringsItsWholeSubtree)
{
    addScript("GET://BMC/TREE", branch({"A", "B"}));
    addScript("GET://BMC/TREE/A", branch({"ONE"}));
    addScript("GET://BMC/TREE/A/ONE", script({Append("x", "y", "$LIST"), Join("$LIST", "+", "$RESULT")}));
    addScript("GET://BMC/TREE/B", script({Copy("2", "$OTHER")})); // without a result of its own
    const ResultMap results = ask("GET://BMC/TREE");
    ASSERT_EQ(results.size(), 4U);
    EXPECT_EQ(results.at("/BMC/TREE").mType, NODE_NONLEAF);
    EXPECT_EQ(results.at("/BMC/TREE").mXNodeList, (std::vector<std::string>{"/BMC/TREE/A", "/BMC/TREE/B"}));
    EXPECT_EQ(results.at("/BMC/TREE/A/ONE").mXNodeList, std::vector<std::string>{"x+y"});
    EXPECT_TRUE(results.at("/BMC/TREE/B").mXNodeList.empty()) << "a sibling's result was taken for it";
    addScript("GET://BMC/RING", branch({"/BMC/RING", "A"}));
    addScript("GET://BMC/RING/A", branch({"/BMC/RING"}));
    EXPECT_EQ(ask("GET://BMC/RING").size(), 2U);
}

TEST_F(Routing, SubscriptsBecomeSymbols)
{
    machine().extract_and_inject("GET://BMC/LAN[10]/RECORD_TYPE[FULL]/X");
    EXPECT_EQ(table["$LAN_NUMBER"].text(), "a");
    EXPECT_EQ(table["$RECORD_TYPE"].text(), "FULL");
    machine().extract_and_inject("GET://BMC/LAN[]/IP"); // inherits what an outer script has
    machine().extract_and_inject("GET://BMC/DISCOVER[192.168.1.255]");
    EXPECT_EQ(table["$DISCOVER"].text(), "192.168.1.255");
    machine().extract_and_inject("GET://BMC/LAN[65535]/IP");
    EXPECT_EQ(table["$LAN_NUMBER"].text(), "ffff");
    for (const char* index : {"65536", "123456789", "abcdefghi"})
        EXPECT_EQ(failureTextOf([&] { machine().extract_and_inject("GET://BMC/LAN[" + std::string(index) + "]"); }),
                  "1091 LAN Index Data out of Range");
    EXPECT_EQ(failureTextOf([&] { machine().extract_and_inject("GET://BMC/SOL[]"); }), "1105 SOL has no index given");
    EXPECT_EQ(failureTextOf([&] { machine().extract_and_inject("GET://BMC/SOL[1"); }), "1105 end ] bracket not found");
}

TEST_F(Routing, ThreadsAskAtOnce)
{
    const ScopedSeam<Clock> real(Clock::real());
    bmc.on(0x06, 0x01, IpmiAnswer{0, 0x20, 0x81, 1, 0x17, 2, 0xBF, 0x57, 1, 0, 0x34, 0x12, 0, 0, 0x12, 0x34});
    inThreads(50, [](int, int) {
        ResultMap results;
        BMCConfigModule().Process("/BMC/INFO/VERSION", results);
        EXPECT_TRUE(results.at("/BMC/INFO/VERSION").mXNodeList.at(0).starts_with("1.17."));
    });
}

} // namespace
} // namespace Module::BMCConfig
