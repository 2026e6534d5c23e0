#include "modules/bmc/subjects/Cache.hpp"

#include "common/CMySemLock.hpp"
#include "common/Util.hpp"

#include <optional>

namespace Module::BMCConfig {

namespace {

constexpr char cacheLock[] = "GLOBAL_CACHE_LOCK";

} // namespace

Cache& Cache::instance()
{
    static Cache cache;
    return cache;
}

Symbol Cache::Get(const std::string& key, _BMC_EXEC exec)
{
    const std::string name = $(safe_key(key, exec));
    HW_NAMED_LOCK(named, cacheLock);
    const std::lock_guard hold(guard);
    const Symbol* entry = table.find(name);
    return entry ? *entry : Symbol{};
}

void Cache::Set(const std::string& key, const Symbol& symbol, _BMC_EXEC exec, bool lock)
{
    const std::string name = $(safe_key(key, exec));
    std::optional<Common::NamedLock> named;
    if (lock) {
        HW_LOG(LOGGER::Category::Third, "Locking at %s: %s: %d", __FILE__, __func__, __LINE__);
        named.emplace(cacheLock);
    }
    const std::lock_guard hold(guard);
    table[name] = symbol;
}

void Cache::Clear()
{
    const std::lock_guard hold(guard);
    table = SymbolTable();
}

std::string Cache::safe_key(const std::string& key, _BMC_EXEC exec)
{
    return Prepend(Util::replace_all(key, "/", "_"), exec) + "_CACHE";
}

std::string Cache::Prepend(const std::string& key, _BMC_EXEC exec)
{
    // a remote connection's entries stand under its system identifier, of which a local process has none
    return (exec == BMC_EXEC_LOCAL ? "localhost@" : "@") + key;
}

} // namespace Module::BMCConfig
