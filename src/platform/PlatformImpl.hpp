#pragma once

#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Platform {

/// Which server platform family this is. Found once and kept; safe to use from any thread.
class PlatformImpl {
public:
    /// The one instance, made on first use.
    static PlatformImpl* CreateInstance();

    /// Finds the platform's name: by the board's id, which the firmware tells, else by the BMC's product id (IPMI 2.0,
    /// 20.1). A name once found stands. After a failure machine and BMC are asked again only when some seconds have
    /// passed; until then the same ResultStatus is thrown, or the name stays empty when the BMC answered with a
    /// completion code.
    void InitPlatform();
    /// InitPlatform, and the platform's name: "FIR_PLATFORM", "OTHER_PLATFORM"; empty when the BMC did not tell.
    std::string platformName();
    /// InitPlatform, and the board's id text as the firmware gives it, without trailing blanks; empty without one. A
    /// board that tells its id has one also when its BMC fails.
    std::string platformId();
    /// Forgets what was found, as a start of the process does.
    void Reset();

    /// Reads the board's id from the firmware; empty without one.
    static void GetPlatformIDfromSMI(std::string& boardId);
    /// The platform of a board, empty for one that is not known.
    std::string getPlatformType(const std::string& boardId) const;
    /// The platform of a product id text, "3e0" for the bytes E0h 03h as "%x" writes each.
    static std::string DetectPlatformfromID(const std::string& productId);

    /// Numbers of a board's sensors, each as "%02x", four a board for processors and 32 for memory slots; "ff" stands
    /// for none.
    std::vector<std::string> GetProcThermSensor(const char* boardId) const;
    std::vector<std::string> GetProcStatusSensor(const char* boardId) const;
    std::vector<std::string> GetMemorySlotSensor(const char* boardId) const;

    /// One raw exchange. `request`: hexadecimal bytes with blanks between: target address, network function, LUN,
    /// command, data. `reply`: the completion code in decimal, then the data as "%x". Throws ResultStatus.
    static void execIPMICommand(const std::string& request, std::vector<std::string>& reply);

private:
    PlatformImpl() { InitializePlatformList(); }
    void InitializePlatformList();
    void findPlatform();
    std::string searchPlatform();
    static std::string platformOfBmc();

    std::map<std::string, std::string> boardTable; ///< does not change after it was filled
    std::mutex guard;
    std::string type;
    std::string id;
    std::optional<Clock::TimePoint> asked; ///< when the last search that found nothing ended
    std::optional<ResultStatus> failure;   ///< how it ended
};

} // namespace Platform
