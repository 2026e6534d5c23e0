#pragma once

#include "common/XNode.hpp"
#include "modules/bios/BIOSSettingsMgr.hpp"
#include "modules/bios/SMBIOSConfigMgr.hpp"

#include <map>
#include <memory>
#include <string>

namespace Module::BIOSConfig {

/// What the director sees of the "BIOS" and "SMBIOS" trees. Built for one query and destroyed after it. Everything
/// throws ResultStatus.
class BIOSConfigModule {
public:
    BIOSConfigModule();

    /// GET. A last token "@children" asks for the paths below a path of "SMBIOS". "/BIOS/ID" and "/BIOS/VERSION" are
    /// answered from SMBIOS under their own path, the version without what follows its last point.
    void ProcessXQuery(const std::string& query, ResultMap& results);
    /// SET of a whole map of query to value: error 1001, nothing can be set.
    void ProcessXQuery(const std::map<std::string, std::string>& values, bool flag);
    /// SET with named parameters: error 1001.
    void ProcessXQuery(const std::string& query, const std::map<std::string, std::string>& parameters);

private:
    void CreateSMBIOSConfigList();
    void answerAlias(const std::string& query, const std::string& alias, bool isVersion, ResultMap& results);
    SMBIOSConfigMgr& smbios();
    BIOSSettingsMgr& settings();

    std::unique_ptr<SMBIOSConfigMgr> smbiosConfig;
    std::unique_ptr<BIOSSettingsMgr> biosSettings;
    std::map<std::string, std::string> aliases;
};

} // namespace Module::BIOSConfig
