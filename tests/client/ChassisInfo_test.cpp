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
        const std::string copy = out ? out : "none";
        std::free(out);
        return copy;
    }

    chassisInfo group;
};

TEST_F(Chassis, OnlyAnOpenLidIsCritical)
{
    addSensor({.number = 0x73, .type = 5});
    group.init();
    for (const auto& [reading, status] :
         {std::pair{"0 C0 0 0", 2}, {"0 C0 1 0", 4}, {"ff C0 fe ff", 2}, {"0 E0 1 0", 2}, {"0 C0", 2}, {"", 2}}) {
        sdk.answer(intrusionReading, reading);
        cache_map.clear();
        EXPECT_EQ(data(CHASSIS_STATUS), status) << reading;
    }
    sdk.answers.erase(intrusionReading);
    cache_map.clear();
    EXPECT_EQ(data(CHASSIS_STATUS), 2);
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
