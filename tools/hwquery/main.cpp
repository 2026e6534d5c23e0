#include "tools/hwquery/Options.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace {

using hwquery::Options;

constexpr char about[] =
    "Asks and sets what a server's management controller and firmware tell, by path: /BMC/INFO/VERSION.\n"
    "Answers go to standard output, failures with their code and words to standard error.\n";
constexpr char after[] =
    "The path / lists where to begin; one that ends in /@children lists a branch without visiting it.\n"
    "hwquery /PATH is the same as hwquery get /PATH.\n\n"
    "Exit status: 0 all was answered; 1 a query failed or had nothing in its answer, or something is not as it has to\n"
    "be; 2 wrong usage; 3 not done, because nobody agreed to it, --force was not given, or there was no password.\n";

constexpr char aboutJson[] =
    "print one JSON object: \"nodes\" by path with \"values\" or \"children\", or a list of\nobjects under the table's "
    "name; and \"failures\" with path, code, words and detail";
constexpr char aboutYes[] = "do what can cut off a remote administrator, or lose data, without asking";
constexpr char aboutForce[] = "send a write whose effect only the manufacturer knows; it can harm the board";
constexpr char aboutPassword[] = "the first line of this file is the password (- is standard input); without it a\n"
                                 "password is asked for at the terminal, unseen, or read from standard input";
constexpr char aboutLocale[] = "the language of the event log's records, such as de_DE; English without it";

struct Words {
    const char* name;
    const char* about;
    int fewest, most;
};

struct Command {
    const char* name;
    const char* about;
    int (*run)(const Options&);
    std::initializer_list<Words> words = {};
    bool asks = false, forces = false; ///< takes --yes, --force
};

constexpr int any = 1 << 20;
const Command commands[] = {
    {"get",
     "ask for paths: a line \"path = values\" for a leaf, \"path: children\" for a branch",
     hwquery::runGet,
     {{"PATH", "paths, and NAME=VALUE for what they take", 1, any}},
     true,
     true},
    {"set",
     "set a path to a value, or to several values by name",
     hwquery::runSet,
     {{"PATH", "hwquery list PATH tells what it takes", 1, 1},
      {"VALUE", "a value or NAME=VALUE...; - reads a line of standard input", 0, any}},
     true,
     true},
    {"list",
     "the paths that can be asked and set, what they give and take, and what they need",
     hwquery::runList,
     {{"PREFIX", "the paths that begin so; all without it", 0, 1}}},
    {"raw",
     "send a request as it is; bytes as C writes them, 0x2f or 47",
     hwquery::runRaw,
     {{"NETFN", "network function", 1, 1},
      {"CMD", "command", 1, 1},
      {"BYTES", "data; - reads them from a line of standard input", 0, any}},
     true,
     true},
    {"sensors", "all sensors with their readings and thresholds", hwquery::runSensors},
    {"fru",
     "what a part says of itself: chassis, board, product",
     hwquery::runFru,
     {{"DEVICE", "0 unless given", 0, 1}}},
    {"inventory", "system, processors and memory", hwquery::runInventory},
    {"status", "how the agent is: why nothing is seen, and what to do", hwquery::runStatus},
    {"test-trap",
     "have the agent send a trap that says it is a test",
     hwquery::runTestTrap,
     {{"NAME", "of the trap in HWAGENT-MIB; trapSysReconfig unless given", 0, 1}}},
    {"check-config",
     "what is odd about hwagent.conf, by file and line",
     hwquery::runCheckConfig,
     {{"FILE", "the installed one unless given", 0, 1}}},
};
const Command selCommands[] = {
    {"list", "the records in words", hwquery::runSelList},
    {"info", "how full it is, and what it can do", hwquery::runSelInfo},
    {"clear", "empty it", hwquery::runSelClear, {}, true},
};

/// For the shell.
const Command completion = {"complete", "", hwquery::runComplete, {{"COMMAND", "", 1, 1}, {"WORD", "", 1, 1}}};

/// "PATH..." where CLI11 would write "PATH(1x)".
class Help : public CLI::Formatter {
public:
    std::string make_option_usage(const CLI::Option* option) const override
    {
        const std::string words = option->get_name(true) + (option->get_expected_max() > 1 ? "..." : "");
        return option->get_required() ? words : "[" + words + "]";
    }
};

class Line {
public:
    Line()
    {
        app.require_subcommand(1);
        app.footer(after);
        app.formatter(std::make_shared<Help>());
        for (const Command& command : commands)
            add(app, command);
        CLI::App* const sel = app.add_subcommand("sel", "the event log; its records unless told otherwise");
        sel->require_subcommand(0, 1);
        sel->footer("");
        sel->final_callback([this] { run = run ? run : hwquery::runSelList; });
        for (const Command& command : selCommands)
            add(*sel, command);
        add(app, completion);
        app.get_subcommand(completion.name)->group("");
        sel->add_flag("--json", options.json, aboutJson);
    }

    int parseAndRun(int argc, char** argv)
    {
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? hwquery::succeeded : hwquery::wrongUsage;
        }
        return run(options);
    }

private:
    void add(CLI::App& parent, const Command& command)
    {
        CLI::App* const added = parent.add_subcommand(command.name, command.about);
        added->footer("");
        added->callback([this, &command] { run = command.run; });
        added->add_flag("--json", options.json, aboutJson);
        for (const Words& words : command.words)
            addWords(*added, words);
        if (command.asks)
            added->add_flag("--yes", options.yes, aboutYes);
        if (command.forces)
            added->add_flag("--force", options.force, aboutForce);
        addOwn(*added, command);
    }

    void addWords(CLI::App& added, const Words& words)
    {
        std::vector<std::string>& all = options.words;
        CLI::Option* const option =
            words.most > 1
                ? added.add_option_function<std::vector<std::string>>(
                      words.name, [&all](const auto& given) { all.insert(all.end(), given.begin(), given.end()); },
                      words.about)
                : added.add_option_function<std::string>(
                      words.name, [&all](const std::string& given) { all.push_back(given); }, words.about);
        option->type_name("")->required(words.fewest > 0);
        if (words.most > 1)
            option->expected(words.fewest, words.most);
    }

    /// What only one of them takes.
    void addOwn(CLI::App& added, const Command& command)
    {
        if (command.run == hwquery::runGet || command.run == hwquery::runSelList)
            added.add_option("--locale", options.locale, aboutLocale)->option_text("NAME");
        if (command.run == hwquery::runSet)
            added.add_option("--password-file", options.passwordFile, aboutPassword)->option_text("FILE");
        if (command.run == hwquery::runStatus) {
            added.add_option("--community", options.community, "with which the tree is asked for; public unless given")
                ->option_text("NAME");
            added
                .add_option("--snmp", options.snmp,
                            "options of snmpget in the place of the community: --snmp='-v3 ...'")
                ->option_text("OPTIONS");
            added.add_option("--agent", options.agent, "where snmpd is asked, 127.0.0.1 unless given")
                ->option_text("ADDRESS");
        }
        if (command.run == hwquery::runList)
            added.add_flag("--markdown", options.markdown, "as the page docs/queries.md");
        if (command.run == hwquery::runRaw) {
            added.add_option("--target", options.target, "the controller's address, 0x20 unless given")
                ->option_text("ADDRESS");
            added.add_option("--lun", options.lun, "0 unless given")->option_text("LUN");
        }
    }

    CLI::App app{about, "hwquery"};
    Options options;
    std::function<int(const Options&)> run;
};

} // namespace

int main(int argc, char** argv)
{
    std::vector<char*> words(argv, argv + argc);
    std::string get = "get";
    if (argc > 1 && *argv[1] == '/')
        words.insert(words.begin() + 1, get.data());
    return Line().parseAndRun(static_cast<int>(words.size()), words.data());
}
