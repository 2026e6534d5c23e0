#pragma once

#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"

#include <mutex>
#include <optional>
#include <string>

namespace Platform {

/// Which server platform family this is. Found once and kept; safe to use from any thread.
class PlatformImpl {
public:
    /// The one instance, made on first use.
    static PlatformImpl* CreateInstance();

    /// Finds the platform's name, by the BMC's product id (IPMI 2.0, 20.1). A name once found stands. After a failure
    /// the BMC is asked again only when some seconds have passed; until then the same ResultStatus is thrown, or the
    /// name stays empty when the BMC answered with a completion code.
    void InitPlatform();
    /// InitPlatform, and the platform's name: "FIR_PLATFORM", "OTHER_PLATFORM"; empty when the BMC did not tell.
    std::string platformName();
    /// InitPlatform, and the board's id text as the firmware gives it, without trailing blanks; empty without one.
    std::string platformId();
    /// Forgets what was found, as a start of the process does.
    void Reset();

    /// The platform of a product id text, "3e0" for the bytes E0h 03h as "%x" writes each.
    static std::string DetectPlatformfromID(const std::string& productId);

private:
    PlatformImpl() = default;
    void findPlatform();
    static std::string platformOfBmc();

    std::mutex guard;
    std::string type;
    std::string id;
    std::optional<Clock::TimePoint> asked; ///< when the last search that found nothing ended
    std::optional<ResultStatus> failure;   ///< how it ended
};

} // namespace Platform
