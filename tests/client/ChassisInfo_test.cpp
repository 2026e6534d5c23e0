#include "client/clChassisInfo.hpp"

#include "tests/client/ClientFixture.hpp"

#include <cstdlib>

namespace {

constexpr char fru[] = "/BMC/FRU[0]/RECORD/DECODED/";
constexpr char intrusionReading[] = "/BMC/SENSOR[115]/VALUE";

class Chassis : public ClientFixture {
protected:
    void answerChassis(const std::string& name, const std::string& word)
    {
        sdk.answers["/SMBIOS/Type3"]["/SMBIOS/Type3/" + name] = ScriptedBackend::leaf({word});
        cache_map.clear();
    }
    void answerSetting(const std::string& name, const std::string& word)
    {
        sdk.answers["/SMBIOS/Type24"]["/SMBIOS/Type24/HardwareSecuritySettings/" + name] =
            ScriptedBackend::leaf({word});
    }

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

TEST_F(Chassis, FruAndFirmwareFillTheRow)
{
    sdk.answers["/BMC/FRU"] = {};
    sdk.answer(std::string(fru) + "CHASSISAREA/TYPE", "Rack Mount Chassis");
    sdk.answer(std::string(fru) + "CHASSISAREA/PART_NUMBER", "HN-CH-200");
    sdk.answer(std::string(fru) + "CHASSISAREA/SERIAL_NUMBER", "HN-C-7741");
    sdk.answer(std::string(fru) + "PRODUCTAREA/ASSET_TAG", "RACK-07");
    answerSetting("PowerOnPassword", "Disabled");
    answerSetting("KeyboardPassword", "Enabled");
    answerSetting("AdministratorPassword", "Not Implemented");
    answerSetting("FrontPanelReset", "Unknown");
    answerChassis("ChassisLock", "Present");
    ASSERT_EQ(group.init(), 0);
    EXPECT_EQ(sdk.asked.front(), "/BMC/FRU") << "the inventory is loaded before it is asked";
    EXPECT_EQ(info(CHASSIS_CONTAINERTYPE), 23);
    EXPECT_EQ(text(CHASSIS_PARTNUMBER), "HN-CH-200");
    EXPECT_EQ(text(CHASSIS_SERIALNUMBER), "HN-C-7741");
    EXPECT_EQ(text(CHASSIS_ASSETTAG), "RACK-07");
    EXPECT_EQ(text(CHASSIS_NAME), "");
    EXPECT_EQ(info(CHASSIS_POPWDSTATUS), 3);
    EXPECT_EQ(info(CHASSIS_KBDPWDSTATUS), 4);
    EXPECT_EQ(info(CHASSIS_ADMINPWDSTATUS), 5);
    EXPECT_EQ(info(CHASSIS_FPRESETSTATUS), 2);
    EXPECT_EQ(data(CHASSIS_LOCKSTATE), 1);
    EXPECT_EQ(data(CHASSIS_POWERSTATE), 1);
    EXPECT_EQ(group.getGroupStatus(), 0) << "the enclosure does not take part in the system's health";
}

TEST_F(Chassis, BothNamesOfTheMainChassisAreTheSameAndOthersUnknown)
{
    for (const auto& [word, type] : {std::pair{"Main Server Chassis", 17},
                                     {"Main System Chassis", 17},
                                     {"main server chassis", 2},
                                     {"Blade", 2}}) {
        cache_map.clear();
        sdk.answer(std::string(fru) + "CHASSISAREA/TYPE", word);
        group.init();
        EXPECT_EQ(info(CHASSIS_CONTAINERTYPE), type) << word;
    }
}

TEST_F(Chassis, StatesAreReadLive)
{
    group.init();
    for (const auto& [word, state] :
         {std::pair{"Unknown", 1}, {"Safe", 2}, {"Warning", 3}, {"Critical", 4}, {"Non-recoverable", 4}, {"Odd", 1}}) {
        answerChassis("BootupState", word);
        EXPECT_EQ(data(CHASSIS_BOOTSTATE), state) << word;
        answerChassis("BootupState", "Safe");
        answerChassis("ThermalState", word);
        EXPECT_EQ(data(CHASSIS_THERMALSTATE), state) << word;
    }
    for (const auto& [word, state] : {std::pair{"None", 1}, {"Unknown", 2}, {"Safe", 3}, {"Odd", 0}}) {
        answerChassis("SecurityStatus", word);
        EXPECT_EQ(data(CHASSIS_SECURITYSTATE), state) << word;
    }
}

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
