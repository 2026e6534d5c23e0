#include "modules/bios/BIOSConfigModule.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"

namespace Module::BIOSConfig {

void BIOSConfigModule::ProcessXQuery(const std::string& query, ResultMap&)
{
    throwError(ERROR_INVALID_QUERY, query, COMMAND_GET);
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
