#include "tools/hwquery/Query.hpp"

#include "modules/System.hpp"

#include <cstdio>
#include <exception>
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
    "A PATH that ends in /@children lists a branch without visiting it. Failures go to standard error with their "
    "code,\n"
    "words and path; the exit status is then 1, and 2 for wrong usage.\n";

struct Arguments {
    bool json = false;
    SDK::Parameters parameters; ///< of each query
    std::vector<std::string> paths;
};

bool getOne(SDK::System& system, const std::string& path, const Arguments& arguments)
{
    ResultMap results;
    try {
        if (arguments.parameters.empty()) {
            system.Get(path, results);
        } else {
            SDK::QueryMap query{{path, arguments.parameters}};
            system.Get(query, results);
        }
    } catch (const ResultStatus& status) {
        std::fprintf(stderr, "%s: %s", path.c_str(), hwquery::listFailures(status).c_str());
        return false;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(), error.what());
        return false;
    }
    const std::string text = arguments.json ? hwquery::listJson(results) : hwquery::listText(results);
    std::fputs(text.c_str(), stdout);
    return true;
}

int getAll(const Arguments& arguments)
{
    SDK::System system;
    system.SetFlags(agentFlags);
    bool answered = true;
    for (const std::string& path : arguments.paths)
        answered = getOne(system, path, arguments) && answered;
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
