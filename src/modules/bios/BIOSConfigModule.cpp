#include "modules/bios/BIOSConfigModule.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/XTokenizer.hpp"

namespace Module::BIOSConfig {

namespace {

constexpr const char* biosVersionPath = "/SMBIOS/Type0/BIOSVersion";

} // namespace

BIOSConfigModule::BIOSConfigModule()
{
    CreateSMBIOSConfigList();
}

void BIOSConfigModule::CreateSMBIOSConfigList()
{
    aliases["/BIOS/ID"] = biosVersionPath;
    aliases["/BIOS/VERSION"] = biosVersionPath;
}

void BIOSConfigModule::ProcessXQuery(const std::string& query, ResultMap& results)
{
    const std::vector<std::string> tokens = Common::XEngine().ParseXQuery(query).TokenList();
    if (tokens.empty() || tokens.front() != "BIOS")
        return smbios().ResolveQuery(query, results);
    if (const auto alias = aliases.find(query); alias != aliases.end())
        return answerAlias(query, alias->second, tokens[1] == "VERSION", results);
    settings().ProcessXQuery(query, results);
}

void BIOSConfigModule::answerAlias(const std::string& query, const std::string& alias, bool isVersion,
                                   ResultMap& results)
{
    smbios().ResolveQuery(alias, results);
    const _XNode node = results[alias];
    std::string value = node.mXNodeList.empty() ? std::string() : node.mXNodeList.front();
    if (isVersion)
        value = value.substr(0, value.rfind('.'));
    results.clear();
    results[query].mXNodeList = {value};
}

SMBIOSConfigMgr& BIOSConfigModule::smbios()
{
    if (!smbiosConfig)
        smbiosConfig = std::make_unique<SMBIOSConfigMgr>();
    return *smbiosConfig;
}

BIOSSettingsMgr& BIOSConfigModule::settings()
{
    if (!biosSettings)
        biosSettings = std::make_unique<BIOSSettingsMgr>();
    return *biosSettings;
}

void BIOSConfigModule::ProcessXQuery(const std::map<std::string, std::string>& values, bool)
{
    throwError(ERROR_INVALID_QUERY, values.empty() ? std::string() : values.begin()->first, COMMAND_SET);
}

void BIOSConfigModule::ProcessXQuery(const std::string& query, const std::map<std::string, std::string>&)
{
    throwError(ERROR_INVALID_QUERY, query, COMMAND_SET);
}

} // namespace Module::BIOSConfig
