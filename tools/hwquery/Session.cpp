#include "tools/hwquery/Session.hpp"

#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iterator>

namespace hwquery {

namespace {

/// Locks on, log file off: the word with which the agent runs the SDK.
constexpr unsigned char agentFlags = 33;

/// For the one error that has no text: a completion code with a meaning of its own for the command.
constexpr char noWords[] = "the controller refused it";

/// Where a tree begins, each a path that can be asked. The SDK has no list of its own: its root is a closed module, and
/// the controller's names what no controller lacks.
constexpr const char* roots[] = {"/BIOS/PlatformID", "/BMC",      "/BMC/CHANNEL",        "/BMC/LAN",
                                 "/BMC/OEM",         "/BMC/PEF",  "/BMC/SENSOR/DISPLAY", "/BMC/SERIAL",
                                 "/BMC/SOL",         "/BMC/USER", "/ProductInfo",        "/SMBIOS"};

std::FILE* takeOutput()
{
    const int output = dup(STDOUT_FILENO);
    if (output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return stdout;
    std::FILE* const answers = fdopen(output, "w");
    return answers != nullptr ? answers : stdout;
}

} // namespace

Session::Session(const Options& options_) : options(options_), output(takeOutput())
{
    common::loadPolicy();
    system.SetFlags(agentFlags);
}

template<class Work>
bool Session::attempt(const std::string& path, Work work)
{
    try {
        work();
        return true;
    } catch (const ResultStatus& status) {
        for (const RStatus& entry : status)
            fail({path, entry.mErrorCode, entry.mErrorString.empty() ? noWords : entry.mErrorString, entry.mXQuery});
    } catch (const std::exception& error) {
        fail({path, 0, error.what(), {}});
    }
    return false;
}

bool Session::query(const std::string& path, const SDK::Parameters& parameters, ResultMap& results)
{
    return attempt(path, [&] {
        SDK::QueryMap query{{path, parameters}};
        if (path == "/")
            results[path] = {NODE_NONLEAF, {std::begin(roots), std::end(roots)}, {}, 0};
        else if (parameters.empty())
            system.Get(path, results);
        else
            system.Get(query, results);
    });
}

std::optional<ResultMap> Session::get(const std::string& path, const SDK::Parameters& parameters)
{
    ResultMap results;
    if (!query(path, parameters, results))
        return std::nullopt;
    if (!isEmpty(results))
        return results;
    fail({path, 0, "an empty answer", {}});
    return std::nullopt;
}

ResultMap Session::ask(const std::string& path, const SDK::Parameters& parameters)
{
    ResultMap results;
    return query(path, parameters, results) ? results : ResultMap();
}

bool Session::set(const std::string& path, const SDK::Parameters& parameters)
{
    return attempt(path, [&] {
        SDK::QueryMap query{{path, parameters}};
        system.Set(query);
    });
}

void Session::fail(Failure failure)
{
    answer.failures.push_back(std::move(failure));
}

void Session::say(const std::string& text)
{
    std::fputs(text.c_str(), output);
    std::fflush(output);
}

int Session::finish()
{
    say(options.json ? jsonOf(answer) : textOf(answer));
    for (const Failure& failure : answer.failures)
        std::fputs(lineOf(failure).c_str(), stderr);
    if (answer.failures.empty())
        return succeeded;
    if (needsRoot && geteuid() != 0)
        std::fputs("hwquery: run as root, whom alone the hardware answers\n", stderr);
    return failed;
}

std::string valueOf(const ResultMap& nodes, const std::string& path)
{
    const auto node = nodes.find(path);
    return node == nodes.end() ? std::string() : Util::join(node->second.mXNodeList, " ");
}

std::vector<std::string> childrenOf(const ResultMap& nodes, const std::string& path)
{
    const auto node = nodes.find(path);
    return node == nodes.end() || node->second.mType == NODE_LEAF ? std::vector<std::string>()
                                                                  : node->second.mXNodeList;
}

} // namespace hwquery
