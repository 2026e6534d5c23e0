#pragma once

#include "modules/bmc/catalogue/Guide.hpp"
#include "tools/hwquery/Options.hpp"

#include <string>

namespace hwquery {

/// Whether what the advice warns of may be done: because nothing has to be said, because the caller gave --yes or
/// --force for it, or because he says so at the terminal. False is told on standard error, `name` in front.
bool mayGoOn(const Module::BMCConfig::Advice& advice, const std::string& name, const Options& options);
/// The same by the catalogue's advice for a query with its scheme, "SET://BMC/LAN[1]/IP".
bool mayGoOn(const std::string& query, const std::string& name, const Options& options);

} // namespace hwquery
