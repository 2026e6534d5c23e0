#include "common/Policy.hpp"
#include "common/Util.hpp"
#include "modules/bmc/subjects/Sel.hpp"
#include "tests/modules/bmc/SdrFixture.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/support/TextTable.hpp"
#include "tests/support/Threads.hpp"

using Module::BMCConfig::BMCConfigModule;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr char words[] = "$1 1\n&\n2C\t\"Chipset\"\n^ $3 2\n&\n0\t\"Informational\"\n2\t\"CRITICAL\"\n^\n"
                         "$4 1\n&\nC\t\"Memory\"\n^ $15 1\n&\nA\t\"none\"\n^\n"
                         "$9 1\n&\n&0C\t0\n01\t\t\t2\t0\t\t\"[sensor_name] lost a bit\"\n^\n";

class Sel : public SdrFixture {
protected:
    using Parameters = std::map<std::string, std::string>;

    Sel()
    {
        setenv("HRS_PATH_QL", folder.write("/words/hrs_enu.ini", words).parent_path().c_str(), 1);
        bmc.on(0x0A, 0x42, [this](const IpmiRequest&) {
            ++selReservation;
            return IpmiAnswer{0, selReservation, 0x56};
        });
        bmc.on(0x0A, 0x43, [this](const IpmiRequest& request) { return readEntry(request); });
    }
    ~Sel() override { unsetenv("HRS_PATH_QL"); }

    /// A correctable error of the memory sensor 5 of the BMC.
    static Bytes event(unsigned id, std::uint8_t generator = 0x20)
    {
        Bytes bytes = ipmi::parseBytes("00 00 02 00 00 00 50 20 31 04 0C 05 6F 01 A2 0F");
        bytes[0] = static_cast<std::uint8_t>(id), bytes[1] = static_cast<std::uint8_t>(id >> 8);
        bytes[7] = generator;
        return bytes;
    }

    void fill(std::initializer_list<unsigned> ids)
    {
        log.clear();
        for (const unsigned id : ids)
            log.push_back(event(id));
    }

    IpmiAnswer readEntry(const IpmiRequest& request)
    {
        const int id = request.data[2] | request.data[3] << 8;
        const auto found = id == 0xFFFF && !log.empty() ? log.end() - 1 : findRecord(log, id);
        if (found == log.end())
            return {0xCB};
        IpmiAnswer answer = headBefore(log, found);
        answer.insert(answer.end(), found->begin(), found->end());
        return answer;
    }

    ResultMap translate(const Parameters& parameters)
    {
        ResultMap results;
        BMCConfigModule().ProcessXQuery("/BMC/SEL/TRANSLATED", parameters, results, 0);
        return results;
    }

    static std::string field(const ResultMap& results, std::size_t index, const std::string& key)
    {
        return results.at("/BMC/SEL/TRANSLATED[" + std::to_string(index) + "]/" + key).mXNodeList.at(0);
    }

    /// The low bytes of the ids of the records that the answer lists, as text.
    static std::vector<std::string> idsIn(const ResultMap& results)
    {
        std::vector<std::string> ids;
        for (const std::string& path : results.at("/BMC/SEL/TRANSLATED").mXNodeList)
            ids.push_back(results.at(path + "/RAW").mXNodeList.at(0).substr(0, 2));
        return ids;
    }
    std::vector<std::string> idsOf(const Parameters& parameters) { return idsIn(translate(parameters)); }

    std::string failureFrom(const std::string& id)
    {
        return std::to_string(failureOf([&] { translate({{"RECORD_ID", id}}); }).code);
    }

    TempRoot folder;
    std::vector<Bytes> log;
    std::uint8_t selReservation = 0;
};

TEST_F(Sel, EmptyLogIsNoErrorAndNoRecords)
{
    EXPECT_EQ(text("/BMC/SEL/LAST_RECORD"), "No SEL Records Found!");
    EXPECT_THAT(get("/BMC/SEL").at("/BMC/SEL").mXNodeList, IsEmpty());
    for (const char* id : {"ffff", "0"})
        EXPECT_THAT(idsOf({{"RECORD_ID", id}, {"RANGE", "3000"}}), IsEmpty());
    EXPECT_EQ(failureFrom("5"), "1089");
}

TEST_F(Sel, TranslatedRecordHasItsFields)
{
    records = {full(1, 5, 0x0C, {}, {0xC4, 'B', 'a', 'n', 'k'})};
    log = {event(0x0102, 0x2C), event(0x0203)};
    log[1][8] = 0; // the owner of the sensor by its LUN and channel
    const ResultMap results = translate({{"/SEL/RECORD_ID", "102"}, {"/SEL/RANGE", "2"}});
    constexpr char expected[] = R"(
0 | RAW | 02 01 02 00 00 00 50 2C 31 04 0C 05 6F 01 A2 0F
0 | NEXT_SEL_RECORD_ID | 0203
0 | SEVERITY | CRITICAL
0 | TIMESTAMP | 07/13/2012-11:01:20
0 | SENSOR_NAME |
0 | SENSOR_TYPE | Memory
0 | SENSOR_NUMBER | 5
0 | GENERATOR_CHANNEL_NO | 3
0 | GENERATOR_LUN | 1
0 | GENERATOR_ID | Chipset
1 | SENSOR_NAME | Bank
1 | DESCR | Bank lost a bit
1 | GENERATOR_ID | Integrated BMC
1 | NEXT_SEL_RECORD_ID | FFFF)";
    for (const auto& row : rowsOf(expected))
        EXPECT_EQ(field(results, std::stoul(row[0]), row[1]), row[2]) << row[1];
    EXPECT_THAT(results.at("/BMC/SEL/TRANSLATED[0]").mXNodeList, SizeIs(11));
    EXPECT_THAT(results, SizeIs(1 + 2 * 12));
}

TEST_F(Sel, ALocaleTellsTheRecordsInItsLanguageWithTheEnglishTextBeside)
{
    folder.write("/words/hr_sel_de_DE.ini",
                 "$3 1\n&\n2\t\"KRITISCH\"\n^ $9 1\n&\n&0C\t0\n01\t\t\t2\t0\t\t\"verlor ein Bit\"\n^\n");
    log = {event(1), event(2)};
    log[1][2] = 220;
    for (const char* locale : {"de_DE.utf8", "de_DE.UTF-8", "DEU", "", "en_US.utf8", "fr_FR.utf8", "nowhere"}) {
        const bool isGerman = std::tolower(*locale) == 'd';
        const ResultMap told = translate({{"LOCALE", locale}});
        EXPECT_EQ(field(told, 0, "DESCR"), isGerman ? "verlor ein Bit" : "the sensor lost a bit") << locale;
        EXPECT_EQ(field(told, 0, "SEVERITY"), isGerman ? "KRITISCH" : "CRITICAL");
        EXPECT_THAT(told.at("/BMC/SEL/TRANSLATED[0]").mXNodeList, SizeIs(isGerman ? 12 : 11));
        if (isGerman) {
            EXPECT_EQ(field(told, 0, "ENGLISH"), "the sensor lost a bit");
            EXPECT_EQ(field(told, 1, "DESCR"), field(told, 1, "ENGLISH")) << "a record without words of its own";
        }
    }
}

TEST_F(Sel, RecordIdAndRangeChooseTheRecords)
{
    fill({0x10, 0x11, 0x13, 0x2F});
    EXPECT_THAT(idsOf({}), ElementsAre("10", "11", "13", "2F"));
    EXPECT_THAT(idsOf({{"RECORD_ID", "11"}, {"RANGE", "2"}}), ElementsAre("11", "13"));
    EXPECT_THAT(idsOf({{"RECORD_ID", "0013"}, {"RANGE", "3000"}}), ElementsAre("13", "2F"));
    EXPECT_THAT(idsOf({{"RECORD_ID", "2f"}, {"RANGE", "-1"}}), ElementsAre("2F"));
    for (const char* id : {"00010", "1G", "12"}) // the last one is deleted
        EXPECT_EQ(failureFrom(id), "1089") << id;
    for (const std::uint8_t code : Bytes{0xC9, 0xCC}) {
        bmc.on(0x0A, 0x43, IpmiAnswer{code});
        EXPECT_EQ(failureFrom("10"), "1089") << int{code};
    }
}

TEST_F(Sel, LastRecordIsReadAloneWhateverFollows)
{
    fill({1, 2, 3});
    bmc.on(0x0A, 0x43, [this](const IpmiRequest& request) {
        IpmiAnswer answer = readEntry(request);
        answer[1] = 1, answer[2] = 0;
        return answer;
    });
    const ResultMap results = translate({{"RECORD_ID", "ffff"}, {"RANGE", "3000"}});
    EXPECT_THAT(idsIn(results), ElementsAre("03"));
    EXPECT_EQ(field(results, 0, "NEXT_SEL_RECORD_ID"), "FFFF");
}

TEST_F(Sel, WalkFollowsTheIdsAcrossTheirEndAndNeverInACircle)
{
    fill({0xFFFD, 0xFFFE, 0x0001, 0x0007});
    EXPECT_THAT(idsOf({{"RECORD_ID", "FFFD"}}), ElementsAre("FD", "FE", "01", "07"));
    EXPECT_THAT(
        get("/BMC/SEL").at("/BMC/SEL").mXNodeList,
        ElementsAre("/BMC/SEL/RECORD[65533]", "/BMC/SEL/RECORD[65534]", "/BMC/SEL/RECORD[1]", "/BMC/SEL/RECORD[7]"));
    for (const Bytes& back : {Bytes{7, 0}, Bytes{1, 0}, Bytes{0xFD, 0xFF}, Bytes{0, 0}}) {
        bmc.on(0x0A, 0x43, [this, back](const IpmiRequest& request) {
            IpmiAnswer answer = readEntry(request);
            if (request.data[2] == 7)
                answer[1] = back[0], answer[2] = back[1];
            return answer;
        });
        EXPECT_THAT(idsOf({{"RECORD_ID", "FFFD"}}), SizeIs(4)) << int{back[0]};
    }
}

TEST_F(Sel, LogClearedUnderWayKeepsWhatWasRead)
{
    fill({1, 2, 3, 4});
    bmc.on(0x0A, 0x43,
           [this](const IpmiRequest& request) { return request.data[2] == 3 ? IpmiAnswer{0xCB} : readEntry(request); });
    EXPECT_THAT(idsOf({{"RECORD_ID", "1"}}), ElementsAre("01", "02"));
}

TEST_F(Sel, BmcThatWantsAReservationGetsOneAndIsAskedAgain)
{
    fill({1, 2, 3});
    bmc.on(0x0A, 0x43, [this](const IpmiRequest& request) {
        if (request.data[2] == 2 && selReservation < 2)
            ++selReservation; // another reader has taken it
        return request.data[0] == selReservation && request.data[1] == 0x56 ? readEntry(request) : IpmiAnswer{0xC5};
    });
    EXPECT_THAT(idsOf({{"RECORD_ID", "1"}}), ElementsAre("01", "02", "03"));
    EXPECT_EQ(count(0x0A, 0x42), 2U);
}

TEST_F(Sel, RecordThatNeverReadsIsGivenUpAfterThousandRepetitionsOrThreeTries)
{
    const auto tries = [this](IpmiAnswer answer) {
        bmc.on(0x0A, 0x43, std::move(answer));
        bmc.requests.clear();
        EXPECT_EQ(failureOf([&] { get("/BMC/SEL/RECORD[1]"); }).code, 1026);
        return count(0x0A, 0x43);
    };
    EXPECT_EQ(tries({0xC0}), 1001U);
    for (const std::size_t length : {1, 2, 3, 17, 18})
        EXPECT_GT(tries(IpmiAnswer(length, 0)), 0U) << length;
    const std::size_t ofSilence = tries({});
    EXPECT_EQ(ofSilence % 1001, 0U);
    const common::ScopedPolicy practical({.givesUpUnreadRecords = true});
    EXPECT_EQ(tries({}), ofSilence / 1001 * 3);
}

TEST_F(Sel, PollCostsOneExchangeAndOneMoreForEachNewRecord)
{
    records = {full(1, 5, 0x0C, {}, {0xC4, 'B', 'a', 'n', 'k'})};
    fill({1});
    log[0][8] = 0;
    translate({{"RECORD_ID", "ffff"}, {"RANGE", "3000"}});
    std::filesystem::remove_all(folder.resolve("/words")); // nobody needs it again
    bmc.requests.clear();
    const ResultMap again = translate({{"RECORD_ID", "1"}, {"RANGE", "3000"}});
    EXPECT_EQ(field(again, 0, "DESCR"), "Bank lost a bit");
    EXPECT_THAT(bmc.requests, SizeIs(1));
    for (unsigned id = 2; id <= 1000; ++id)
        log.push_back(event(id));
    bmc.requests.clear();
    EXPECT_THAT(idsOf({{"RECORD_ID", "1"}, {"RANGE", "3000"}}), SizeIs(1000));
    EXPECT_THAT(bmc.requests, SizeIs(1000));
}

TEST_F(Sel, WithoutATranslationFileTheRecordStandsAndALaterFileIsTaken)
{
    std::filesystem::remove_all(folder.resolve("/words"));
    fill({1, 2});
    const ResultMap results = translate({});
    EXPECT_THAT(idsIn(results), ElementsAre("01", "02"));
    for (const auto& [key, value] : {std::pair{"DESCR", "Unknown Event."},
                                     {"SEVERITY", "Informational"},
                                     {"TIMESTAMP", "07/13/2012-11:01:20"},
                                     {"GENERATOR_ID", "Integrated BMC"}})
        EXPECT_EQ(field(results, 1, key), value);
    folder.write("/words/hrs_enu.ini", words);
    EXPECT_EQ(field(translate({}), 1, "SEVERITY"), "CRITICAL");
}

TEST_F(Sel, TextsAreCutToTheRoomThatReadersHave)
{
    const std::string names = Util::join(std::vector<std::string>(30, "[sensor_name]"), "");
    folder.write("/words/hrs_enu.ini", "$3 1\n&\n0\t\"" + std::string(40, 's') +
                                           "\"\n^ $9 1\n&\n&0C\t0\n01\t\t\t0\t0\t\t\"" + std::string(580, 'd') + names +
                                           "\"\n^\n");
    records = {full(1, 5, 0x0C, {}, Bytes(40, 0xDE))};
    log = {event(6)};
    log[0][8] = 0;
    const ResultMap results = translate({});
    EXPECT_EQ(field(results, 0, "DESCR").size(), 1023U);
    EXPECT_EQ(field(results, 0, "SEVERITY").size(), 19U);
}

TEST_F(Sel, VoltageFaultWhoseSensorCannotBeAskedForLeavesTheOthers)
{
    fill({1, 2});
    log[0][10] = 2, log[0][12] = 3, log[0][13] = 0x81, log[0][14] = 0x20;
    const ResultMap results = translate({});
    EXPECT_THAT(idsIn(results), ElementsAre("01", "02"));
    EXPECT_EQ(field(results, 1, "SEVERITY"), "CRITICAL");
}

TEST_F(Sel, GivenRecordsAreTranslatedWithoutTheLog)
{
    const std::string raw = "09 00 02 00 00 00 50 01 00 04 0C 05 6F 01 A2 0F";
    const ResultMap one = translate({{"/SEL/RAW_SEL_RECORD", raw}});
    EXPECT_EQ(field(one, 0, "RAW"), raw);
    EXPECT_EQ(field(one, 0, "GENERATOR_ID"), "BIOS POST");
    EXPECT_EQ(field(one, 0, "SEVERITY"), "CRITICAL");

    folder.write("/words/hrs_alder.ini", "$3 1\n&\n2\t\"alder\"\n^ $9 1\n&\n&0C\t0\n01\t\t\t2\t0\t\t\"x\"\n^\n");
    Parameters many = {{"/SEL/RAW_SEL_RECORD_0", raw}, {"/SEL/RAW_SEL_RECORD_1", raw}, {"/SEL/PRODUCT_ID", "40"}};
    EXPECT_EQ(field(translate(many), 1, "SEVERITY"), "alder");
    many["/SEL/RANGE"] = "1";
    EXPECT_THAT(idsOf(many), ElementsAre("09"));
    EXPECT_EQ(field(translate({{"/SEL/RAW_SEL_RECORD", raw}}), 0, "SEVERITY"), "CRITICAL") << "its own product again";
    EXPECT_EQ(failureOf([&] { translate({{"/SEL/RAW_SEL_RECORD", raw.substr(3)}}); }).code, 1089);
    EXPECT_EQ(count(0x0A, 0x43), 0U);
}

TEST_F(Sel, BoardsWithExtendedRecordsAreReadByTheirOwnCommand)
{
    forget();
    tellProduct(0x65, 0);
    fill({1, 2});
    bmc.on(0x30, 0x23, [this](const IpmiRequest& request) {
        IpmiAnswer answer = readEntry(request);
        answer.insert(answer.end(), {0xAA, 0xBB});
        return answer;
    });
    EXPECT_EQ(field(translate({}), 1, "RAW"), line(log[1]).substr(1)) << "readers have room for a standard record";
    EXPECT_EQ(count(0x30, 0x23), 2U);
}

TEST_F(Sel, ThreadsShareTheTranslator)
{
    const ScopedSeam<Clock> realClock(Clock::real()); // the fake one belongs to one thread
    fill({1, 2, 3, 4, 5, 6, 7, 8});
    inThreads(10, [this](int, int) { EXPECT_EQ(field(translate({}), 7, "SEVERITY"), "CRITICAL"); });
}

} // namespace
