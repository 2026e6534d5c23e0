#include "modules/bios/SMBIOSConfigMgr.hpp"

#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "common/XTokenizer.hpp"
#include "platform/PlatformImpl.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"

#include <algorithm>

namespace Module::BIOSConfig {

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;

constexpr char delimiter = '/';
constexpr const char* childrenToken = "@children";

/// Platforms whose memory type "Other" means just that.
constexpr const char* olderPlatforms[] = {"ALDER_PLATFORM", "ALDER_PLATFORM2", "ALDER_PLATFORM3", "ELM_PLATFORM",
                                          "BIRCH_PLATFORM", "CEDAR_PLATFORM",  "DOGWOOD_PLATFORM"};

void search(const std::string& query, ResultMap& results)
{
    const auto reader = SMBIOSProtocolImpl::CreateInstance();
    const Common::XTokenizer path(query, delimiter);
    if (path.Last() != childrenToken)
        return reader->SMBiosSearch(query, results);
    std::vector<std::string> tokens = path.TokenList();
    tokens.pop_back();
    reader->SMBiosChildren(Common::XTokenizer(tokens, delimiter).GetXPath(), results);
}

std::string currentPlatform(const std::string& query)
{
    Platform::PlatformImpl* const platform = Platform::PlatformImpl::CreateInstance();
    if (!platform)
        throwError(ERROR_PLATFORM_LAYER_INITIALIZATION, query, COMMAND_GET);
    return platform->platformName();
}

void correctMemoryTypes(ResultMap& results)
{
    for (auto& [path, node] : results)
        if (path.find("MemoryType") != std::string::npos && !node.mXNodeList.empty() &&
            node.mXNodeList.front() == "Other")
            node.mXNodeList.back() = "DDR3";
}

} // namespace

void SMBIOSConfigMgr::ResolveQuery(const std::string& query, ResultMap& results)
{
    search(query, results);
    if (common::policy().keepsFirmwareWords)
        return;
    if (std::ranges::find(olderPlatforms, currentPlatform(query)) == std::end(olderPlatforms))
        correctMemoryTypes(results);
}

} // namespace Module::BIOSConfig
