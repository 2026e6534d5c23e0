#include "common/NamedMutex.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace common {

namespace {

struct Mutexes {
    std::mutex guard;
    std::map<std::string, std::mutex, std::less<>> byName;
};

Mutexes& mutexes()
{
    // never destroyed: a detached thread may hold one at the process's end
    static Mutexes& only = *std::make_unique<Mutexes>().release();
    return only;
}

} // namespace

std::mutex& namedMutex(std::string_view name)
{
    Mutexes& all = mutexes();
    const std::scoped_lock lock(all.guard);
    const auto known = all.byName.find(name);
    return known != all.byName.end() ? known->second : all.byName[std::string(name)];
}

} // namespace common
