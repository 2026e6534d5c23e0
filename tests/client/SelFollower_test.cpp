#include "client/events/SelFollower.hpp"
#include "common/Policy.hpp"
#include "ipmi/Hex.hpp"
#include "tests/client/EventFixture.hpp"
#include "tests/client/ModelLog.hpp"
#include "tests/support/TempRoot.hpp"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

/// A log whose controller numbers and stamps the records, and forgets the oldest where there is no room. `word` names a
/// record: what its trap says.
class WordLog : public ModelLog {
public:
    void add(const std::string& word)
    {
        const bool isTimeless = word.starts_with('~');
        ModelLog::add(nextId, 0x0C, 0x6F, "00 00 00", prefix + word, isTimeless ? 5 : ++time);
        nextId = nextId == 0xFFFE ? 1 : nextId + 1;
        if (records.size() > room)
            records.pop_front();
    }
    void clear(bool idsBeginAgain = true)
    {
        records.clear();
        erased = ++time;
        if (idsBeginAgain)
            nextId = 1;
    }
    void remove(const std::string& word)
    {
        std::erase_if(records, [&](const Record& record) { return record.text == prefix + word; });
        erased = ++time;
    }

    static inline const std::string prefix = "a correctable ECC error ";

    unsigned nextId = 1;
    std::size_t room = 5000;
    unsigned time = 0x50000000;
};

/// Follows the log as the agent does: turns until nothing is left, traps taken and noted as told.
class Follower : public EventFixture {
protected:
    Follower()
    {
        addSensor({.number = 0x30, .type = 0x0C});
        log.answers = sdk.answers;
        std::filesystem::create_directories(root.resolve("/var/lib"));
        log.clock = &clock;
        log.answer("/BMC/SDR", "/BMC/SDR[1]");
        log.unreadable = WordLog::prefix + "bad";
        restart();
    }

    void restart()
    {
        emptyTrapQueue();
        handler().holdHealth(false);
        follower = std::make_unique<SelFollower>();
    }

    /// Turns until nothing is left; what a turn throws costs that turn.
    void poll()
    {
        clock.advance(1h);
        try {
            while (follower->turn() == 1)
                ;
        } catch (const ResultStatus&) {
            ++thrown;
        }
    }

    /// What the master agent is handed: all that is queued.
    void send()
    {
        for (std::deque<Trap> some; !(some = takeTraps()).empty(); clock.advance(1h)) {
            for (const Trap& trap : some)
                told.push_back(std::get<std::string>(trap[1].value).substr(WordLog::prefix.size()));
            trapsArrived(1000);
        }
    }

    void obey(const std::string& line)
    {
        const std::map<std::string, std::function<void()>> words = {
            {"poll", [this] { poll(), send(), follower->keep(); }},
            {"send", [this] { poll(), send(); }},
            {"restart", [this] { restart(); }},
            {"clear", [this] { log.clear(); }},
            {"clearKeepingIds", [this] { log.clear(false); }},
            {"silent", [this] { log.failure = ERROR_BMC_INTERFACE_ERROR; }},
            {"exhausted", [this] { log.onGet = [](const std::string&) { throw std::bad_alloc(); }; }},
            {"well", [this] { log.failure.reset(), log.onGet = nullptr; }},
            {"forget", [this] { forgotten = std::exchange(log.records, {}); }},
            {"remember", [this] { log.records = forgotten; }},
            {"tellNothing", [this] { log.givesInfo = false; }},
            {"back", [this] { clock.time -= 1h; }},
            {"forth", [this] { clock.time += 2h; }},
            {"noSensors", [this] { sensors = std::exchange(log.answers, {}), cache_map.clear(); }},
            {"sensors", [this] { log.answers = sensors; }}};
        std::istringstream all(line);
        for (std::string word; all >> word;)
            if (const auto found = words.find(word); found != words.end())
                found->second();
            else if (word.starts_with('-'))
                log.remove(word.substr(1));
            else
                log.add(word);
    }

    TempRoot root;
    common::ScopedPolicy practical{{.practical = true, .keepsMark = true, .pacesTrapsApart = true}};
    WordLog log;
    ScopedSeam<QueryBackend> useLog{log};
    std::unique_ptr<SelFollower> follower;
    std::vector<std::string> told;
    std::deque<ModelLog::Record> forgotten;
    std::map<std::string, ResultMap> sensors;
    int thrown = 0;
};

/// What happens, in order, and what has to be told in all. "poll" also hands the traps over and keeps the mark, "send"
/// does not keep it; a word that `obey` does not know is a new record with a time, "~word" one without, "-word" its
/// deletion. Where only records without a time stand and something was erased, they are told again. "bad" never reads,
/// and hides those behind it for a while.
struct History {
    const char* events;
    const char* told;
};

constexpr History histories[] = {
    {"old older poll a poll poll b c poll", "a b c"},
    {"poll a poll b poll", "a b"},
    {"old poll clear poll a poll b c d poll e f g poll", "a b c d e f g"},
    {"o1 o2 o3 poll clear a poll b poll", "a b"},
    {"o1 o2 o3 poll clear a b c poll d poll", "a b c d"},
    {"o1 o2 o3 poll clear a b c d e f g poll", "a b c d e f g"},
    {"o1 poll clearKeepingIds a poll clearKeepingIds poll b poll", "a b"},
    {"o1 o2 o3 poll a -a b poll", "b"},
    {"o1 o2 o3 poll -o3 poll a poll -o1 -o2 b poll -a -b poll c poll", "a b c"},
    {"o1 o2 poll -o1 -o2 poll a poll", "a"},
    {"o1 poll restart poll a poll restart b poll restart poll", "a b"},
    {"o1 poll a b restart poll restart poll c poll", "a b c"},
    {"o1 poll clear a b restart poll", "a b"},
    {"o1 poll clear poll restart poll a poll restart b poll", "a b"},
    {"poll restart a poll", "a"},
    {"~x poll ~y poll poll ~z poll restart poll a poll", "~y ~z a"},
    {"o1 ~x poll -o1 poll a poll", "~x a"},
    {"o1 o2 ~x ~y poll -o1 poll ~z poll", "~z"},
    {"~x poll clear ~x poll", "~x"},
    {"o1 o2 poll ~x ~y ~z ~u ~v poll -o1 poll ~w poll poll", "~x ~y ~z ~u ~v ~w"},
    {"old poll a send restart poll", "a a"},
    {"o1 o2 poll a silent poll poll poll well b poll forget poll poll remember poll c poll", "a b c"},
    {"o1 poll a exhausted poll well back b poll forth c poll", "a b c"},
    {"tellNothing ~x poll ~y a poll ~z poll restart ~u poll", "~y a ~z ~u"},
    {"o1 poll a bad b c poll poll poll poll poll poll poll poll poll", "a b c"},
    {"noSensors o1 poll a poll poll sensors poll", "a"},
};

TEST_F(Follower, EachRecordIsToldOnce)
{
    for (const History& history : histories) {
        SCOPED_TRACE(history.events);
        std::filesystem::remove_all(root.resolve("/var/lib/hwagent"));
        log.records.clear();
        log.nextId = 1;
        log.givesInfo = true;
        told.clear();
        thrown = 0;
        restart();
        obey(history.events);
        const auto has = [&](const char* word) { return std::string(history.events).find(word) != std::string::npos; };
        EXPECT_EQ(thrown > 0, has("silent") || has("exhausted") || has("bad"));
        std::string all;
        for (const std::string& word : told)
            all += (all.empty() ? "" : " ") + word;
        EXPECT_EQ(all, history.told);
    }
}

std::vector<std::string> numbered(int first, int last)
{
    std::vector<std::string> words;
    for (int number = first; number <= last; ++number)
        words.push_back(std::to_string(number));
    return words;
}

TEST_F(Follower, IdsThatBeginAgainAndALogThatComesRoundLoseNothing)
{
    log.room = 500;
    log.nextId = 0xFFF0;
    obey("old poll");
    for (int number = 1; number <= 2000; ++number) {
        log.add(std::to_string(number));
        if (number % 400 == 0)
            obey("poll");
        if (number == 1000)
            obey("restart");
    }
    EXPECT_EQ(told, numbered(1, 2000));
    for (int number = 2001; number <= 3000; ++number)
        log.add(std::to_string(number));
    told.clear();
    obey("poll");
    EXPECT_EQ(told, numbered(2501, 3000));
}

TEST_F(Follower, WhatWaitsAsATrapAtACrashIsToldByTheNextProcess)
{
    obey("old poll");
    for (const std::string& word : numbered(1, 3000))
        log.add(word);
    poll();
    for (int second = 0; second < 20; ++second) {
        for (const Trap& trap : takeTraps())
            told.push_back(std::get<std::string>(trap[1].value).substr(WordLog::prefix.size()));
        trapsArrived(1000);
        follower->keep();
        clock.advance(1s);
    }
    EXPECT_EQ(told, numbered(1, 39));
    obey("restart poll restart poll");
    EXPECT_EQ(told, numbered(1, 3000));
}

TEST_F(Follower, AnIdlePollIsOneExchangeAndATurnHasAnEnd)
{
    obey("o1 o2 poll a poll");
    log.exchanges = 0;
    follower->turn();
    EXPECT_EQ(log.exchanges, 1);
    obey("clear poll");
    log.exchanges = 0;
    follower->turn();
    EXPECT_EQ(log.exchanges, 1);

    log.perExchange = 1s;
    for (const std::string& word : numbered(1, 50))
        log.add(word);
    for (int turn = 0; turn < 30; ++turn) {
        const auto before = clock.steadyTime;
        follower->turn();
        EXPECT_LE(clock.steadyTime - before, 10s);
    }
    told.clear();
    send();
    EXPECT_EQ(told, numbered(1, 50));
}

TEST_F(Follower, EventsWaitForTheRecordsOfTheirSensorsButNotForGood)
{
    obey("o1 poll noSensors b poll poll");
    EXPECT_THAT(told, testing::IsEmpty());
    log.answers = sensors;
    log.answers.erase("/BMC/SDR");
    for (int turn = 0; turn < 21; ++turn)
        obey("poll");
    EXPECT_THAT(told, testing::ElementsAre("b"));
}

/// The maker's address is byte 7 of the record, the sensor's number byte 11.
TEST_F(Follower, WhileRecordsAreReadAnEventWaitsForThatOfItsSensorAlone)
{
    const auto change = [this](std::size_t byte, const char* value) {
        log.records.back().raw.replace(3 * byte, 2, value);
    };
    obey("o1 poll");
    follower->waitForSensors(true);
    obey("known software");
    change(7, "41");
    obey("poll unknown");
    change(11, "31");
    obey("behind poll poll");
    EXPECT_THAT(told, testing::ElementsAre("known", "software"));
    addSensor({.number = 0x31, .type = 0x0C});
    log.answers = sdk.answers;
    cache_map.clear();
    obey("poll");
    EXPECT_THAT(told, testing::ElementsAre("known", "software", "unknown", "behind"));
}

TEST_F(Follower, WhileOldRecordsAreToldTheHealthWaits)
{
    obey("o1 poll");
    log.clear();
    log.add("x. Status is Critical");
    log.add("x. Status is OK");
    restart();
    handler().m_nHealthStatus = 3;
    poll();
    EXPECT_EQ(handler().m_nHealthStatus, 3);
    log.add("x. Status is Critical");
    restart();
    poll();
    EXPECT_EQ(handler().m_nHealthStatus, 5);
    log.add("x. Status is OK");
    poll();
    EXPECT_EQ(handler().m_nHealthStatus, 3);
}

TEST(SelTrail, OnlyWhatItWroteIsTakenBack)
{
    SelTrail trail;
    for (int record = 0; record < 20; ++record)
        trail.add("01 00 02 78 56 34 12 20 00 04 01 30 01 52 00 " + ipmi::hexByte(static_cast<std::uint8_t>(record)));
    trail.erased = "123";
    const std::optional<SelTrail> again = SelTrail::parse(trail.text());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->text(), trail.text());
    EXPECT_EQ(again->back(SelTrail::longest), nullptr);
    EXPECT_TRUE(again->back(0)->ends_with("13"));
    EXPECT_TRUE(SelTrail::parse("event log mark 1\n\n"));
    for (const char* const text : {"", "event log mark 1\n", "event log mark 2\n\n", "event log mark 1\n\n01 02\n",
                                   "event log mark 1\n5\n01 00 02 78 56 34 12 20 00 04 01 30 01 52 00 zz\n"})
        EXPECT_FALSE(SelTrail::parse(text)) << text;
}

} // namespace
