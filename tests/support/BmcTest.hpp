#pragma once

#include "platform/PlatformImpl.hpp"
#include "tests/support/Failure.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/ModelBmc.hpp"
#include "tests/support/TempRoot.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>

#include <gtest/gtest.h>

/// A BMC that tells its device id and refuses all else until told otherwise, nothing known of it yet, and a clock that
/// only sleeping moves.
class BmcTest : public testing::Test {
protected:
    BmcTest()
    {
        forget();
        tellProduct(0, 0);
    }
    ~BmcTest() override { forget(); }

    static void forget()
    {
        transport::resetTransportForTests();
        Platform::PlatformImpl::CreateInstance()->Reset();
    }

    void tellProduct(std::uint8_t low, std::uint8_t high)
    {
        bmc.on(0x06, 0x01, IpmiAnswer{0, 0x20, 0x81, 1, 0x17, 2, 0xBF, 0x57, 1, 0, low, high, 0, 0, 0x12, 0x34});
    }

    /// How often the command was asked.
    std::size_t count(std::uint8_t netFn, std::uint8_t cmd) const
    {
        return static_cast<std::size_t>(std::ranges::count_if(
            bmc.requests, [=](const IpmiRequest& request) { return request.netFn == netFn && request.cmd == cmd; }));
    }

    TempRoot emptyRoot; ///< without /run: nobody else's lock is waited for
    FakeClock clock;
    ScopedSeam<Clock> useClock{clock};
    ModelBmc bmc;
    ScopedSeam<transport::DeviceFile> useBmc{bmc};
};
