#include "common/ErrorMgr.hpp"
#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/catalogue/Guide.hpp"
#include "modules/bmc/engine/ThrowNames.hpp"
#include "tools/hwquery/Consent.hpp"
#include "tools/hwquery/Progress.hpp"
#include "tools/hwquery/Secret.hpp"
#include "tools/hwquery/Session.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

// get, set and raw: what is asked or told as the caller words it.

namespace hwquery {

namespace {

namespace catalogue = Module::BMCConfig;

int refuseUsage(const std::string& words)
{
    std::fprintf(stderr, "hwquery: %s\n", words.c_str());
    return wrongUsage;
}

/// The name under which a path's own value goes: its last token without a subscript.
std::string valueName(const std::string& path)
{
    std::vector<std::string> tokens = Util::split(path, "/");
    std::erase_if(tokens, [](const std::string& token) { return token.find('[') != std::string::npos; });
    return tokens.empty() ? std::string() : tokens.back();
}

/// "NAME=VALUE" of a name that the path takes.
bool isNamed(const std::string& word, const std::vector<std::string>& names)
{
    const std::size_t sign = word.find('=');
    return sign != std::string::npos && std::ranges::find(names, word.substr(0, sign)) != names.end();
}

void addNamed(SDK::Parameters& parameters, const std::string& word)
{
    const std::size_t sign = word.find('=');
    parameters[word.substr(0, sign)] = word.substr(sign + 1);
}

/// The values of a write: those by name, and all other words as the path's own one.
SDK::Parameters valuesOf(const std::string& path, std::span<const std::string> words, const Options& options)
{
    const std::vector<std::string> names = catalogue::parameterNames("SET:/" + path);
    SDK::Parameters parameters;
    std::vector<std::string> own;
    for (const std::string& word : words)
        if (isNamed(word, names))
            addNamed(parameters, word);
        else
            own.push_back(word);
    if (!own.empty() || parameters.empty())
        parameters[valueName(path)] = Util::join(own, " ");
    if (options.force)
        parameters["FORCE"] = "1";
    return parameters;
}

/// What a write takes, in words; empty if its value does not count.
std::string formsOf(const std::string& path)
{
    std::vector<std::string> forms;
    const std::vector<catalogue::Takes> taken = catalogue::takenBy("SET:/" + path);
    for (const catalogue::Takes& value : taken)
        if (!value.form.empty())
            forms.push_back((&value == &taken.front() ? "" : value.name + "=") + value.form);
    return Util::join(forms, "; ");
}

/// A number as C writes it, 0 to 255.
bool readByte(const std::string& word, std::string& token)
{
    char* end = nullptr;
    const unsigned long number = std::strtoul(word.c_str(), &end, 0);
    token = ipmi::hexByte(static_cast<std::uint8_t>(number));
    return !word.empty() && word[0] != '-' && *end == '\0' && number <= 0xFF;
}

/// "target netFn LUN command data..." in hexadecimal. Empty for words that are no bytes.
std::vector<std::string> requestOf(const Options& options)
{
    std::vector<std::string> words = {options.target, options.words[0], options.lun, options.words[1]};
    words.insert(words.end(), options.words.begin() + 2, options.words.end());
    std::vector<std::string> request(words.size());
    for (std::size_t at = 0; at < words.size(); ++at)
        if (!readByte(words[at], request[at]))
            return {};
    return request;
}

std::string wordsOfCompletion(const std::string& code)
{
    return ErrorManager::ErrorMgr::GetInstance()->Get(catalogue::throwCode(catalogue::completionName(code)));
}

void addReply(Session& session, const std::string& path, const ResultMap& nodes)
{
    std::vector<std::string> bytes = Util::split(valueOf(nodes, path), " ");
    if (bytes.empty())
        return;
    const unsigned code = static_cast<unsigned>(std::strtoul(bytes.front().c_str(), nullptr, 10));
    if (code != 0)
        session.fail({"raw", static_cast<unsigned>(catalogue::throwCode(catalogue::completionName(bytes.front()))),
                      "completion code " + ipmi::hexByte(static_cast<std::uint8_t>(code)) + "h",
                      wordsOfCompletion(bytes.front())});
    bytes.erase(bytes.begin());
    if (bytes.empty())
        return;
    for (std::string& byte : bytes)
        byte.insert(0, byte.size() < 2 ? "0" : "");
    session.answer.nodes->push_back({{"raw", {NODE_LEAF, std::move(bytes), {}, 0}}});
}

/// A password's bytes are as good as the password.
bool holdsSecret(const std::vector<std::string>& request)
{
    constexpr std::size_t bytesOfSwitch = 6; // target, network function, LUN, command, user, operation
    return request[1] == "06" && request[3] == "47" && request.size() > bytesOfSwitch;
}

/// The words of the line that standard input gives for "-".
void takeFromInput(std::vector<std::string>& words)
{
    std::string line;
    std::getline(std::cin, line);
    words.pop_back();
    for (std::string& word : Util::split(line, " "))
        words.push_back(std::move(word));
}

} // namespace

int runGet(const Options& options)
{
    std::vector<std::string> paths;
    SDK::Parameters parameters;
    for (const std::string& word : options.words)
        if (word.starts_with('/') && word.find('=') == std::string::npos)
            paths.push_back(word);
        else if (word.find('=') != std::string::npos)
            addNamed(parameters, word);
        else
            return refuseUsage("a path begins with a slash, a parameter is NAME=VALUE: " + word);
    if (!options.locale.empty())
        parameters["LOCALE"] = options.locale;
    for (const std::string& path : paths)
        if (!mayGoOn("GET:/" + path, path, options))
            return refused;
    Session session(options);
    session.answer.nodes.emplace();
    for (const std::string& path : paths) {
        const Progress progress(path);
        if (auto nodes = session.get(path, parameters))
            session.answer.nodes->push_back(std::move(*nodes));
    }
    return session.finish();
}

int runSet(const Options& options)
{
    const std::string& path = options.words.front();
    std::vector<std::string> values(options.words.begin() + 1, options.words.end());
    if (isSecret(path)) {
        if (!values.empty())
            return refuseUsage("a password is not taken from the command line, where every user of the machine can see "
                               "it; use --password-file, standard input or the prompt");
        const std::optional<std::string> secret = readSecret(path, options.passwordFile);
        if (!secret)
            return refused;
        values = {*secret};
    } else if (values == std::vector<std::string>{"-"}) {
        takeFromInput(values);
    }
    if (const std::string missing = values.empty() ? formsOf(path) : ""; !missing.empty())
        return refuseUsage(path + " takes " + missing);
    if (!mayGoOn("SET:/" + path, path, options))
        return refused;
    Session session(options);
    session.answer.nodes.emplace();
    const Progress progress(path);
    session.set(path, valuesOf(path, values, options));
    return session.finish();
}

int runRaw(const Options& given)
{
    Options options = given;
    const bool fromInput = options.words.back() == "-";
    if (fromInput)
        takeFromInput(options.words);
    const std::vector<std::string> request = requestOf(options);
    if (request.empty())
        return refuseUsage("raw takes bytes as C writes them, 0x2f or 47: NETFN CMD [BYTES...]");
    if (holdsSecret(request) && !fromInput)
        return refuseUsage(
            "a password's bytes are not taken from the command line, where every user of the machine can "
            "see them; give them on standard input, with - in their place");
    if (!mayGoOn(catalogue::adviceForRaw(request[1], request[3]), "raw " + request[1] + " " + request[3], options))
        return refused;
    Session session(options);
    session.answer.nodes.emplace();
    const std::string path = "/BMC/IPMI/RAW_COMMAND";
    if (const auto nodes = session.get(path, {{"RAW_COMMAND", Util::join(request, " ")}}))
        addReply(session, path, *nodes);
    return session.finish();
}

} // namespace hwquery
