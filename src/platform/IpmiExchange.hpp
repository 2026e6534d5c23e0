#pragma once

#include <string>
#include <vector>

namespace Platform {

/// How one raw exchange is done.
struct ExchangeOptions {
    int retries = 3;
    bool initialise = true; ///< make the message layer ready first
};

/// One raw exchange under "IPMI_EXEC_LOCK". `tokens`: hexadecimal text, in order target address, network function, LUN,
/// command, data. `reply`: the completion code in decimal, then the data bytes as "%x"; "CC" alone, without an
/// exchange, for a target address of at most 1Fh. Throws 1274 when there is no interface, 1026 when the exchange failed
/// (a completion code is no failure), 1184 for tokens that make no request. While the controller is silent and spared
/// (Policy::sparesSilentController) it throws 1026 without an exchange.
void exchangeIpmi(const std::vector<std::string>& tokens, const ExchangeOptions& options,
                  std::vector<std::string>& reply);

/// How many exchanges this process has begun.
unsigned long long exchangeCount();

/// SelectIPMIInterface of the message layer under the exchange lock: true when the interface is selected.
bool selectInterface(int type);
/// Reinitialize_OpenIPMI of the message layer under the exchange lock: 0 or -1.
int reloadDriver();

} // namespace Platform
