#include "common/Policy.hpp"
#include "tests/client/EventFixture.hpp"
#include "tests/client/ModelLog.hpp"

#include <gmock/gmock.h>

namespace {
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Watcher : public EventFixture {
protected:
    Watcher()
    {
        addSensor({.number = 0x30, .type = 1, .name = "Front Panel Temp"});
        log.answers = sdk.answers;
        log.answer("/BMC/SENSOR[48]/NAME", "Front Panel Temp");
    }

    void addTemperature(unsigned id, const std::string& data = "52 00 00") { log.add(id, 1, 0x01, data); }

    ModelLog log;
    ScopedSeam<QueryBackend> useLog{log};
};

TEST_F(Watcher, OldRecordsRaiseNothingAndTheMarkIsTheNewest)
{
    for (unsigned id = 1; id <= 500; ++id)
        addTemperature(id);
    EXPECT_EQ(CheckForNewSELEntry(), 0);
    EXPECT_THAT(log.marks, ElementsAre("ffff"));
    EXPECT_EQ(m_iLastRecordID, 500);
    EXPECT_EQ(CheckForNewSELEntry(), 0);
    EXPECT_THAT(log.marks, ElementsAre("ffff", "1f4"));
    EXPECT_THAT(trapsSent(), IsEmpty());
}

TEST_F(Watcher, ThreeThousandRecordsBetweenTwoPollsAreAllTold)
{
    addTemperature(1);
    CheckForNewSELEntry();
    for (unsigned id = 2; id <= 3001; ++id)
        addTemperature(id, id % 2 ? "52 00 00" : "57 00 00");
    handler().m_nHealthStatus = 6;
    CheckForNewSELEntry();
    EXPECT_EQ(m_iLastRecordID, 3000);
    CheckForNewSELEntry();
    EXPECT_EQ(m_iLastRecordID, 3001);
    std::string told = trapNames(), expected;
    for (std::size_t health; (health = told.find("20.")) != std::string::npos;)
        told.erase(health, 5);
    for (int pair = 0; pair < 1500; ++pair)
        expected += "70.17 70.14 ";
    EXPECT_EQ(told, expected);
    EXPECT_EQ(CheckForNewSELEntry(), 0);
}

TEST_F(Watcher, AnEmptyLogChangesNothing)
{
    EXPECT_THAT(diagnosticsOf([] { EXPECT_EQ(CheckForNewSELEntry(), 0); }), HasSubstr("No SEL record found!"));
    EXPECT_EQ(m_iLastRecordID, lastRecordOfLog);
}

TEST_F(Watcher, OfAClearedLogThatIsFilledPastTheMarkTheRecordAtItIsSkipped)
{
    addTemperature(2);
    CheckForNewSELEntry();
    log.records.clear();
    addTemperature(1);
    addTemperature(2, "54 00 00");
    EXPECT_EQ(CheckForNewSELEntry(), 1);
    EXPECT_EQ(m_iLastRecordID, 2);
    EXPECT_THAT(trapsSent(), IsEmpty());
}

TEST_F(Watcher, ARecordThatIsGoneSendsTheMarkToTheEndOfTheLog)
{
    addTemperature(9);
    CheckForNewSELEntry();
    log.failure = ERROR_INVALID_DATAVAL;
    const std::string said = diagnosticsOf([] { EXPECT_EQ(CheckForNewSELEntry(), 0); });
    EXPECT_THAT(said, HasSubstr("on :/BMC/SEL/TRANSLATED failed Error code. 1089  -Sel record ID = 9 is not valid."));
    EXPECT_EQ(m_iLastRecordID, lastRecordOfLog);
    log.failure = ERROR_BMC_INTERFACE_ERROR;
    CheckForNewSELEntry();
    EXPECT_EQ(log.marks.back(), "ffff");
    log.failure.reset();
    addTemperature(10);
    CheckForNewSELEntry();
    EXPECT_EQ(m_iLastRecordID, lastRecordOfLog);
    EXPECT_THAT(trapsSent(), IsEmpty());
}

TEST_F(Watcher, FieldsAreDecodedUnevenly)
{
    // the text; then record id, mark, event data 1 and 2, revision, trigger
    const std::tuple<const char*, int, int, int, int, int, int> decodings[] = {
        {"02 01 02 78 56 34 12 20 00 04 01 30 81 6F 00 A5", 2, 258, 6, '0', '0', 0x81},
        {"FF FE 02 78 56 34 12 20 00 04 01 30 01 A1 FF 00", 0xFF, 0xFEFF, 0, 'F', '0', 1},
        {"3 0 2 78 56 34 12 20 0 4 1 30 1 52 4 0", 3, 3, 52, '4', '4', 1},
        {"07", 7, 7, 0, 0, 0, 0},
        {"", 0, 0, 0, 0, 0, 0},
        {"01  02", 1, 1, 0, 0, 0, 0},
        {"1 0 2 3 4 5 6 7 8 9 A B C 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30", 1, 1, 13, '1', '9', 12},
    };
    for (const auto& [raw, recordId, mark, data1, data2, revision, trigger] : decodings) {
        SCOPED_TRACE(raw);
        m_iLastRecordID = lastRecordOfLog;
        sSelEntry = raw;
        DecodeSELQuery();
        EXPECT_EQ(t_SelData.usRecordId, recordId);
        EXPECT_EQ(m_iLastRecordID, mark);
        EXPECT_EQ(t_SelData.ucEventData1, data1);
        EXPECT_EQ(aSelWrapper.m_cInfo.m_ucEventData1, data1);
        EXPECT_EQ(t_SelData.ucEventData2, data2);
        EXPECT_EQ(t_SelData.ucEvmRev, revision);
        EXPECT_EQ(t_SelData.ucEventTrigger, trigger);
    }
    m_iLastRecordID = 300;
    sSelEntry = "2B 01";
    DecodeSELQuery();
    EXPECT_EQ(m_iLastRecordID, 300) << "a lower id does not move the mark back";
}

TEST_F(Watcher, AnotherLanguageIsShownWhileEnglishChoosesTheTrap)
{
    log.answers["/BMC/SDR/SENSOR_TYPE[12]"] = log.answers["/BMC/SDR/SENSOR_TYPE[1]"];
    addTemperature(1);
    CheckForNewSELEntry();
    copyText(client.mSystemManagement->m_stLocale, "de_DE.utf8");
    log.add(2, 0x0C, 0x6F, "00 FF FF", "a correctable ECC error. Status is OK");
    addTemperature(3);
    CheckForNewSELEntry();
    client.mSystemManagement->m_stLocale[0] = '\0';
    log.add(4, 0x0C, 0x6F, "02 FF FF", "Parity Error. Status is Critical");
    CheckForNewSELEntry();
    EXPECT_THAT(trapsSent(), ElementsAre("60.1 auf Deutsch", "70.14 auf Deutsch", HasSubstr("20.5"),
                                         "60.3 Parity Error. Status is Critical"));
}

TEST_F(Watcher, ATextThatDoesNotFitEndsTheProcessOrIsCut)
{
    addTemperature(1);
    CheckForNewSELEntry();
    log.add(2, 0x77, 0x01, "52 00 00", std::string(1024, 'd'));
    EXPECT_DEATH(CheckForNewSELEntry(), "a text of 1024 bytes does not fit into 1023");
    const common::ScopedPolicy practical({.cutsLongTexts = true});
    EXPECT_EQ(CheckForNewSELEntry(), 1);
    EXPECT_EQ(std::string(t_LastSelData.sEventDiscription), std::string(1023, 'd'));
    EXPECT_STREQ(t_LastSelData.sSeverity, "CRITICAL");
    EXPECT_EQ(aSelWrapper.m_cInfo.m_cLocalTimeStamp.narrow(), "11/14/2023-22:13:20");
    EXPECT_EQ(aSelWrapper.m_cInfo.m_cSensorType.narrow(), "119");
    EXPECT_EQ(aSelWrapper.m_cInfo.m_bStandardEvent, 1);
}

} // namespace
