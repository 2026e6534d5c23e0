#include "client/groups/clChassisInfo.hpp"

#include "tests/client/ClientFixture.hpp"

#include <cstdlib>

namespace {

constexpr char intrusionReading[] = "/BMC/SENSOR[115]/VALUE";

class Chassis : public ClientFixture {
protected:
    /// The answer, or the result if that is not 0.
    long info(_SMAttribute attribute)
    {
        long out = -1;
        const int result = group.getIntInfo(attribute, 0, out);
        return result ? result : out;
    }
    long data(_SMAttribute attribute)
    {
        long out = -1;
        EXPECT_EQ(group.getIntData(attribute, 0, out), 0) << attribute;
        return out;
    }
    std::string text(_SMAttribute attribute)
    {
        char* out = nullptr;
        EXPECT_EQ(group.getStrInfo(attribute, 0, out), 0) << attribute;
        std::string copy = out ? out : "none";
        std::free(out);
        return copy;
    }

    chassisInfo group;
};

TEST_F(Chassis, OnlyAnOpenLidIsCritical)
{
    struct Case {
        int eventType;
        const char* reading;
        long status;
    };
    for (const Case& lid :
         {Case{0x6F, "0 C0 0 0", 2}, Case{0x6F, "0 C0 1 0", 4}, Case{0x6F, "ff C0 fe ff", 2}, Case{0x6F, "0 E0 1 0", 2},
          Case{0x6F, "0 C0", 2}, Case{0x6F, "", 2}, Case{0x03, "0 C0 1 0", 2}, Case{0x03, "0 C0 2 0", 4},
          Case{0x03, "0 E0 2 0", 2}, Case{0x08, "0 C0 3 0", 2}}) {
        SCOPED_TRACE(lid.reading);
        sdk.answers.clear();
        cache_map.clear();
        addSensor({.number = 0x72, .type = 5, .recordType = 3}); // nobody can read an event-only sensor
        addSensor({.number = 0x73, .type = 5, .eventType = lid.eventType});
        sdk.answer(intrusionReading, lid.reading);
        chassisInfo enclosure;
        enclosure.init();
        long out = -1;
        EXPECT_EQ(enclosure.getIntData(CHASSIS_STATUS, 0, out), 0);
        EXPECT_EQ(out, lid.status) << lid.eventType;
    }
}

TEST_F(Chassis, WithoutAnythingToReadTheRowIsUnknownAndHealthy)
{
    traceWanted = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(group.init(), 0);
    EXPECT_EQ(data(CHASSIS_SECURITYSTATE), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("on /SMBIOS/Type3/Operation: "), std::string::npos);
    traceWanted = false;
    EXPECT_EQ(data(CHASSIS_STATUS), 2);
    EXPECT_EQ(data(CHASSIS_BOOTSTATE), 1);
    EXPECT_EQ(data(CHASSIS_LOCKSTATE), 0);
    EXPECT_EQ(info(CHASSIS_CONTAINERTYPE), 2);
    EXPECT_EQ(info(CHASSIS_POPWDSTATUS), 2);
    EXPECT_EQ(text(CHASSIS_SERIALNUMBER), "");
    long out = 0;
    EXPECT_EQ(group.getIntData(CHASSIS_STATUS, 1, out), 25);
    EXPECT_EQ(group.getIntData(CHASSIS_NAME, 0, out), 9);
}

} // namespace
