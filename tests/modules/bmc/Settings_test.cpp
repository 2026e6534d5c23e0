// What is written is what is read: settings against a BMC that keeps them.

#include "ipmi/Codes.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "tests/modules/bmc/EngineFixture.hpp"

#include <map>

namespace {

namespace cmd = ipmi::cmd;
namespace netfn = ipmi::netfn;

/// Keeps parameters of configuration commands and what it is told of one user, and gives them back.
class KeepingBmc : public EngineTest {
protected:
    KeepingBmc()
    {
        // LAN and serial over LAN: channel and selector in front; event filtering: the selector alone
        keep(netfn::transport, cmd::setLanConfiguration, cmd::getLanConfiguration, 2);
        keep(netfn::transport, cmd::setSolConfiguration, cmd::getSolConfiguration, 2);
        keep(netfn::sensorEvent, cmd::setPefConfiguration, cmd::getPefConfiguration, 1);
        bmc.on(netfn::app, cmd::setUserName, [this](const IpmiRequest& request) {
            name.assign(request.data.begin() + 1, request.data.end());
            return IpmiAnswer{0};
        });
        bmc.on(netfn::app, cmd::getUserName, [this](const IpmiRequest&) { return answerOf({0}, name); });
        bmc.on(netfn::app, cmd::setUserAccess, [this](const IpmiRequest& request) {
            constexpr std::uint8_t changes = 0x80, bits = 0x70;
            const std::uint8_t first = request.data.at(0);
            access = static_cast<std::uint8_t>((first & changes ? first & bits : access & bits) | request.data.at(2));
            return IpmiAnswer{0};
        });
        bmc.on(netfn::app, cmd::getUserAccess, [this](const IpmiRequest&) {
            return IpmiAnswer{0, 10, 0x43, 1, access};
        });
    }

    using Bytes = std::vector<std::uint8_t>;

    static IpmiAnswer answerOf(IpmiAnswer head, const Bytes& data)
    {
        head.insert(head.end(), data.begin(), data.end());
        return head;
    }

    void keep(std::uint8_t netFn, std::uint8_t set, std::uint8_t get, std::size_t keyBytes)
    {
        const auto keyOf = [=](const IpmiRequest& request) {
            Bytes key(request.data.begin(), request.data.begin() + static_cast<std::ptrdiff_t>(keyBytes));
            key.insert(key.begin(), get);
            return key;
        };
        bmc.on(netFn, set, [this, keyOf, keyBytes](const IpmiRequest& request) {
            kept[keyOf(request)].assign(request.data.begin() + static_cast<std::ptrdiff_t>(keyBytes),
                                        request.data.end());
            return IpmiAnswer{0};
        });
        bmc.on(netFn, get, [this, keyOf](const IpmiRequest& request) {
            const auto parameter = kept.find(keyOf(request));
            // a parameter that nobody has written is all zeros
            return answerOf({0, 0x11}, parameter == kept.end() ? Bytes(21) : parameter->second);
        });
    }

    static std::string writeAndRead(const std::string& path, const std::string& value)
    {
        Module::BMCConfig::BMCConfigModule().ProcessXQuery(path, value, false);
        ResultMap results;
        Module::BMCConfig::BMCConfigModule().Process(path, results);
        return results[path].mXNodeList.at(0);
    }

    std::map<Bytes, Bytes> kept;
    Bytes name = Bytes(16);
    std::uint8_t access = 0x14;
};

struct Setting {
    const char* path;
    const char* value;
};

/// Settings that share a byte or a record stand beside each other, both values of a bit where one could be luck.
constexpr Setting settings[] = {
    {"/BMC/LAN[3]/IP", "10.20.30.40"},
    {"/BMC/LAN[3]/SUBNETMASK", "255.254.0.0"},
    {"/BMC/LAN[3]/IPTYPE", "DHCP"},
    {"/BMC/LAN[3]/BACKUPGATEWAYMAC", "0A:1B:2C:3D:4E:5F"},
    {"/BMC/LAN[3]/COMMUNITYSTRING", "in 18 characters !"},
    {"/BMC/LAN[3]/ARPRESPONSE", "ENABLE"},
    {"/BMC/LAN[3]/GRATUITOUSARP", "ENABLE"},
    {"/BMC/LAN[3]/ARPRESPONSE", "DISABLE"},
    {"/BMC/LAN[3]/IPV6", "2001:0DB8:0000:0000:0000:00FF:FE00:0001"},
    {"/BMC/LAN[3]/IPV6PREFIXLENGTH", "64"},
    {"/BMC/LAN[3]/IPV6SOURCE", "STATIC"},
    {"/BMC/LAN[3]/AUTHENTICATIONTYPE/ADMIN/MD5", "ENABLE"},
    {"/BMC/LAN[3]/AUTHENTICATIONTYPE/USER/STRAIGHT", "ENABLE"},
    {"/BMC/LAN[3]/ALERT/DESTINATION[2]/GATEWAY_SELECTOR", "BACKUP"},
    {"/BMC/SOL/CHANNEL[3]/PRIVILEGE", "OPERATOR"},
    {"/BMC/SOL/CHANNEL[3]/PAYLOAD/ENCRYPTION", "ENABLE"},
    {"/BMC/SOL/CHANNEL[3]/RETRY/COUNT", "7"},
    {"/BMC/SOL/CHANNEL[3]/RETRY/INTERVAL", "50"},
    {"/BMC/SOL/CHANNEL[3]/BAUDRATESERIAL", "57600"},
    {"/BMC/PEF/STATUS", "ENABLE"},
    {"/BMC/PEF/ALERT_STARTUP_DELAY_STATUS", "ENABLE"},
    {"/BMC/PEF/GUID_STATUS", "ENABLE"},
    {"/BMC/PEF/GUID", "F0 E1 D2 C3 B4 A5 96 87 78 69 5A 4B 3C 2D 1E 0F"},
    {"/BMC/USER[2]/NAME", "operator1"},
    {"/BMC/USER[2]/CHANNEL[3]/CALLBACK", "ENABLE"},
    {"/BMC/USER[2]/CHANNEL[3]/PRIVILEGE", "ADMIN"},
    {"/BMC/USER[2]/CHANNEL[3]/IPMI_AUTHENTICATION", "DISABLE"},
};

} // namespace

TEST_F(KeepingBmc, GivesBackWhatWasWrittenAndLeavesTheRest)
{
    std::map<std::string, std::string> expected;
    for (const auto& [path, value] : settings) {
        EXPECT_EQ(writeAndRead(path, value), value) << path;
        expected[path] = value;
    }
    for (const auto& [path, value] : expected) {
        ResultMap results;
        Module::BMCConfig::BMCConfigModule().Process(path, results);
        EXPECT_EQ(results[path].mXNodeList.at(0), value) << path << " after all the others";
    }
}
