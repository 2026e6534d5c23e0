#include "modules/bmc/subjects/SdrRepository.hpp"

#include "common/Logger.hpp"
#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/subjects/Cache.hpp"
#include "modules/bmc/subjects/SdrState.hpp"

#include <map>
#include <mutex>

namespace Module::BMCConfig {

namespace {

/// The last decoded repository of each way to a BMC, by the cache's own key for it.
struct Decoded {
    std::mutex guard;
    std::map<std::string, std::shared_ptr<const SdrRepository>> repositories;
    unsigned long made = 0;
};

Decoded& decoded()
{
    static Decoded only;
    return only;
}

Symbol look(const std::string& key, _BMC_EXEC exec)
{
    HW_LOG(LOGGER::Category::Third, "Calling cHGet from %s @%d", __func__, __LINE__);
    return Cache::instance().Get(key, exec);
}

std::shared_ptr<const SdrRepository> decode(_BMC_EXEC exec, std::string stamp)
{
    auto repository = std::make_shared<SdrRepository>();
    repository->stamp = std::move(stamp);
    const std::size_t count = look(sdrListKey, exec).size();
    for (std::size_t number = 1; number <= count; ++number) {
        const std::string text = look(sdrKey(number), exec);
        repository->records.push_back({text, ipmi::parseBytes(text)});
    }
    return repository;
}

} // namespace

bool hasCome(const std::string& moment)
{
    return std::chrono::nanoseconds(::current<Clock>().steady().time_since_epoch()).count() >= std::stoll(moment);
}

std::string sdrPath(std::size_t number)
{
    return "/BMC/SDR[" + std::to_string(number) + "]";
}

std::string sdrKey(std::size_t number)
{
    return "GET:/" + sdrPath(number);
}

const SdrRecord* SdrRepository::record(std::size_t number) const
{
    return number >= 1 && number <= records.size() ? &records[number - 1] : nullptr;
}

std::shared_ptr<const SdrRepository> SdrRepository::current(_BMC_EXEC exec)
{
    Decoded& memory = decoded();
    const std::lock_guard hold(memory.guard);
    std::shared_ptr<const SdrRepository>& last = memory.repositories[Cache::safe_key(sdrStampKey, exec)];
    const std::string stamp = look(sdrStampKey, exec);
    if (!stamp.empty() && last && last->stamp == stamp)
        return last;
    if (look(sdrListKey, exec).size() == 0)
        return nullptr;
    last = decode(exec, std::to_string(++memory.made));
    Cache::instance().Set(sdrStampKey, Symbol(last->stamp), exec, true);
    return last;
}

bool SdrRepository::changed(_BMC_EXEC exec)
{
    if (!common::policy().followsRepository || look(sdrListKey, exec).size() == 0)
        return false;
    const std::string due = look(sdrRetryKey, exec).text(), mark = look(sdrMarkKey, exec).text();
    if (!due.empty() ? !hasCome(due) : mark.empty())
        return false;
    if (due.empty()) {
        const std::optional<SdrState> state = readSdrState();
        if (!state || state->mark == mark)
            return false;
    }
    Cache::instance().Set(sdrAnewKey, Symbol("1"), exec, true);
    return true;
}

} // namespace Module::BMCConfig
