#include "modules/XDirectorImpl.hpp"

#include "common/CMySemLock.hpp"
#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Stopwatch.hpp"
#include "modules/bios/BIOSConfigModule.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "platform/PlatformImpl.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace SDK {

namespace {

using LOGGER::Category;
using Module::BIOSConfig::BIOSConfigModule;
using Module::BMCConfig::BMCConfigModule;

constexpr char rootKey[] = "/";
constexpr char childrenToken[] = "@children";
constexpr char secretWord[] = "PASSWORD";

constexpr char biosLock[] = "GLOBAL_BIOS_LOCK";
constexpr char systemLock[] = "GLOBAL_SYSTEM_LOCK";
constexpr char platformLock[] = "GLOBAL_PLATFORM_LOCK";
constexpr char setMapLock[] = "GLOBAL_SET_MAP_LOCK";

/// Boards whose firmware, and not their BMC, answers for what the alias table names.
constexpr const char* aliasBoards[] = {"Larch-6", "Larch-7", "Larch-8"};

/// The library of firmware inventories is closed; it would answer these.
bool asksControllerInventory(const std::string& query)
{
    return query.find("/BMC/CONTROLLER") != std::string::npos && query.find("/INFO") != std::string::npos;
}

[[noreturn]] void refuse(const std::string& query, _XCOMMAND command)
{
    throwError(ERROR_INVALID_QUERY, query, command);
}

void refuseControllerInventory(const std::string& query)
{
    if (asksControllerInventory(query))
        refuse(query, COMMAND_GET);
}

void askBios(const std::string& query, ResultMap& results)
{
    HW_NAMED_LOCK(named, biosLock);
    BIOSConfigModule().ProcessXQuery(query, results);
}

/// A tree whose module is closed: its road is taken up to the module.
[[noreturn]] void askClosedModule(const std::string& query, const char* lock)
{
    HW_NAMED_LOCK(named, lock);
    refuse(query, COMMAND_GET);
}

/// Runs one GET, with the failure line.
template<class Work>
void logGet(const std::string& query, Work work)
{
    HW_LOG(Category::First, "Executing GET: %s on localhost", query.c_str());
    const common::Stopwatch watch;
    try {
        work();
    } catch (const ResultStatus& status) {
        HW_LOG(Category::First, "Failure GET: %s on localhost, %d msec", query.c_str(), watch.milliseconds());
        throw ResultStatus(status);
    }
}

/// The log lines around one SET. What the query is set to never shows when the query is about a password.
class SetLines {
public:
    SetLines(const char* kind_, const std::string& query_, std::string setting_)
        : kind(kind_), query(query_), setting(std::move(setting_)), secret(query.find(secretWord) != std::string::npos)
    {
    }

    template<class Work>
    void around(Work work) const
    {
        if (!secret)
            HW_LOG(Category::First, "Executing %s: %s%s on localhost", kind, query.c_str(), setting.c_str());
        const common::Stopwatch watch;
        try {
            work();
        } catch (const ResultStatus& status) {
            HW_LOG(Category::First, "Failure %s: %s%s on localhost, %d msec", kind, query.c_str(),
                   secret ? blank() : setting.c_str(), watch.milliseconds());
            throw ResultStatus(status);
        }
        // query and value are cleared by the time of this line, which therefore shows neither
        HW_LOG(Category::First, "Success %s: %s on localhost, %d msec", kind, blank(), watch.milliseconds());
    }

private:
    const char* blank() const { return setting.empty() ? "" : " with "; }

    const char* kind;
    const std::string& query;
    const std::string setting;
    const bool secret;
};

} // namespace

XDirectorImpl* XDirectorImpl::CreateInstance()
{
    static XDirectorImpl director;
    return &director;
}

XDirectorImpl::XDirectorImpl()
    : aliases{{"/BMC/INFO/PX_BOOT_AREA_VERSION", "/BIOS/PxFWVersion"}}, routes{{"BMC", COMPONENT_BMC},
                                                                               {"BIOS", COMPONENT_BIOS},
                                                                               {"SMBIOS", COMPONENT_SMBIOS},
                                                                               {rootKey, COMPONENT_SYSTEM},
                                                                               {"Platform", COMPONENT_PLATFORM},
                                                                               {"FILE", COMPONENT_FILE},
                                                                               {"SCF", COMPONENT_SCF}}
{
}

void XDirectorImpl::ValidateEmptyQuery(const std::string& query, _XCOMMAND command) const
{
    if (query.empty())
        refuse(query, command);
}

std::vector<std::string> XDirectorImpl::GetComponentID(const std::string& query, int* id)
{
    ValidateEmptyQuery(query, COMMAND_GET);
    return ParseXQuery(query, id);
}

std::vector<std::string> XDirectorImpl::ParseXQuery(const std::string& query, int* id)
{
    std::vector<std::string> tokens = engine.ParseXQuery(query).TokenList();
    std::string route = tokens.empty() || tokens.front() == childrenToken ? rootKey : tokens.front();
    if (route == "FILE" && tokens.size() >= 2 && (tokens[1] == "SCF" || tokens[1] == "INI"))
        route = "SCF";
    const auto component = routes.find(route);
    if (component == routes.end())
        refuse(query, COMMAND_UNKNOWN);
    *id = component->second;
    return tokens;
}

_ComponentID XDirectorImpl::componentOf(const std::string& query)
{
    int id = COMPONENT_NONE;
    GetComponentID(query, &id);
    return static_cast<_ComponentID>(id);
}

bool XDirectorImpl::answerAlias(const std::string& query, ResultMap& results)
{
    const auto alias = aliases.find(query);
    if (alias == aliases.end())
        return false;
    const std::string board = Platform::PlatformImpl::CreateInstance()->platformId();
    if (std::find(std::begin(aliasBoards), std::end(aliasBoards), board) == std::end(aliasBoards))
        return false;
    askBios(alias->second, results);
    _XNode node = results[alias->second];
    results.clear();
    results[query] = std::move(node);
    return true;
}

void XDirectorImpl::answer(const std::string& query, ResultMap& results)
{
    if (answerAlias(query, results))
        return;
    switch (componentOf(query)) {
    case COMPONENT_BMC:
        refuseControllerInventory(query);
        BMCConfigModule().ProcessXQuery(query, results);
        return;
    case COMPONENT_BIOS:
    case COMPONENT_SMBIOS:
        askBios(query, results);
        return;
    case COMPONENT_SYSTEM:
        askClosedModule(query, systemLock);
    case COMPONENT_PLATFORM:
    case COMPONENT_SCF:
    case COMPONENT_FILE:
        askClosedModule(query, platformLock);
    case COMPONENT_NONE:
        break;
    }
    refuse(query, COMMAND_UNKNOWN);
}

void XDirectorImpl::ProcessXQuery(const std::string& query, ResultMap& results)
{
    logGet(query, [&] { answer(query, results); });
}

void XDirectorImpl::ProcessXQuery(const QueryMap& queries, ResultMap& results)
{
    for (const auto& entry : queries) {
        const auto& query = entry.first;
        logGet(query, [&] {
            if (componentOf(query) != COMPONENT_BMC)
                refuse(query, COMMAND_GET);
            refuseControllerInventory(query);
            // each query empties the map that it is given
            ResultMap own;
            BMCConfigModule().ProcessXQuery(query, entry.second, own, 0);
            own.merge(results);
            results = std::move(own);
        });
    }
}

void XDirectorImpl::ProcessXQuery(const std::map<std::string, std::string>& values, bool biosFlag, bool bmcFlag)
{
    BMCConfigModule bmc;
    for (const auto& entry : values) {
        const auto& query = entry.first;
        HW_NAMED_LOCK(named, setMapLock);
        const SetLines lines("SET", query, " with " + entry.second);
        lines.around([&] {
            switch (componentOf(query)) {
            case COMPONENT_BMC:
                return bmc.ProcessXQuery(query, entry.second, bmcFlag);
            case COMPONENT_BIOS:
                return BIOSConfigModule().ProcessXQuery(values, biosFlag);
            default:
                refuse(query, COMMAND_SET);
            }
        });
    }
}

void XDirectorImpl::ProcessXQuery(const QueryMap& queries)
{
    for (const auto& entry : queries) {
        const auto& query = entry.first;
        HW_NAMED_LOCK(named, setMapLock);
        const SetLines lines("SETMAP", query, "");
        lines.around([&] {
            switch (componentOf(query)) {
            case COMPONENT_BMC:
                return BMCConfigModule().ProcessXQuery(query, entry.second);
            case COMPONENT_BIOS:
                return BIOSConfigModule().ProcessXQuery(query, entry.second);
            default:
                refuse(query, COMMAND_SET);
            }
        });
    }
}

} // namespace SDK
