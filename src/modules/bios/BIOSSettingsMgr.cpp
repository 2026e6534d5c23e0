#include "modules/bios/BIOSSettingsMgr.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "platform/PlatformImpl.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"

namespace Module::BIOSConfig {

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;

constexpr const char* platformIdQuery = "/BIOS/PlatformID";

constexpr const char* unknownModel = "Unknown";

std::string baseBoardProduct()
{
    const std::string path = "/SMBIOS/Type2/Product";
    ResultMap found;
    SMBIOSProtocolImpl::CreateInstance()->SMBiosSearch(path, found);
    const auto node = found.find(path);
    return node == found.end() || node->second.mXNodeList.empty() ? std::string() : node->second.mXNodeList.front();
}

/// A machine that does not name its board still has one: a failure here would reach whoever polls the fans, and block
/// the refresh of everything else with it.
std::string boardModel()
{
    try {
        std::string model = Platform::PlatformImpl::CreateInstance()->platformId();
        if (model.empty())
            model = baseBoardProduct();
        return model.empty() ? unknownModel : model;
    } catch (const ResultStatus&) {
        return unknownModel;
    }
}

} // namespace

void BIOSSettingsMgr::ProcessXQuery(const std::string& query, ResultMap& results)
{
    if (query != platformIdQuery)
        throwError(ERROR_INVALID_QUERY, query, COMMAND_GET);
    results[query].mXNodeList = {boardModel()};
}

} // namespace Module::BIOSConfig
