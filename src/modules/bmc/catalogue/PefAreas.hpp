#pragma once

#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/engine/Stores.hpp"

/// Parts of the event filtering's area, by subject; PefConfig adds them all.
namespace Module::BMCConfig {

/// Filters and alert policies, the two tables that are looked through when an event comes.
void addPefTables(Stores& stores);
/// The texts that alerts carry, and which text for which filter.
void addPefStrings(Stores& stores);

} // namespace Module::BMCConfig
