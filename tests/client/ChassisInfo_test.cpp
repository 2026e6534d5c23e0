#include "client/groups/clChassisInfo.hpp"

#include "tests/client/ClientFixture.hpp"

namespace {

constexpr char intrusionReading[] = "/BMC/SENSOR[115]/VALUE";

using Chassis = ClientFixture;

TEST_F(Chassis, OnlyAnOpenLidIsCritical)
{
    for (const auto& [eventType, reading, status] : {std::tuple{0x6F, "0 C0 0 0", 2},
                                                     {0x6F, "0 C0 1 0", 4},
                                                     {0x6F, "ff C0 fe ff", 2},
                                                     {0x6F, "0 E0 1 0", 2},
                                                     {0x6F, "0 C0", 2},
                                                     {0x6F, "", 2},
                                                     {0x03, "0 C0 1 0", 2},
                                                     {0x03, "0 C0 2 0", 4},
                                                     {0x03, "0 E0 2 0", 2},
                                                     {0x08, "0 C0 3 0", 2}}) {
        SCOPED_TRACE(reading);
        sdk.answers.clear();
        cache_map.clear();
        addSensor({.number = 0x72, .type = 5, .recordType = 3}); // nobody can read an event-only sensor
        addSensor({.number = 0x73, .type = 5, .eventType = eventType});
        sdk.answer(intrusionReading, reading);
        chassisInfo enclosure;
        enclosure.init();
        EXPECT_EQ(intData(enclosure, CHASSIS_STATUS), status) << eventType;
    }
}

TEST_F(Chassis, WithoutAnythingToReadTheRowIsUnknownAndHealthy)
{
    chassisInfo group;
    traceWanted = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(group.init(), 0);
    EXPECT_EQ(intData(group, CHASSIS_SECURITYSTATE), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("on /SMBIOS/Type3/Operation: "), std::string::npos);
    traceWanted = false;
    EXPECT_EQ(intData(group, CHASSIS_STATUS), 2);
    EXPECT_EQ(intData(group, CHASSIS_BOOTSTATE), 1);
    EXPECT_EQ(intData(group, CHASSIS_LOCKSTATE), 0);
    EXPECT_EQ(intInfo(group, CHASSIS_CONTAINERTYPE), 2);
    EXPECT_EQ(intInfo(group, CHASSIS_POPWDSTATUS), 2);
    EXPECT_EQ(strInfo(group, CHASSIS_SERIALNUMBER), "");
    EXPECT_EQ(intData(group, CHASSIS_STATUS, 1), -25);
    EXPECT_EQ(intData(group, CHASSIS_NAME), -9);
}

} // namespace
