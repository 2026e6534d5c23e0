#include "tests/modules/bmc/SdrFixture.hpp"
#include "tests/support/Threads.hpp"

#include <numeric>

using namespace std::chrono_literals;
using testing::SizeIs;

namespace {

class Sdr : public SdrFixture {
protected:
    static bool asksBody(const IpmiRequest& request, unsigned id)
    {
        return request.data[2] == id && request.data[4] > 0;
    }

    std::chrono::nanoseconds slept() const
    {
        return std::accumulate(clock.sleeps.begin(), clock.sleeps.end(), std::chrono::nanoseconds{});
    }
};

TEST_F(Sdr, LostReservationAtAnyPieceRepeatsThatPieceAlone)
{
    records = {full(1, 1, 1, {1, 2, 3}), full(2, 2, 1, {4, 5, 6})};
    const std::size_t pieces = 2 * (1 + 3);
    for (std::size_t lost = 0; lost < pieces; ++lost) {
        Module::BMCConfig::Cache::instance().Clear();
        bmc.requests.clear();
        disturb([this, lost, at = std::make_shared<std::size_t>(0)](const IpmiRequest&) {
            if ((*at)++ == lost)
                ++reservation; // another reader has taken it
            return IpmiAnswer{};
        });
        EXPECT_EQ(text("/BMC/SDR[1]"), line(records[0])) << lost;
        EXPECT_EQ(text("/BMC/SDR[2]"), line(records[1])) << lost;
        EXPECT_EQ(count(0x0A, 0x23), pieces + 1) << lost;
        EXPECT_EQ(count(0x0A, 0x22), 2U) << lost;
    }
}

TEST_F(Sdr, ReadingThatIsGivenUpLeavesNothingAndTheNextQueryReadsAnew)
{
    for (const bool inBody : {false, true}) {
        records = {full(1, 1, 1, {}), full(2, 2, 1, {})};
        bmc.requests.clear();
        Module::BMCConfig::Cache::instance().Clear();
        disturb([=](const IpmiRequest& request) {
            return request.data[2] == 2 && (request.data[4] > 0) == inBody ? IpmiAnswer{0xC3} : IpmiAnswer{};
        });
        clock.sleeps.clear();
        EXPECT_EQ(text("/BMC/SDR/NUMBER"), "0");
        EXPECT_EQ(count(0x0A, 0x23), 4 + 101U + inBody);
        EXPECT_GT(slept(), 900ms);
        EXPECT_LE(slept(), 1s);
        EXPECT_TRUE(std::ranges::is_sorted(clock.sleeps)) << "each pause is longer than the one before";
        disturb([](const IpmiRequest&) { return IpmiAnswer{}; });
        EXPECT_THAT(get("/BMC/SDR/RECORD_TYPE[1]"), SizeIs(3));
    }
}

TEST_F(Sdr, RefusalThatWillLastIsNotWaitedFor)
{
    for (const int code : {0x00, 0xC1, 0xCB, 0xFF}) {
        disturb([=](const IpmiRequest&) { return IpmiAnswer{static_cast<std::uint8_t>(code)}; });
        EXPECT_EQ(text("/BMC/SDR/NUMBER"), "0");
        EXPECT_EQ(slept(), 0s) << code;
    }
}

TEST_F(Sdr, RecordThatIsShorterThanItSaysIsLeftOut)
{
    for (const int code : {0xC7, 0xC8, 0xC9, 0xCA}) {
        Module::BMCConfig::Cache::instance().Clear();
        records = {full(1, 1, 1, {}), full(2, 2, 1, {}), full(3, 3, 1, {})};
        disturb([=](const IpmiRequest& request) {
            return asksBody(request, 2) ? IpmiAnswer{static_cast<std::uint8_t>(code)} : IpmiAnswer{};
        });
        EXPECT_EQ(text("/BMC/SDR/NUMBER"), "2") << code;
        EXPECT_EQ(text("/BMC/SDR[2]"), line(records[2])) << code;
    }
}

TEST_F(Sdr, AnswerOfAnotherRecordOrANextIdThatLeadsBackEndsTheWalk)
{
    // of the record, of the byte in its answer; what that says; how many are read
    using Case = std::tuple<unsigned, std::size_t, std::uint8_t, const char*>;
    for (const auto& [id, place, byte, read] :
         {Case{3, 1, 0, "3"}, Case{3, 1, 1, "3"}, Case{3, 1, 2, "3"}, Case{3, 1, 3, "3"}, Case{2, 3, 9, "1"}}) {
        records = {full(1, 1, 1, {}), full(2, 2, 1, {}), full(3, 3, 1, {})};
        Module::BMCConfig::Cache::instance().Clear();
        disturb([=, this](const IpmiRequest& request) {
            IpmiAnswer answer = readRecord(request);
            if (request.data[2] == id && (place == 1 || request.data[4] == 0))
                answer[place] = byte, answer[2] = 0;
            return answer;
        });
        EXPECT_EQ(text("/BMC/SDR/NUMBER"), read) << int{byte};
    }
    Module::BMCConfig::Cache::instance().Clear();
    disturb([](const IpmiRequest& request) {
        return request.data[2] == 2 ? IpmiAnswer{0, 0xFF, 0xFF, 2, 0, 0x51, 1} : IpmiAnswer{};
    });
    EXPECT_EQ(text("/BMC/SDR/NUMBER"), "1") << "a header cut short";
    Module::BMCConfig::Cache::instance().Clear();
    disturb([](const IpmiRequest&) { return IpmiAnswer{}; });
    records = {full(1, 1, 1, {}), full(0x01FF, 2, 1, {}), full(0xFF02, 3, 1, {})};
    EXPECT_EQ(text("/BMC/SDR/NUMBER"), "3") << "only both bytes of the next id end the walk";
}

TEST_F(Sdr, PiecesThatComeShortAreReadOnAndEmptyOnesEndTheRecord)
{
    records = {full(1, 1, 1, {}, {0xC5, 'I', 'n', 'l', 'e', 't'}), full(2, 2, 1, {})};
    disturb([this](const IpmiRequest& request) {
        IpmiAnswer answer = readRecord(request);
        if (asksBody(request, 0) && answer.size() > 3 + 7)
            answer.resize(3 + 7);
        if (asksBody(request, 2) && request.data[4] > 20)
            answer.resize(3);
        return answer;
    });
    EXPECT_EQ(text("/BMC/SDR[1]"), line(records[0]));
    EXPECT_EQ(text("/BMC/SDR[2]"), line(std::span(records[1]).first(21)));
}

TEST_F(Sdr, RecordsTooShortForAFieldHaveNoneOfIt)
{
    for (const std::size_t length : {0, 1, 3, 7, 8, 43, 250, 255})
        records.push_back(record(static_cast<unsigned>(records.size() + 1), 1, Bytes(length, 0x05)));
    EXPECT_EQ(text("/BMC/SDR/NUMBER"), "8");
    EXPECT_THAT(get("/BMC/SDR/SENSOR_TYPE[5]"), SizeIs(1 + 4)) << "byte 12 is there from length 8 on";
    EXPECT_THAT(get("/BMC/SDR/SENSOR_NUMBER[5]/OWNER[5]/LUN[5]"), SizeIs(1 + 6));
    EXPECT_THAT(get("/BMC/SDR/ENTITY_ID[5]/ENTITY_INSTANCE[5]"), SizeIs(1 + 5));
    EXPECT_EQ(text("/BMC/SDR[1]/DECODED/OWNER"), "");
    EXPECT_EQ(text("/BMC/SDR[2]/DECODED/LUN"), "");
    EXPECT_EQ(text("/BMC/SENSOR[5]/OWNER[5]/LUN[5]/NAME"), "");
    EXPECT_NO_THROW(get("/BMC/SENSOR/DISPLAY"));
}

TEST_F(Sdr, ListQueriesWalkNoMoreThan1023Records)
{
    for (unsigned id = 1; id <= 1100; ++id)
        records.push_back(record(id, 0xC0, {1}));
    EXPECT_EQ(text("/BMC/SDR/NUMBER"), "1100");
    EXPECT_THAT(get("/BMC/SDR/RECORD_TYPE[192]"), SizeIs(1 + 1023));
}

TEST_F(Sdr, ThreadsThatFindTheCacheEmptyReadTheRepositoryOnce)
{
    for (unsigned id = 1; id <= 40; ++id)
        records.push_back(full(id, static_cast<std::uint8_t>(id), 1, {}));
    inThreads(1, [this](int, int) { EXPECT_EQ(text("/BMC/SDR/NUMBER"), "40"); });
    EXPECT_EQ(count(0x0A, 0x22), 1U);
}

} // namespace
