#include "client/groups/clSystemManagement.hpp"
#include "common/ConfigFile.hpp"
#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "tests/fuzz/MemoryFile.hpp"

#include <algorithm>

// The configuration file, and what the group of settings takes from it.

namespace {

using namespace common;

struct OneFile : SystemRoot {
    explicit OneFile(const std::string& contents) : file(contents) {}
    std::string resolve(const std::string&) override { return file.path(); }

    MemoryFile file;
    ScopedSeam<SystemRoot> use{*this};
};

/// Without the last line the group would send the fuzzer's own messages to /dev/null.
constexpr char keepMessages[] = "\ndebugEnabled = 1\n";

void checkEntry(const ConfigEntry& entry)
{
    constexpr std::size_t longestLine = 1023;
    require(entry.key.size() + entry.value.size() <= longestLine && entry.line > 0);
    require(entry.key.find(' ') == std::string::npos && entry.value.find('"') == std::string::npos);
    require(std::ranges::none_of(entry.key, [](char character) { return character >= 'A' && character <= 'Z'; }));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const OneFile root(input.restAsText() + keepMessages);
    require(readConfigFile(root.file.path(), checkEntry));
    loadPolicy();
    require(policy().trapQueue > 0 && policy().refreshPeriod.count() > 0);
    systemManagement settings;
    require(settings.init() == CLIENT_SUCCESS);
    return 0;
}
