#include "common/Facts.hpp"

#include <map>
#include <memory>
#include <mutex>

namespace common {

namespace {

std::mutex guard;
/// Not destroyed at exit: threads may outlive the end of main.
std::map<std::string, Fact>& noted = *std::make_unique<std::map<std::string, Fact>>().release();

} // namespace

void noteFact(const std::string& name, const std::string& text)
{
    const auto now = current<Clock>().steady();
    const std::scoped_lock lock(guard);
    noted[name] = {name, text, now};
}

std::vector<Fact> facts()
{
    std::vector<Fact> all;
    const std::scoped_lock lock(guard);
    for (const auto& [name, fact] : noted)
        all.push_back(fact);
    return all;
}

void forgetFacts()
{
    const std::scoped_lock lock(guard);
    noted.clear();
}

} // namespace common
