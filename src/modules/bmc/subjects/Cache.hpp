#pragma once

#include "modules/bmc/engine/Handler.hpp"
#include "modules/bmc/engine/SymbolTable.hpp"

#include <mutex>
#include <string>

namespace Module::BMCConfig {

/// The one store of the engine that outlives a query; SDR records live here.
class Cache {
public:
    static Cache& instance();

    /// The value under `key`; an absent one gives an empty symbol. Holds "GLOBAL_CACHE_LOCK".
    Symbol Get(const std::string& key, _BMC_EXEC exec);
    /// `lock` false leaves the named lock to the caller.
    void Set(const std::string& key, const Symbol& symbol, _BMC_EXEC exec, bool lock);
    /// Empties the cache, as a start of the process does.
    void Clear();

    static std::string safe_key(const std::string& key, _BMC_EXEC exec);
    static std::string Prepend(const std::string& key, _BMC_EXEC exec);

private:
    std::mutex guard; ///< of `table`; the named lock can be switched off
    SymbolTable table;
};

} // namespace Module::BMCConfig
