#include "modules/bios/BIOSConfigModule.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/BmcTest.hpp"
#include "tests/support/SmbiosImage.hpp"
#include "tests/support/TempRoot.hpp"

#include <gtest/gtest.h>

namespace {

using Module::BIOSConfig::BIOSConfigModule;
using Protocol::SMBIOS::SMBIOSProtocolImpl;

/// A machine with SMBIOS tables and a BMC of product id 003Eh, a newer platform.
class BIOSConfigModuleTest : public BmcTest {
protected:
    BIOSConfigModuleTest()
    {
        SMBIOSProtocolImpl::DeleteInstance();
        tellProduct(0x3E, 0x00);
        SmbiosImage image = serverImage(2, 7);
        image.count -= 1;
        image.table.resize(image.table.size() - 6);
        image.add(17, bodyOf("0100 0000 0000 0000 0040 09 00 'X' 'Y' 01 0000"));
        image.place(root);
    }
    ~BIOSConfigModuleTest() override { SMBIOSProtocolImpl::DeleteInstance(); }

    /// The one value of the one node, or the error's code as "! 1001".
    std::string ask(const std::string& query)
    {
        results.clear();
        if (const int code = failureOf([&] { BIOSConfigModule().ProcessXQuery(query, results); }).code)
            return "! " + std::to_string(code);
        return results.size() == 1 && results.contains(query) ? results[query].mXNodeList.at(0) : "(other)";
    }

    TempRoot root;
    ResultMap results;
};

TEST_F(BIOSConfigModuleTest, SettingsAreRefusedButTheBoardsModelIsTold)
{
    EXPECT_EQ(ask("/BIOS/PlatformID"), "Larch-9");
    for (const char* query : {"/BIOS", "/BIOS/X", "/BIOS/ID/@children", "/BIOS//ID", "/SMBIOS//Type0"})
        EXPECT_EQ(ask(query), "! 1001") << query;
    EXPECT_THROW(BIOSConfigModule().ProcessXQuery(std::map<std::string, std::string>{{"/BIOS/ID", "1"}}, true),
                 ResultStatus);
}

TEST_F(BIOSConfigModuleTest, MemoryTypeOtherIsDdr3OnNewerPlatformsOnly)
{
    EXPECT_EQ(ask("/SMBIOS/Type17[6]/MemoryType"), "DDR3");
    EXPECT_EQ(ask("/SMBIOS/Type17[1]/FormFactor"), "DIMM");
    forget();
    tellProduct(0x3D, 0x00);
    EXPECT_EQ(ask("/SMBIOS/Type17[6]/MemoryType"), "Other");
}

TEST_F(BIOSConfigModuleTest, ChildrenComeAsOneNodeWithoutTheirValues)
{
    const std::string switches = "/SMBIOS/Type24/HardwareSecuritySettings";
    const std::pair<std::string, std::vector<std::string>> rows[] = {
        {"/SMBIOS/Type11", {"/SMBIOS/Type11/Count", "/SMBIOS/Type11/String[1]", "/SMBIOS/Type11/String[2]"}},
        {"/SMBIOS/Type24", {switches}},
        {switches + "/FrontPanelReset", {}}};
    for (const auto& [path, children] : rows) {
        results.clear();
        BIOSConfigModule().ProcessXQuery(path + "/@children", results);
        ASSERT_EQ(results.size(), 1U);
        EXPECT_EQ(results.at(path).mType, NODE_NONLEAF);
        EXPECT_EQ(results.at(path).mXNodeList, children);
    }
}

TEST_F(BIOSConfigModuleTest, TablesOutOfReachAreAnErrorAndReadOnceTheyAreThere)
{
    std::filesystem::remove(root.resolve("/dev/mem"));
    EXPECT_EQ(ask("/SMBIOS/Type0/Vendor"), "! 1007");
    EXPECT_EQ(ask("/BIOS/ID"), "! 1007");
    EXPECT_EQ(ask("/BIOS/PlatformID"), "Unknown") << "a failure here would block the refresh of every reading";
    serverImage(2, 7).place(root);
    clock.advance(std::chrono::seconds(10));
    EXPECT_EQ(ask("/SMBIOS/Type0/Vendor"), "Firmware Maker");
}

} // namespace
