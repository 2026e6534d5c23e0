#include "modules/bmc/catalogue/Catalogue.hpp"

#include "modules/bmc/catalogue/ConfigClasses.hpp"

#include <map>
#include <mutex>

namespace Module::BMCConfig {

namespace {

struct ConfigClass {
    unsigned long bit;
    void (*fill)(Stores&);
};

template<class Config>
void fill(Stores& stores)
{
    Config{stores};
}

constexpr ConfigClass configClasses[] = {
    {BMC_CONFIG, fill<BmcConfig>},           {LAN_CONFIG, fill<LanConfig>},
    {SMBIOS_CONFIG, fill<SmbiosConfig>},     {IPMI_CONFIG, fill<IpmiConfig>},
    {CHANNEL_CONFIG, fill<ChannelConfig>},   {INFO_CONFIG, fill<InfoConfig>},
    {SDR_CONFIG, fill<SdrConfig>},           {CHASSIS_CONFIG, fill<ChassisConfig>},
    {FRU_CONFIG, fill<FruConfig>},           {SEL_CONFIG, fill<SelConfig>},
    {USER_CONFIG, fill<UserConfig>},         {SOL_CONFIG, fill<SolConfig>},
    {SENSOR_CONFIG, fill<SensorConfig>},     {PEF_CONFIG, fill<PefConfig>},
    {BOOT_CONFIG, fill<BootConfig>},         {CONTROLLER_CONFIG, fill<ControllerConfig>},
    {SERIAL_CONFIG, fill<SerialConfig>},     {PG_CONFIG, fill<PgConfig>},
    {FIRMWARE_CONFIG, fill<FirmwareConfig>}, {OEM_CONFIG, fill<OemConfig>},
    {SCF_CONFIG, fill<ScfConfig>},
};

std::shared_ptr<const Stores> build(unsigned long mask)
{
    auto stores = std::make_shared<Stores>();
    for (const ConfigClass& config : configClasses)
        if (mask & config.bit)
            config.fill(*stores);
    return stores;
}

/// The rest and the LAN's part beside it: the scripts of the rest are not built again, both hold the same ones.
std::shared_ptr<const Stores> withLan(const Stores& rest)
{
    auto stores = std::make_shared<Stores>(rest);
    LanConfig{*stores};
    return stores;
}

using Built = std::map<unsigned long, std::shared_ptr<const Stores>>;

std::shared_ptr<const Stores> sharedOf(Built& built, unsigned long mask)
{
    std::shared_ptr<const Stores>& stores = built[mask];
    if (!stores)
        stores = build(mask);
    return stores;
}

} // namespace

std::shared_ptr<const Stores> catalogue(unsigned long mask, bool lanWanted)
{
    static std::mutex guard;
    static Built built;

    constexpr unsigned long all = ~0UL, butLan = all & ~static_cast<unsigned long>(LAN_CONFIG);
    const unsigned long wanted = mask ? mask : lanWanted ? all : butLan;
    const std::lock_guard hold(guard);
    if (wanted != all)
        return sharedOf(built, wanted);
    std::shared_ptr<const Stores>& stores = built[all];
    if (!stores)
        stores = withLan(*sharedOf(built, butLan));
    return stores;
}

} // namespace Module::BMCConfig
