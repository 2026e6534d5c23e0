#include "client/door/smClient.hpp"

#include "client/door/Functions.hpp"
#include "tests/client/ClientFixture.hpp"
#include "tests/support/TempRoot.hpp"

#include <new>

namespace {

class Client : public ClientFixture {
protected:
    Client() { gSubagent = &client; }
    ~Client() override { gSubagent = nullptr; }

    /// init() without a configuration file, with the diagnostics caught.
    void init()
    {
        testing::internal::CaptureStderr();
        client.init();
        testing::internal::GetCapturedStderr();
    }

    TempRoot root;
    smClient client;
};

TEST_F(Client, DispatchAnswersForGroupsAttributesAndOperationsItHasNot)
{
    init();
    long number = 0;
    char* text = nullptr;
    for (const int entity : {0, 19, -1}) {
        const auto none = static_cast<_SMEntity>(entity);
        EXPECT_EQ(client.getEntity(none), nullptr);
        EXPECT_EQ(getIntInfo(none, VOLTAGE_DEVICEID, 0, number), 8);
        EXPECT_EQ(getStrData(none, VOLTAGE_DEVICEID, 0, text), 8);
    }
    for (int entity = SMINFO; entity <= MISCELLANEOUS; ++entity)
        EXPECT_NE(client.getEntity(static_cast<_SMEntity>(entity)), nullptr) << entity;
    EXPECT_EQ(getIntInfo(SMINFO, VOLTAGE_DEVICEID, 0, number), 9);
    EXPECT_EQ(getIntData(SMINFO, SMINFO_HEALTHSTATUS, 0, number), 4);
    EXPECT_EQ(setIntData(CHASSIS, CHASSIS_STATUS, 0, 1), 4);
    EXPECT_EQ(getIndex(VOLTAGE, 1), 0);
    EXPECT_EQ(getExtGroupStatus(SMINFO), 0);
    EXPECT_EQ(getDesc(SMINFO, 0), nullptr);
}

TEST_F(Client, SystemStatusIsTheWorstRowAndRowsInTroubleAreSeeded)
{
    addSensor({.number = 1, .value = "12"});
    addSensor({.number = 2, .value = "13.5"});
    addSensor({.number = 3, .value = "14.5"});
    init();
    EXPECT_EQ(getCount(VOLTAGE), 3);
    EXPECT_EQ(getExtGroupStatus(VOLTAGE), 4);
    EXPECT_EQ(getHealthStatus(), 4);
    EXPECT_EQ(client.mEventHandler->m_nHealthStatus, 4);
    EXPECT_EQ(client.mEventHandler->mNonCriList, std::list<int>{0x032000});
    EXPECT_TRUE(client.mEventHandler->mCriticalList.empty());
    setHealthStatus(3);
    EXPECT_EQ(getHealthStatus(), 3);
}

TEST_F(Client, NothingIsTouchedAfterShutdown)
{
    addSensor({});
    init();
    shutdownSMClient();
    shutdownSMClient();
    long number = 0;
    EXPECT_EQ(client.mVoltageProbe, nullptr);
    EXPECT_EQ(getIntData(VOLTAGE, VOLTAGE_READING, 0, number), 8);
    EXPECT_EQ(getDesc(VOLTAGE, 0), nullptr);
    EXPECT_EQ(addEvent({}), 8);
    EXPECT_EQ(processEvent(), 0);
    EXPECT_EQ(setHealthStatus(3), 0);
    EXPECT_EQ(isInitComplete(), 1);
}

TEST_F(Client, ExceptionsEndAtTheFlatFunctions)
{
    struct ThrowingClient : smClient {
        BaseAccessor* getEntity(_SMEntity) override { throw std::bad_alloc(); }
    } throwing;
    gSubagent = &throwing;
    long number = 0;
    EXPECT_EQ(getIntData(VOLTAGE, VOLTAGE_READING, 0, number), 8);
    EXPECT_EQ(getDesc(VOLTAGE, 0), nullptr);
}

} // namespace
