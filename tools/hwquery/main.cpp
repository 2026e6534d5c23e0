#include "tools/hwquery/Query.hpp"

#include "common/Policy.hpp"
#include "modules/System.hpp"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int exitFailed = 1; ///< a query failed
constexpr int exitUsage = 2;

/// Locks on, log file off: the word with which the agent runs the SDK.
constexpr unsigned char agentFlags = 33;

constexpr char usage[] =
    "usage: hwquery get [--json] [--locale NAME] PATH...\n"
    "\n"
    "Asks the management SDK for each PATH, such as /BMC/INFO/VERSION, and prints the answer: one line a node,\n"
    "\"path = values\" for a leaf and \"path: children\" for a branch.\n"
    "\n"
    "  --json         print one JSON object a PATH instead\n"
    "  --locale NAME  the language of /BMC/SEL/TRANSLATED, such as de_DE; English without it\n"
    "  --help         this text\n"
    "\n"
    "The PATH / lists where to begin; one that ends in /@children lists a branch without visiting it. Failures go to\n"
    "standard error with their code, words and path; the exit status is then 1, as for an empty answer, and 2 for\n"
    "wrong usage.\n";

/// Where a tree begins, each a path that can be asked. The SDK has no list of its own: its root is a closed module.
constexpr const char* roots[] = {"/BIOS/PlatformID", "/BMC", "/BMC/SENSOR/DISPLAY", "/ProductInfo", "/SMBIOS"};

struct Arguments {
    bool json = false;
    SDK::Parameters parameters; ///< of each query
    std::vector<std::string> paths;
};

/// Standard output for answers alone: what the SDK itself prints there goes to standard error from now on.
std::FILE* takeOutput()
{
    const int output = dup(STDOUT_FILENO);
    if (output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return stdout;
    std::FILE* const answers = fdopen(output, "w");
    return answers != nullptr ? answers : stdout;
}

void ask(SDK::System& system, const std::string& path, const Arguments& arguments, ResultMap& results)
{
    if (path == "/") {
        results[path].mType = NODE_NONLEAF;
        results[path].mXNodeList.assign(std::begin(roots), std::end(roots));
    } else if (arguments.parameters.empty()) {
        system.Get(path, results);
    } else {
        SDK::QueryMap query{{path, arguments.parameters}};
        system.Get(query, results);
    }
}

/// Nothing when the query failed, which is then told.
std::optional<ResultMap> tryAsk(SDK::System& system, const std::string& path, const Arguments& arguments)
{
    ResultMap results;
    try {
        ask(system, path, arguments, results);
    } catch (const ResultStatus& status) {
        std::fprintf(stderr, "%s: %s", path.c_str(), hwquery::listFailures(status).c_str());
        return std::nullopt;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(), error.what());
        return std::nullopt;
    }
    if (!hwquery::isEmpty(results))
        return results;
    std::fprintf(stderr, "%s: an empty answer\n", path.c_str());
    return std::nullopt;
}

int getAll(const Arguments& arguments)
{
    std::FILE* const output = takeOutput();
    common::loadPolicy();
    SDK::System system;
    system.SetFlags(agentFlags);
    bool answered = true;
    for (const std::string& path : arguments.paths)
        if (const auto results = tryAsk(system, path, arguments))
            std::fputs((arguments.json ? hwquery::listJson(*results) : hwquery::listText(*results)).c_str(), output);
        else
            answered = false;
    if (!answered && geteuid() != 0)
        std::fputs("hwquery: run as root, whom alone the hardware answers\n", stderr);
    std::fflush(output);
    return answered ? 0 : exitFailed;
}

/// False for words that make no call.
bool readArguments(const std::vector<std::string_view>& words, Arguments& arguments)
{
    if (words.empty() || words.front() != "get")
        return false;
    for (std::size_t at = 1; at < words.size(); ++at) {
        if (words[at] == "--json")
            arguments.json = true;
        else if (words[at] == "--locale" && at + 1 < words.size())
            arguments.parameters["LOCALE"] = words[++at];
        else if (words[at].starts_with("--"))
            return false;
        else
            arguments.paths.emplace_back(words[at]);
    }
    return !arguments.paths.empty();
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    for (const std::string_view word : words)
        if (word == "--help" || word == "-h") {
            std::fputs(usage, stdout);
            return 0;
        }
    Arguments arguments;
    if (readArguments(words, arguments))
        return getAll(arguments);
    std::fputs(usage, stderr);
    return exitUsage;
}
