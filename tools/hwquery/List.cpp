#include "common/Util.hpp"
#include "modules/bmc/catalogue/Guide.hpp"
#include "tools/hwquery/Session.hpp"

#include <algorithm>
#include <map>
#include <set>

// What can be asked and set: as a table, as the page docs/queries.md, and as the shell completes it.

namespace hwquery {

namespace {

using Module::BMCConfig::Entry;
using Module::BMCConfig::Need;
using Module::BMCConfig::Takes;

const char* flagOf(Need need)
{
    switch (need) {
    case Need::consent:
        return "--yes";
    case Need::force:
        return "--force";
    case Need::nothing:
        break;
    }
    return "";
}

/// "NAME: form" of each value; of a write's own value, the first, the form alone.
std::vector<std::string> valuesOf(const Entry& entry)
{
    std::vector<std::string> values;
    for (const Takes& value : entry.takes)
        if (entry.writes && &value == &entry.takes.front())
            values.push_back(value.form);
        else
            values.push_back(value.name + (value.form.empty() ? "" : ": " + value.form));
    std::erase(values, "");
    return values;
}

std::string givenBy(const Entry& entry)
{
    return entry.children.empty() ? entry.gives : "branch: " + Util::join(entry.children, " ");
}

/// `text` with what stands in its subscripts taken out.
std::string emptied(const std::string& text)
{
    std::string plain;
    bool inside = false;
    for (const char c : text) {
        inside = inside && c != ']';
        plain += inside ? "" : std::string(1, c);
        inside = inside || c == '[';
    }
    return plain;
}

Table listBelow(const std::string& prefix)
{
    Table table{"paths", {"path", "use", "gives", "takes", "subscripts", "needs"}, {}};
    for (const Entry& entry : Module::BMCConfig::entries())
        if (entry.path.starts_with(prefix))
            table.rows.push_back({entry.path, entry.writes ? "set" : "get", entry.writes ? "" : givenBy(entry),
                                  Util::join(valuesOf(entry), "; "), Util::join(entry.subscripts, ", "),
                                  flagOf(entry.advice.need)});
    return table;
}

std::string code(const std::string& text)
{
    return "`" + text + "`";
}

/// "/BMC/LAN" of "/BMC/LAN[]/IP".
std::string areaOf(const std::string& path)
{
    if (!path.starts_with("/BMC/"))
        return path.substr(0, path.find('/', 1));
    const std::string plain = path.substr(0, path.find('['));
    const std::size_t second = plain.find('/', 1);
    return plain.substr(0, second == std::string::npos ? second : plain.find('/', second + 1));
}

/// What the page says of one path, whose read and write stand together.
struct Line {
    std::string path, gives, takes, subscripts, needs;
};

void addTo(Line& line, const Entry& entry)
{
    std::vector<std::string> values = valuesOf(entry);
    if (entry.writes && values.empty())
        values = {"nothing"};
    if (entry.writes)
        line.takes = Util::join(values, "<br>");
    else
        line.gives = givenBy(entry) + (values.empty() ? "" : "<br>by " + Util::join(values, "<br>"));
    line.path = entry.path;
    line.subscripts = Util::join(entry.subscripts, ", ");
    if (entry.advice.need != Need::nothing)
        line.needs = code(flagOf(entry.advice.need));
}

std::string textOf(const Line& line)
{
    return "| " + code(line.path) + " | " + line.gives + " | " + line.takes + " | " + line.subscripts + " | " +
           line.needs + " |\n";
}

constexpr char pageHead[] =
    "# Queries\n"
    "\n"
    "Every path that `hwquery get` and `hwquery set` know, as the catalogue itself says it. Made by `hwquery list "
    "--markdown`;\n"
    "a test holds it to that. What stands in brackets is given as a number: `/BMC/LAN[1]/IP`. \"Takes\" is for `set`: "
    "its own\n"
    "value, or those that have a name, as `NAME=VALUE`; what a `get` takes stands behind \"by\". Bytes are "
    "hexadecimal, other\n"
    "numbers decimal. What a machine does not have reads as `NOT_SUPPORTED`, or is refused with a code.\n"
    "\n"
    "A path that needs `--yes` asks at a terminal, and is refused without one; one that needs `--force` is refused. "
    "Why:\n"
    "\n"
    "| Paths | Need | Because |\n"
    "|---|---|---|\n";

std::string cautions()
{
    std::string text;
    for (const auto& row : Module::BMCConfig::cautionRows()) {
        const std::string key = row.key, use = key.starts_with("SET") ? "set " : "get ";
        text += "| " + code(use + key.substr(key.find('/') + 1) + "...") + " | " +
                (row.need == Need::nothing ? "nothing" : code(flagOf(row.need))) + " | " + row.effect + " |\n";
    }
    return text + "| all others that need `--force` | `--force` | only the manufacturer knows the effect |\n";
}

std::string page()
{
    std::map<std::string, Line> lines;
    for (const Entry& entry : Module::BMCConfig::entries())
        addTo(lines[entry.path], entry);
    std::string text = pageHead + cautions(), area;
    for (const auto& [path, line] : lines) {
        if (const std::string next = areaOf(path); next != area) {
            area = next;
            text += "\n## " + code(area) + "\n\n| Path | Gives | Takes | Subscripts | Needs |\n|---|---|---|---|---|\n";
        }
        text += textOf(line);
    }
    return text;
}

/// The members of an array as the machine has them, "/BMC/USER[1]".
std::vector<std::string> members(Session& session, const std::string& array)
{
    const std::string listing = array == "/BMC/SENSOR" ? array + "/DISPLAY" : array;
    std::vector<std::string> found = childrenOf(session.ask(listing + "/@children"), listing);
    std::erase_if(found, [&](const std::string& member) { return !member.starts_with(array + "["); });
    return found;
}

/// The tokens that may follow `parent`, which ends in a slash, each with one if more may follow: "LAN[]/".
std::set<std::string> tokensBelow(const std::string& parent, bool writes)
{
    std::set<std::string> tokens;
    for (const Entry& entry : Module::BMCConfig::entries())
        if (entry.path.starts_with(parent) && entry.writes == writes && entry.path.find('@') == std::string::npos)
            tokens.insert(entry.path.substr(parent.size(), entry.path.find('/', parent.size()) + 1 - parent.size()));
    return tokens;
}

/// What may stand for `word`, which is not all of a path yet: one token more, as a shell completes the names of files;
/// "LAN[" for an array, and its members once the bracket is there.
std::vector<std::string> completions(Session& session, const std::string& word, bool writes)
{
    const std::size_t at = word.rfind('/') + 1;
    const std::string known = word.substr(0, at), begun = word.substr(at);
    if (begun.find('[') != std::string::npos && !begun.ends_with(']'))
        return members(session, word.substr(0, word.rfind('[')));
    std::vector<std::string> found;
    for (const std::string& token : tokensBelow(emptied(known), writes))
        if (begun.ends_with(']') && token.starts_with(emptied(begun)))
            found.push_back(word + token.substr(emptied(begun).size()));
        else if (token.starts_with(begun))
            found.push_back(known + token.substr(0, token.find(']')));
    return found;
}

} // namespace

int runList(const Options& options)
{
    Session session(options);
    if (options.markdown) {
        session.say(page());
        return succeeded;
    }
    session.answer.tables = {listBelow(options.words.empty() ? "" : emptied(options.words.front()))};
    if (!options.words.empty() && session.answer.tables.front().rows.empty())
        session.fail({options.words.front(), 0, "no path begins so", {}});
    return session.finish();
}

int runComplete(const Options& options)
{
    Session session(options);
    const std::string& word = options.words.back();
    const std::vector<std::string> found = completions(session, word, options.words.front() == "set");
    for (const std::string& path : std::set<std::string>(found.begin(), found.end()))
        if (path.starts_with(word))
            session.say(path + "\n");
    return succeeded;
}

} // namespace hwquery
