#pragma once

#include "common/XNode.hpp"
#include "common/XTokenizer.hpp"
#include "modules/System.hpp"

#include <map>
#include <string>
#include <vector>

namespace SDK {

/// Who answers a query; the numbers are those of the route table. 0 is nobody.
enum _ComponentID : int {
    COMPONENT_NONE = 0,
    COMPONENT_SMBIOS = 5,
    COMPONENT_BIOS = 7,
    COMPONENT_BMC = 9,
    COMPONENT_SYSTEM = 12,
    COMPONENT_PLATFORM = 13,
    COMPONENT_FILE = 14,
    COMPONENT_SCF = 15,
};

/// Finds the module that owns a query by its first token, takes the lock that the module needs, lets it work and logs
/// how that went. Safe to call from any thread.
class XDirectorImpl {
public:
    /// The one instance, made on first use.
    static XDirectorImpl* CreateInstance();
    virtual ~XDirectorImpl() = default;

    /// The tokens of `query`, and in `id` the component that owns it. Error 1001 for an empty or unknown query.
    std::vector<std::string> GetComponentID(const std::string& query, int* id);
    std::vector<std::string> ParseXQuery(const std::string& query, int* id);
    /// Error 1001 for an empty query.
    void ValidateEmptyQuery(const std::string& query, _XCOMMAND command) const;
    /// A hook; takes every query.
    void ValidateXQuery(const std::string&) const {}

    /// GET. The answers of `results` come from the module; a query that fails leaves them unspecified.
    void ProcessXQuery(const std::string& query, ResultMap& results);
    /// GET of each query with its parameters; the answers of all of them.
    void ProcessXQuery(const QueryMap& queries, ResultMap& results);
    /// SET of each query to its value. The first failure ends the map.
    void ProcessXQuery(const std::map<std::string, std::string>& values, bool biosFlag, bool bmcFlag);
    /// SET of each query with its parameters. The first failure ends the map.
    void ProcessXQuery(const QueryMap& queries);

private:
    XDirectorImpl();

    _ComponentID componentOf(const std::string& query);
    bool answerAlias(const std::string& query, ResultMap& results);
    void answer(const std::string& query, ResultMap& results);

    const std::map<std::string, std::string> aliases;
    Common::XEngine engine;
    const std::map<std::string, _ComponentID> routes;
};

} // namespace SDK
