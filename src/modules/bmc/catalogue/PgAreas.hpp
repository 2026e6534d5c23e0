#pragma once

#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/engine/Stores.hpp"

/// Power governing, in two parts: what is read, and what is written; PgConfig adds both.
namespace Module::BMCConfig {

/// Parts of a policy as reading and writing share them, with their places behind the answer's enterprise number.
inline constexpr Field policyEnabled{"POLICY_ENABLED", 0, 1, Codec::word, 0x10},
    policyType{"POLICY_TYPE", 1, 1, Codec::word, 0x0F, "PG/POLICY_TYPE"},
    policyAction{"POLICY_EXCEPTION_ACTION", 2, 1, Codec::word, 0x03, "PG/EXCEPTION_ACTION"};

/// The engine's address.
inline constexpr char governor[] = "$/BMC/CHIPSET_ENGINE_ADDRESS";

inline constexpr char domainAndPolicy[] = "DOMAIN 0 15, POLICY 0 255";

void addPgWrites(Stores& stores);

} // namespace Module::BMCConfig
