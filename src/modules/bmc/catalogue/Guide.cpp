#include "modules/bmc/catalogue/Guide.hpp"

#include "common/Util.hpp"
#include "modules/bmc/catalogue/Catalogue.hpp"
#include "modules/bmc/catalogue/Commands.hpp"
#include "modules/bmc/catalogue/GuideForms.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace Module::BMCConfig {

namespace {

constexpr char unknownEffect[] = "only the manufacturer knows its effect";
constexpr char forceSymbol[] = "$FORCE";

bool isWrite(std::string_view key)
{
    return key.starts_with("SET:");
}

const Stores& stores()
{
    constexpr bool withLan = true;
    static const std::shared_ptr<const Stores> all = catalogue(wholeCatalogue, withLan);
    return *all;
}

std::string keyOf(const std::string& query)
{
    std::string key;
    bool inside = false;
    for (const char c : query) {
        inside = inside && c != ']';
        if (!inside)
            key += c;
        inside = inside || c == '[';
    }
    return key;
}

const Script* scriptOf(const std::string& key)
{
    const auto found = stores().templates.find(key);
    return found == stores().templates.end() ? nullptr : found->second.get();
}

bool requiresForce(const Script& script)
{
    return std::ranges::any_of(script, [](const Function& step) {
        return static_cast<Opcode>(step.opcode) == Opcode::String_Length &&
               step.arguments.values.front() == forceSymbol;
    });
}

/// The number of a constant of the catalogue, two hexadecimal digits.
std::string numberOf(const std::string& name)
{
    const auto found = stores().symbols.find(name);
    return found == stores().symbols.end() ? name : found->second.text();
}

/// Whether a script sends a request of these two numbers in a packet of its own kind: what a write reads first does not
/// count.
bool sends(const std::string& key, const Script& script, const std::string& netFunction, const std::string& command)
{
    constexpr std::size_t netFunctionAt = 1, commandAt = 3;
    return std::ranges::any_of(script, [&](const Function& step) {
        const auto opcode = static_cast<Opcode>(step.opcode);
        if (opcode != Opcode::IPMI && opcode != Opcode::IPMI_Without_Throw)
            return false;
        const std::string& name = step.arguments.values.front();
        const auto packet = stores().packets.find(name);
        return packet != stores().packets.end() && isWrite(name) == isWrite(key) && packet->second.size() > commandAt &&
               numberOf(packet->second.values[netFunctionAt]) == netFunction &&
               numberOf(packet->second.values[commandAt]) == command;
    });
}

/// The manufacturer's own network functions (IPMI 2.0, 5.1), and that of firmware, whose commands are not public.
bool isOfManufacturer(unsigned long netFunction)
{
    return netFunction == 0x08 || netFunction == 0x2E || netFunction >= 0x30;
}

/// How the names of commands begin that only read.
constexpr const char* readers[] = {"GET_",          "READ_", "RESOLVE_", "EXTENDED_SEL_", "SMBIOS_REGION_STATUS",
                                   "$/SDR/CFG_READ"};

bool onlyReads(const std::string& netFunction, const std::string& command)
{
    return std::ranges::any_of(commands(), [&](const Command& row) {
        const std::string name = row.name;
        return std::ranges::any_of(readers, [&](const char* begin) { return name.starts_with(begin); }) &&
               numberOf(std::string("$/IPMI/") + row.netFunction) == netFunction &&
               numberOf(name.starts_with('$') ? name : "$/IPMI/" + name) == command;
    });
}

std::vector<std::string> namesOf(const char* names)
{
    return Util::split(names, " ");
}

void describe(Entry& entry, const Script& script)
{
    entry.subscripts = subscriptsOf(stores(), entry.key);
    if (static_cast<Opcode>(script.front().opcode) == Opcode::Append && script.size() == 1) {
        entry.children = script.front().arguments.values;
        entry.children.pop_back();
        return;
    }
    if (!entry.writes)
        entry.gives = formOfAnswer(stores(), entry.key);
    entry.takes = takenBy(entry.key);
}

Entry entryOf(const std::string& key, const Script& script)
{
    Entry entry;
    entry.key = key;
    entry.path = key.substr(key.find('/') + 1);
    entry.writes = isWrite(key);
    entry.advice = adviceFor(key);
    describe(entry, script);
    return entry;
}

Entry entryOf(const SubjectRow& row)
{
    Entry entry;
    entry.path = row.path;
    entry.key = "GET:/" + entry.path;
    entry.gives = row.gives;
    entry.subscripts = subscriptsOf(stores(), entry.key);
    for (const std::string& name : namesOf(row.parameters))
        entry.takes.push_back({name, "text"});
    return entry;
}

} // namespace

Advice adviceFor(const std::string& query)
{
    const std::string key = keyOf(query);
    Advice advice;
    std::size_t longest = 0;
    for (const CautionRow& row : cautionRows())
        if (const std::string_view begin = row.key; key.starts_with(begin) && begin.size() >= longest) {
            advice = {row.need, row.effect};
            longest = begin.size();
        }
    const Script* const script = scriptOf(key);
    if (script && requiresForce(*script))
        advice = {Need::force, advice.effect.empty() ? unknownEffect : advice.effect};
    return advice;
}

Advice adviceForRaw(const std::string& netFunction, const std::string& command)
{
    if (onlyReads(netFunction, command))
        return {};
    if (isOfManufacturer(std::strtoul(netFunction.c_str(), nullptr, 16)))
        return {Need::force, unknownEffect};
    for (const auto& [key, script] : stores().templates)
        if (isWrite(key) && sends(key, *script, netFunction, command))
            if (Advice advice = adviceFor(key); advice.need != Need::nothing)
                return advice;
    return {};
}

std::vector<std::string> parameterNames(const std::string& query)
{
    const std::string key = keyOf(query);
    std::vector<std::string> names;
    if (isWrite(key)) {
        const std::vector<std::string> tokens = Util::split(key.substr(key.find('/') + 1), "/");
        const auto plain = std::find_if(tokens.rbegin(), tokens.rend(),
                                        [](const std::string& token) { return token.find('[') == std::string::npos; });
        names.push_back(*plain);
    }
    const auto row = std::ranges::find(parameterRows(), key, &ParameterRow::key);
    const std::vector<std::string> more =
        row == parameterRows().end() ? std::vector<std::string>() : namesOf(row->names);
    names.insert(names.end(), more.begin(), more.end());
    return names;
}

std::vector<Takes> takenBy(const std::string& query)
{
    const std::string key = keyOf(query);
    std::vector<Takes> values;
    for (const std::string& name : parameterNames(key))
        values.push_back({name, formOfValue(stores(), key, "$" + name)});
    return values;
}

std::vector<Entry> entries()
{
    std::vector<Entry> all;
    for (const auto& [key, script] : stores().templates)
        if (isWrite(key) ||
            std::ranges::find(subjectRows(), key.substr(key.find('/') + 1), &SubjectRow::path) == subjectRows().end())
            all.push_back(entryOf(key, *script));
    for (const SubjectRow& row : subjectRows())
        all.push_back(entryOf(row));
    std::ranges::sort(all, {}, [](const Entry& entry) { return std::pair(entry.path, entry.writes); });
    return all;
}

} // namespace Module::BMCConfig
