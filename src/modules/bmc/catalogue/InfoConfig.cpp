#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/catalogue/Steps.hpp"

namespace Module::BMCConfig {

InfoConfig::InfoConfig(Stores&) {}

} // namespace Module::BMCConfig
