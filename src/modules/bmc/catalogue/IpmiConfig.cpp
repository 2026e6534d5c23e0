#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

// The numbers of IPMI 2.0 that several areas' packets are made of, and the raw request.

namespace Module::BMCConfig {

using namespace steps;

namespace ipmiConfig {

/// The whole request is the caller's: "target netFn LUN command data...", hexadecimal, separated by blanks or commas.
constexpr TextRow packets[] = {
    {"GET://BMC/IPMI/RAW_COMMAND", "$RAW_COMMAND"},
};

} // namespace ipmiConfig

IpmiConfig::IpmiConfig(Stores& stores)
{
    using namespace ipmiConfig;
    addCommands(stores);
    addPackets(stores, packets);

    // The answer goes back as it came, completion code first, in decimal: what a code means is the caller's affair.
    addTemplate(stores, "GET://BMC/IPMI/RAW_COMMAND",
                script({
                    Split("$RAW_COMMAND", " ,", "$RAW_COMMAND"),
                    IPMI("GET://BMC/IPMI/RAW_COMMAND", "$BUFFER"),
                    Copy("$BUFFER", "$RESULT"),
                    Return("$RESULT"),
                }));
}

} // namespace Module::BMCConfig
