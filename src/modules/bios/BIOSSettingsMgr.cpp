#include "modules/bios/BIOSSettingsMgr.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "platform/PlatformImpl.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"

namespace Module::BIOSConfig {

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;

constexpr const char* platformIdQuery = "/BIOS/PlatformID";

std::string baseBoardProduct()
{
    const std::string path = "/SMBIOS/Type2/Product";
    ResultMap found;
    SMBIOSProtocolImpl::CreateInstance()->SMBiosSearch(path, found);
    return found.empty() ? std::string() : found[path].mXNodeList.front();
}

} // namespace

void BIOSSettingsMgr::ProcessXQuery(const std::string& query, ResultMap& results)
{
    if (query != platformIdQuery)
        throwError(ERROR_INVALID_QUERY, query, COMMAND_GET);
    std::string model = Platform::PlatformImpl::CreateInstance()->platformId();
    if (model.empty())
        model = baseBoardProduct();
    if (model.empty())
        throwError(ERROR_INVALID_QUERY, query, COMMAND_GET);
    results[query].mXNodeList = {model};
}

} // namespace Module::BIOSConfig
