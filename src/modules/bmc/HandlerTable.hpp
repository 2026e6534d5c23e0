#pragma once

#include "modules/bmc/engine/Handler.hpp"

namespace Module::BMCConfig {

/// Which subject answers which query, in the order in which the rules are tried.
const HandlerRules& handlerRules();

} // namespace Module::BMCConfig
