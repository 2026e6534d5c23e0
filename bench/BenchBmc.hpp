#pragma once

#include "tests/support/ModelBmc.hpp"

#include <cstdint>
#include <vector>

/// A BMC that answers in process: Get Device ID, and a repository of `sensors` analog sensors of the four probe types
/// in turn, with readings and thresholds. Nothing of it sleeps or enters the kernel.
class BenchBmc : public ModelBmc {
public:
    explicit BenchBmc(unsigned sensors);

    /// Exchanges since the last call.
    std::size_t takeExchanges();

private:
    IpmiAnswer readRecord(const IpmiRequest& request) const;

    std::vector<std::vector<std::uint8_t>> records;
    ScopedSeam<transport::DeviceFile> use{*this};
};
