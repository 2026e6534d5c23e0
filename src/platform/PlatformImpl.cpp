#include "platform/PlatformImpl.hpp"

#include "common/Logger.hpp"
#include "platform/IpmiExchange.hpp"

#include <algorithm>
#include <chrono>
#include <vector>

namespace Platform {

namespace {

constexpr std::chrono::seconds pauseAfterFailure{10};

/// Items of the reply to Get Device ID (IPMI 2.0, table 20-2), the completion code being item 0.
constexpr std::size_t productIdLow = 10;
constexpr std::size_t productIdHigh = 11;
constexpr std::size_t leastItems = 13;

struct ProductGroup {
    const char* platform;
    std::vector<std::string> productIds;
};

/// In this order; a later group overrides an earlier match.
const std::vector<ProductGroup>& productGroups()
{
    static const std::vector<ProductGroup> groups = {
        {"FIR_PLATFORM", {"3e0", "400", "200"}},
        {"ALDER_PLATFORM", {"280", "290", "2c0", "2b0", "3b0"}},
        {"BIRCH_PLATFORM", {"71"}},
        {"CEDAR_PLATFORM", {"3d0"}},
        {"DOGWOOD_PLATFORM", {"3a0"}},
        {"LILAC_PLATFORM", {"480"}},
        {"LINDEN_PLATFORM", {"650"}},
        {"ROWAN_PLATFORM", {"630"}},
        {"JUNIPER_PLATFORM",
         {"420", "430", "440", "450", "460", "470", "490", "4a0", "4c0", "4d0", "4e0", "4f0", "500", "510",
          "540", "550", "560", "570", "590", "5c0", "5d0", "520", "530", "580", "5a0", "5b0", "5e0"}},
        {"MAPLE_PLATFORM",
         {"6f0", "700", "710", "720", "730", "750", "760", "660", "670", "680", "690", "6a0", "6e0", "770"}},
        {"NUTMEG_PLATFORM", {"780"}},
    };
    return groups;
}

} // namespace

PlatformImpl* PlatformImpl::CreateInstance()
{
    static PlatformImpl inst;
    return &inst;
}

void PlatformImpl::InitPlatform()
{
    const std::lock_guard hold(guard);
    findPlatform();
}

std::string PlatformImpl::platformName()
{
    const std::lock_guard hold(guard);
    findPlatform();
    return type;
}

std::string PlatformImpl::platformId()
{
    const std::lock_guard hold(guard);
    findPlatform();
    return id;
}

void PlatformImpl::Reset()
{
    const std::lock_guard hold(guard);
    type.clear();
    id.clear();
    asked.reset();
    failure.reset();
}

void PlatformImpl::findPlatform()
{
    if (!type.empty())
        return;
    // a clock that was set back must not stretch the pause
    const Clock::TimePoint now = current<Clock>().now();
    const bool pausing = asked && now >= *asked && now < *asked + pauseAfterFailure;
    if (!pausing) {
        failure.reset();
        try {
            type = platformOfBmc();
        } catch (const ResultStatus& status) {
            failure = status;
        }
        // a BMC that does not answer takes its time about it: the pause begins afterwards
        asked = current<Clock>().now();
        HW_LOG(LOGGER::Category::First, "Platform ID is %s", id.c_str());
        HW_LOG(LOGGER::Category::First, "Platform Type is %s", type.c_str());
    }
    if (failure)
        throw ResultStatus(*failure);
}

std::string PlatformImpl::platformOfBmc()
{
    static const std::vector<std::string> getDeviceId = {"20", "06", "00", "01"};
    std::vector<std::string> reply;
    exchangeIpmi(getDeviceId, {}, reply);
    if (reply[0] != "0" || reply.size() < leastItems)
        return {};
    return DetectPlatformfromID(reply[productIdLow] + reply[productIdHigh]);
}

std::string PlatformImpl::DetectPlatformfromID(const std::string& productId)
{
    std::string platform = "OTHER_PLATFORM";
    for (const ProductGroup& group : productGroups())
        if (std::find(group.productIds.begin(), group.productIds.end(), productId) != group.productIds.end())
            platform = group.platform;
    return platform;
}

} // namespace Platform
