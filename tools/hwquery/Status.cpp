#include "common/ConfigCheck.hpp"
#include "common/Descriptor.hpp"
#include "common/Paths.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "tools/hwquery/Daemon.hpp"
#include "tools/hwquery/Session.hpp"
#include "tools/hwquery/TreeView.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

// status and test-trap: why nothing is seen, and what to do.

namespace hwquery {

namespace {

/// What one check found; `advice` says what to do about it.
struct Finding {
    enum State { ok, note, bad } state = ok;
    std::string words, advice;
};
constexpr const char* stateWords[] = {"ok", "note", "BAD"};

constexpr std::size_t mostBytes = 1U << 20;

/// All that the checks look at.
struct Evidence {
    DaemonAnswer daemon;
    TreeView tree;
    bool ownChoice = false; ///< of how the tree is asked for
    bool hasDevice = false; ///< the kernel driver's
    bool hasDriver = false;
    std::string lockdown; ///< of the kernel, "none" or more; empty if it does not tell
};

/// "[none] integrity confidentiality"
std::string chosenIn(const std::string& words)
{
    const std::size_t begin = words.find('['), end = words.find(']');
    return begin < end && end != std::string::npos ? words.substr(begin + 1, end - begin - 1) : "";
}

Evidence gather(const Options& options)
{
    Evidence evidence;
    evidence.daemon = askDaemon("status");
    evidence.tree = lookAtTree(options);
    evidence.ownChoice = options.community != Options().community || !options.snmp.empty();
    struct stat status {};
    for (const char* node : {"/dev/ipmi0", "/dev/ipmidev/0"})
        evidence.hasDevice = evidence.hasDevice || stat(systemPath(node).c_str(), &status) == 0;
    for (const std::string& line : Util::split(common::readSmallText(systemPath("/proc/modules"), mostBytes), "\n"))
        evidence.hasDriver = evidence.hasDriver || line.starts_with("ipmi_si ");
    evidence.lockdown = chosenIn(common::readSmallText(systemPath("/sys/kernel/security/lockdown"), mostBytes));
    return evidence;
}

/// "3 h 12 min" of a number of seconds in text.
std::string spanOf(const std::string& seconds)
{
    constexpr long minute = 60, hour = 3600, day = 86400;
    const long all = std::strtol(seconds.c_str(), nullptr, 10);
    const auto two = [](long big, const char* unit, long small, const char* smallUnit) {
        return std::to_string(big) + unit + std::to_string(small) + smallUnit;
    };
    if (all < minute)
        return std::to_string(all) + " s";
    if (all < hour)
        return two(all / minute, " min ", all % minute, " s");
    return all < day ? two(all / hour, " h ", all % hour / minute, " min")
                     : two(all / day, " d ", all % day / hour, " h");
}

/// A fact and how long ago it was noted.
std::string withAge(const DaemonAnswer& daemon, const std::string& key)
{
    return daemon.at(key) + " (" + spanOf(daemon.at(key + ".age")) + " ago)";
}

Finding checkDaemon(const Evidence& evidence)
{
    const DaemonAnswer& daemon = evidence.daemon;
    switch (daemon.state) {
    case DaemonAnswer::answered:
        return {Finding::ok, "process " + daemon.at("process") + ", for " + spanOf(daemon.at("process.age")), ""};
    case DaemonAnswer::forbidden:
        return {Finding::bad, "not to be asked by you", "run as root"};
    case DaemonAnswer::withoutSocket:
        return {Finding::note, "process " + daemon.process + " runs, and answers at no socket",
                "it does with \"practical = 1\" in hwagent.conf, some seconds after its start"};
    case DaemonAnswer::notRunning:
        break;
    }
    return {Finding::bad, "not running", "systemctl start hwagent; journalctl -t hwAgent says what it met"};
}

Finding checkConfiguration(const Evidence&)
{
    const std::size_t odd = common::checkConfigFile(systemPath(common::configPath)).size();
    if (odd == 0)
        return {access(systemPath(common::configPath).c_str(), R_OK) == 0 ? Finding::ok : Finding::note,
                common::configPath, "a file that cannot be read leaves all keys at their defaults"};
    return {Finding::note, std::to_string(odd) + " remarks on " + common::configPath, "hwquery check-config"};
}

Finding checkMaster(const Evidence& evidence)
{
    const std::string words = evidence.daemon.at("master");
    if (words == "connected")
        return {Finding::ok, "connected to snmpd", ""};
    return {Finding::bad, "no session to snmpd",
            "\"master agentx\" in snmpd.conf, then systemctl restart snmpd; the agent is back within 15 s"};
}

Finding checkTree(const Evidence& evidence)
{
    const TreeView& tree = evidence.tree;
    const std::string master = evidence.daemon.at("master");
    switch (tree.state) {
    case TreeView::seen:
        return {Finding::ok, "seen with " + tree.asked, ""};
    case TreeView::hidden:
        if (master.empty())
            return {Finding::bad, "snmpd answers " + tree.asked + ", and has no tree to show", "start the agent first"};
        if (master == "connected")
            return {Finding::bad, "the view hides it from " + tree.asked,
                    "\"view NAME included .1.3.6.1.4.1.44444.2.10.3.5\" in snmpd.conf, then systemctl restart snmpd"};
        return {Finding::bad, "snmpd answers " + tree.asked + ", the agent is not connected to it", "see master"};
    case TreeView::noAnswer:
        return {evidence.ownChoice ? Finding::bad : Finding::note, "no answer with " + tree.asked,
                "wrong community, snmpd not running, or another agentaddress; --community NAME, --snmp=OPTIONS, "
                "--agent ADDRESS"};
    case TreeView::refused:
        return {Finding::bad, tree.said, "user, passwords, and what snmpd.conf grants them"};
    case TreeView::notTried:
        break;
    }
    return {Finding::note, "not tried: there is no snmpget",
            "install the package snmp, or net-snmp-utils on systems with RPM"};
}

Finding checkTransport(const Evidence& evidence)
{
    constexpr char load[] = "modprobe -a ipmi_si ipmi_devintf";
    const std::string way = evidence.daemon.at("transport");
    if (way.starts_with("KCS") && evidence.hasDriver)
        return {Finding::bad, way + ", and the driver is loaded beside it: they take each other's answers",
                "modprobe ipmi_devintf"};
    if (way.starts_with("KCS"))
        return {Finding::note, way, std::string("the driver is the better way where it works: ") + load};
    if (way == "none")
        return {Finding::bad, "no controller is found", load};
    if (!way.empty())
        return {Finding::ok, way, ""};
    return evidence.hasDevice ? Finding{Finding::ok, "kernel's driver, as its device node says", ""}
                              : Finding{Finding::note, "no device node of the kernel's driver", load};
}

Finding checkController(const Evidence& evidence)
{
    const std::string words = evidence.daemon.at("controller");
    if (evidence.daemon.at("transport") == "none")
        return {Finding::note, "none", "see transport"};
    if (words.starts_with("no answer"))
        return {Finding::bad, words, "ipmitool mc info; a controller that hangs may need the mains taken off"};
    return {Finding::ok, words.empty() ? "answers" : withAge(evidence.daemon, "controller"), ""};
}

Finding checkLockdown(const Evidence& evidence)
{
    const bool hasDriversWay = evidence.hasDevice || evidence.daemon.at("transport").starts_with("kernel's driver");
    const bool needsPorts = !hasDriversWay && evidence.lockdown != "none" && !evidence.lockdown.empty();
    return {needsPorts ? Finding::bad : Finding::ok, evidence.lockdown.empty() ? "none" : evidence.lockdown,
            needsPorts ? "the kernel keeps the ports from everyone: only its driver reaches the controller" : ""};
}

Finding checkRecords(const Evidence& evidence)
{
    const bool read = evidence.daemon.at("records").starts_with("read");
    return {read ? Finding::ok : Finding::bad, withAge(evidence.daemon, "records"),
            read ? "" : "hwquery sensors asks the controller itself"};
}

Finding checkRefresh(const Evidence& evidence)
{
    constexpr long tooOld = 300;
    const bool old = std::strtol(evidence.daemon.at("refresh.age").c_str(), nullptr, 10) > tooOld;
    return {old ? Finding::bad : Finding::ok, withAge(evidence.daemon, "refresh"),
            old ? "the controller is silent, or very slow: journalctl -t hwAgent" : ""};
}

/// The lines whose key begins so, as "end of key value".
std::vector<std::string> listed(const DaemonAnswer& daemon, const std::string& beginning, bool withGroup)
{
    std::vector<std::string> list;
    for (const auto& [key, value] : daemon.lines)
        if (key.starts_with(beginning))
            list.push_back((withGroup ? key.substr(beginning.size()) + " " : "") + value);
    return list;
}

Finding checkRows(const Evidence& evidence)
{
    const std::vector<std::string> rows = listed(evidence.daemon, "rows.", true);
    return {Finding::ok, Util::join(rows, ", "), ""};
}

Finding checkSilent(const Evidence& evidence)
{
    const std::vector<std::string> silent = listed(evidence.daemon, "silent.", false);
    if (silent.empty())
        return {Finding::ok, "each has a value", ""};
    return {Finding::note, "no value of " + Util::join(silent, ", "),
            "in order where nothing is fitted; else hwquery sensors says what the controller has"};
}

Finding checkHealth(const Evidence& evidence)
{
    static constexpr const char* words[] = {"", "unavailable", "healthy", "warning", "critical"};
    const long number = std::strtol(evidence.daemon.at("health").c_str(), nullptr, 10);
    const bool known = number > 0 && number < std::ssize(words);
    return {number == 2 ? Finding::ok : Finding::note, known ? words[number] : evidence.daemon.at("health"),
            number == 1   ? "there are no readings yet"
            : number == 2 ? ""
                          : "the rows that are not healthy say why"};
}

Finding checkEvent(const Evidence& evidence)
{
    return {Finding::ok, withAge(evidence.daemon, "event"), ""};
}

Finding checkTraps(const Evidence& evidence)
{
    const DaemonAnswer& daemon = evidence.daemon;
    const std::string last = daemon.has("trap") ? "last " + withAge(daemon, "trap") : "none so far";
    if (daemon.at("traps.enabled") != "1")
        return {Finding::note, "off", "trapsEnabled = 1 in hwagent.conf, then systemctl restart hwagent"};
    if (daemon.at("traps.waiting") != "0")
        return {Finding::note, daemon.at("traps.waiting") + " wait; " + last, "they leave one after the other"};
    return {Finding::ok, last, ""};
}

/// A check, and the daemon's line without which there is nothing to check.
struct Check {
    const char* name;
    const char* needs;
    Finding (*make)(const Evidence& evidence);
};
constexpr Check checks[] = {
    {"daemon", "", checkDaemon},          {"config", "", checkConfiguration},
    {"master", "master", checkMaster},    {"tree", "", checkTree},
    {"transport", "", checkTransport},    {"controller", "process", checkController},
    {"lockdown", "", checkLockdown},      {"records", "records", checkRecords},
    {"refresh", "refresh", checkRefresh}, {"rows", "rows.powerUnit", checkRows},
    {"silent", "refresh", checkSilent},   {"health", "health", checkHealth},
    {"event", "event", checkEvent},       {"traps", "traps.enabled", checkTraps},
};

std::string padded(std::string text, std::size_t width)
{
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

/// The words in lines of 80 columns, from the second on behind blanks in the place of what stands before them.
std::string wrapped(const std::string& words, std::size_t before)
{
    constexpr std::size_t width = 80;
    std::string text;
    std::size_t column = before;
    for (const std::string& word : Util::split(words, " ")) {
        const bool fits = column == before || column + 1 + word.size() <= width;
        if (!fits)
            text += "\n" + std::string(before, ' ');
        column = (fits ? column : before) + (column == before || !fits ? 0 : 1) + word.size();
        text += (text.empty() || text.back() == ' ' ? "" : " ") + word;
    }
    return text + "\n";
}

void addFinding(Answer& answer, const char* name, const Finding& finding)
{
    constexpr std::size_t nameWidth = 12, stateWidth = 6, wordsBegin = nameWidth + stateWidth;
    constexpr std::string_view arrow = "-> ";
    const std::string advice = finding.state == Finding::ok ? "" : finding.advice;
    answer.tables.front().rows.push_back({name, stateWords[finding.state], finding.words, advice});
    answer.text +=
        padded(name, nameWidth) + padded(stateWords[finding.state], stateWidth) + wrapped(finding.words, wordsBegin);
    if (!advice.empty())
        answer.text += padded("", wordsBegin).append(arrow) + wrapped(advice, wordsBegin + arrow.size());
}

Table groupTable(const DaemonAnswer& daemon)
{
    constexpr std::string_view beginning = "rows.";
    Table table{"groups", {"group", "rows", "silent"}, {}};
    for (const auto& [key, value] : daemon.lines)
        if (key.starts_with(beginning)) {
            const std::string group = key.substr(beginning.size());
            table.rows.push_back({group, value, Util::join(listed(daemon, "silent." + group, false), ", ")});
        }
    return table;
}

Failure unanswered(const DaemonAnswer& daemon)
{
    Evidence evidence;
    evidence.daemon = daemon;
    const Finding finding = checkDaemon(evidence);
    return {"test-trap", 0, finding.words, finding.advice};
}

} // namespace

int runStatus(const Options& options)
{
    Session session(options);
    session.answer.tables = {{"status", {"check", "state", "finding", "advice"}, {}}};
    const Evidence evidence = gather(options);
    bool isAnyBad = false;
    for (const Check& check : checks) {
        if (*check.needs && !evidence.daemon.has(check.needs))
            continue;
        const Finding finding = check.make(evidence);
        isAnyBad = isAnyBad || finding.state == Finding::bad;
        addFinding(session.answer, check.name, finding);
    }
    session.answer.tables.push_back(groupTable(evidence.daemon));
    session.finish();
    return isAnyBad ? failed : succeeded;
}

int runTestTrap(const Options& options)
{
    Session session(options);
    const std::string name = options.words.empty() ? "" : " " + options.words.front();
    const DaemonAnswer daemon = askDaemon("test-trap" + name);
    if (daemon.state != DaemonAnswer::answered)
        session.fail(unanswered(daemon));
    else if (daemon.has("error"))
        session.fail({"test-trap", 0, daemon.at("error"), ""});
    else
        session.answer.nodes = {{{"sent", {NODE_LEAF, {daemon.at("sent")}, {}, 0}}}};
    return session.finish();
}

} // namespace hwquery
