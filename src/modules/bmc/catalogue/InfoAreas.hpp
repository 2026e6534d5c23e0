#pragma once

#include "modules/bmc/catalogue/Steps.hpp"
#include "modules/bmc/engine/Stores.hpp"

/// Parts of the information area, by subject; InfoConfig adds them all.
namespace Module::BMCConfig {

/// What product, board and type the controller says it is.
void addProducts(Stores& stores);
/// The controllers beside the BMC, and what the manufacturer's own commands tell.
void addOemInfo(Stores& stores);

namespace steps {

/// The two fields of $BUFFER as "major.minor": the major without the bit that says "busy with an update", the minor of
/// two digits. Throws `error` if the reply is too short to hold them.
Steps returnVersion(const std::string& majorFilter, const std::string& minorFilter, const std::string& error);

} // namespace steps
} // namespace Module::BMCConfig
