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

} // namespace

std::shared_ptr<const Stores> catalogue(unsigned long mask, bool lanWanted)
{
    static std::mutex guard;
    static std::map<unsigned long, std::shared_ptr<const Stores>> built;

    const unsigned long wanted = mask ? mask : lanWanted ? ~0UL : ~0UL & ~static_cast<unsigned long>(LAN_CONFIG);
    const std::lock_guard hold(guard);
    std::shared_ptr<const Stores>& stores = built[wanted];
    if (!stores)
        stores = build(wanted);
    return stores;
}

} // namespace Module::BMCConfig
