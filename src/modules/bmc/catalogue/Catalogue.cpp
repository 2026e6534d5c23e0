#include "modules/bmc/catalogue/Catalogue.hpp"

#include "modules/bmc/catalogue/ConfigClasses.hpp"

#include <map>
#include <mutex>
#include <utility>

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

/// The LAN's part as a layer above the rest.
std::shared_ptr<const Stores> withLan(std::shared_ptr<const Stores> rest)
{
    auto stores = std::make_shared<Stores>();
    LanConfig{*stores};
    stores->below = std::move(rest);
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
    static std::shared_ptr<const Stores> layered;

    const std::lock_guard hold(guard);
    if (mask)
        return sharedOf(built, mask);
    const std::shared_ptr<const Stores>& rest =
        sharedOf(built, wholeCatalogue & ~static_cast<unsigned long>(LAN_CONFIG));
    if (lanWanted && !layered)
        layered = withLan(rest);
    return lanWanted ? layered : rest;
}

} // namespace Module::BMCConfig
