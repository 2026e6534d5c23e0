#include "tools/hwquery/TreeView.hpp"

#include "common/Descriptor.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace hwquery {

namespace {

constexpr char sysObjectId[] = ".1.3.6.1.2.1.1.2.0";
constexpr char trapsEnabled[] = ".1.3.6.1.4.1.44444.2.10.3.5.100.4.0"; ///< of the agent; there without any hardware
constexpr int noProgram = 127;
constexpr std::size_t mostBytes = 1U << 16;

std::vector<std::string> optionsOf(const Options& options)
{
    return options.snmp.empty() ? std::vector<std::string>{"-v2c", "-c", options.community}
                                : Util::split(options.snmp, " ");
}

/// The line of an object with a value.
bool hasValue(const std::string& said, const std::string& object)
{
    for (const std::string& line : Util::split(said, "\n"))
        if (line.starts_with(object + " ") && line.find(" No Such ") == std::string::npos)
            return true;
    return false;
}

TreeView::State judge(int status, const std::string& said)
{
    if (status == noProgram)
        return TreeView::notTried;
    if (hasValue(said, trapsEnabled))
        return TreeView::seen;
    if (said.find("Timeout") != std::string::npos)
        return TreeView::noAnswer;
    const bool isThereNot = said.find("No Such ") != std::string::npos || said.find("noSuchName") != std::string::npos;
    return isThereNot ? TreeView::hidden : TreeView::refused;
}

} // namespace

TreeView lookAtTree(const Options& options)
{
    std::vector<std::string> words{"snmpget", "-r1", "-t1", "-Onq"};
    const std::vector<std::string> given = optionsOf(options);
    words.insert(words.end(), given.begin(), given.end());
    for (const char* word : {options.agent.c_str(), sysObjectId, trapsEnabled})
        words.emplace_back(word);
    setenv("MIBS", "", 1); // objects are named by number, and no MIB is missed
    const common::Descriptor output(memfd_create("snmpget", MFD_CLOEXEC));
    const int status = runCommand(words, output.get());
    const std::string said = common::readSmallText("/proc/self/fd/" + std::to_string(output.get()), mostBytes);
    const std::string by = options.snmp.empty() ? "community " + options.community : "the options given";
    return {judge(status, said), by + " at " + options.agent, said.substr(0, said.find('\n'))};
}

} // namespace hwquery
