#include "modules/bmc/catalogue/GuideForms.hpp"

#include "common/Util.hpp"
#include "modules/bmc/engine/Opcodes.hpp"

#include <algorithm>
#include <map>
#include <set>

namespace Module::BMCConfig {

namespace {

using Texts = std::vector<std::string>;
using Words = std::set<std::string>;

constexpr char anyText[] = "text", bytes[] = "hexadecimal bytes", oneByte[] = "hexadecimal byte", number[] = "number";

bool isSymbol(const std::string& text)
{
    return text.size() > 1 && text.front() == '$';
}

/// "A, B or C".
std::string listed(const Words& words)
{
    std::string text;
    std::size_t left = words.size();
    for (const std::string& word : words) {
        text += word;
        --left;
        text += left > 1 ? ", " : left == 1 ? " or " : "";
    }
    return text;
}

bool isCall(Opcode opcode)
{
    return opcode == Opcode::Template || opcode == Opcode::Template_with_Catch;
}

/// Follows one value of a caller through a script.
class ValueTrail {
public:
    ValueTrail(const Stores& stores_, const std::string& key, const std::string& symbol) : stores(stores_)
    {
        names.insert(symbol);
        follow(key);
    }

    std::string form() const
    {
        Words all = words;
        all.insert(compared.begin(), compared.end());
        if (!shape.empty())
            all.insert(count.empty() ? shape : count == "1" ? oneByte : count + " " + shape);
        if (!all.empty())
            return listed(all);
        return isUsed ? anyText : "";
    }

private:
    void follow(const std::string& key)
    {
        const auto found = stores.templates.find(key);
        if (found == stores.templates.end() || !visited.insert(key).second)
            return;
        for (const Function& step : *found->second) {
            if (isCall(static_cast<Opcode>(step.opcode)))
                follow(step.arguments.values.front());
            look(static_cast<Opcode>(step.opcode), step.arguments.values);
        }
    }

    bool isIt(const Texts& operands, std::size_t at) const
    {
        return at < operands.size() && names.contains(operands[at]);
    }

    /// The first test says most; what follows it is made of the value.
    void is(const std::string& what)
    {
        isUsed = true;
        if (shape.empty() && words.empty())
            shape = what;
    }

    void look(Opcode opcode, const Texts& operands)
    {
        if (opcode == Opcode::If || opcode == Opcode::While)
            return lookAtTest(operands);
        if (opcode == Opcode::IPMI || opcode == Opcode::IPMI_Without_Throw)
            return lookAtPacket(operands.front());
        if (!isIt(operands, 0))
            return;
        switch (opcode) {
        case Opcode::LookupTable:
            return addWords(operands[1]);
        case Opcode::Assert:
            return is(operands[1] == "RANGE_CHECK" ? operands[2] + " to " + operands[3]
                                                   : "text of at most " + operands[2] + " characters");
        case Opcode::Split:
            return is(operands[1] == "."                           ? "IPv4 address"
                      : operands[1].find(',') == std::string::npos ? anyText
                                                                   : bytes);
        case Opcode::Map:
            return lookAtFunction(operands[1]);
        case Opcode::Copy:
            isUsed = true;
            names.insert(operands[1]);
            return;
        case Opcode::Size:
        case Opcode::String_Length:
            isCounted = true;
            return;
        default:
            isUsed = true;
        }
    }

    void lookAtFunction(const std::string& function)
    {
        const std::map<std::string, const char*> known = {{"VALIDATE_MAC", "MAC address"},
                                                          {"VALIDATE_IPV6", "IPv6 address"},
                                                          {"DEC2HEX", number},
                                                          {"STR2HEX", anyText},
                                                          {"HEX2DEC", "hexadecimal number"}};
        if (const auto row = known.find(function); row != known.end())
            is(row->second);
    }

    void lookAtTest(const Texts& operands)
    {
        for (std::size_t at = 0; at + 2 < operands.size(); at += 4) {
            if (isIt(operands, at) && words.empty() && shape.empty() && isWord(operands[at + 2]))
                compared.insert(operands[at + 2]);
            if (isCounted && operands[at] == "$SIZE" && operands[at + 1] == "!=" && shape == bytes && count.empty())
                count = operands[at + 2];
        }
        isCounted = isCounted && shape == bytes;
    }

    /// What stands in a request as it came is bytes.
    void lookAtPacket(const std::string& name)
    {
        const auto packet = stores.packets.find(name);
        if (packet != stores.packets.end() &&
            std::ranges::find_first_of(packet->second.values, names) != packet->second.values.end())
            is(bytes);
    }

    static bool isWord(const std::string& text)
    {
        return text != "ERROR" && text != "FAILURE" && text.find_first_not_of("0123456789") != std::string::npos;
    }

    void addWords(const std::string& name)
    {
        isUsed = true;
        const auto table = stores.tables.find(name);
        if (table == stores.tables.end() || !shape.empty())
            return;
        for (const auto& [from, to] : table->second)
            words.insert(from);
    }

    const Stores& stores;
    std::set<std::string> visited;
    Words names; ///< under which the value goes
    Words words, compared;
    std::string shape, count;
    bool isUsed = false, isCounted = false;
};

/// Follows what a script answers with back to how it was made.
class AnswerTrail {
public:
    AnswerTrail(const Stores& stores_, const std::string& key) : stores(stores_) { follow(key); }

    std::string form() const { return answers.empty() ? bytes : listed(answers); }

private:
    void follow(const std::string& key)
    {
        const auto found = stores.templates.find(key);
        if (found == stores.templates.end() || !visited.insert(key).second)
            return;
        for (const Function& step : *found->second)
            look(static_cast<Opcode>(step.opcode), step.arguments.values);
    }

    void look(Opcode opcode, const Texts& operands)
    {
        if (opcode == Opcode::If || opcode == Opcode::While || opcode == Opcode::For) {
            ++depth;
        } else if (opcode == Opcode::End) {
            --depth;
        } else if (opcode == Opcode::Return) {
            const Words& made = forms[operands.front()];
            answers.insert(made.begin(), made.end());
        } else if (isCall(opcode)) {
            write("$RESULT", AnswerTrail(stores, operands.front()).answers);
        } else if (operands.size() > 1) {
            write(operands.back(), made(opcode, operands));
        }
    }

    /// Within a block what was there before may stand.
    void write(const std::string& symbol, Words form)
    {
        form.erase("");
        if (depth > 0)
            form.merge(forms[symbol]);
        forms[symbol] = std::move(form);
    }

    Words made(Opcode opcode, const Texts& operands)
    {
        switch (opcode) {
        case Opcode::LookupTable:
            return wordsOf(operands[1]);
        case Opcode::Copy:
            return isSymbol(operands[0]) ? forms[operands[0]] : Words{operands[0] == ":NULL" ? "" : operands[0]};
        case Opcode::Map:
            return {operands[1] == "HEX2DEC" ? number : operands[1] == "HEX2STR" ? anyText : bytes};
        case Opcode::Join:
            return {joined(operands)};
        case Opcode::Append:
            return {"the members of the array"};
        case Opcode::FormatString:
            return {anyText};
        case Opcode::IPMIResponse:
        case Opcode::IPMI:
        case Opcode::IPMI_Without_Throw:
        case Opcode::Exclude:
            return {bytes};
        default:
            return forms[operands.front()];
        }
    }

    static std::string joined(const Texts& operands)
    {
        const std::string& separator = operands[1];
        if (separator == ".")
            return "IPv4 address";
        if (separator == ":")
            return operands[2] == "2" ? "IPv6 address" : "MAC address";
        return separator == ";" ? "NAME=VALUE;..." : bytes;
    }

    Words wordsOf(const std::string& name) const
    {
        Words words;
        if (const auto table = stores.tables.find(name); table != stores.tables.end())
            for (const auto& [from, to] : table->second)
                words.insert(to);
        return words;
    }

    const Stores& stores;
    std::set<std::string> visited;
    std::map<std::string, Words> forms; ///< of each symbol, as it was written last
    Words answers;
    int depth = 0;
};

/// The bounds that a script sets a subscript, " 1 to 14"; empty without any.
std::string boundsOf(const Stores& stores, const std::string& key, const std::string& symbol)
{
    const auto found = stores.templates.find(key);
    if (found == stores.templates.end())
        return {};
    for (const Function& step : *found->second) {
        const Texts& operands = step.arguments.values;
        const auto opcode = static_cast<Opcode>(step.opcode);
        if (opcode == Opcode::Assert && operands[0] == symbol)
            return " " + operands[2] + " to " + operands[3];
        if (opcode == Opcode::Template && operands.front() != key)
            if (std::string bounds = boundsOf(stores, operands.front(), symbol); !bounds.empty())
                return bounds;
    }
    return {};
}

} // namespace

std::string formOfValue(const Stores& stores, const std::string& key, const std::string& symbol)
{
    return ValueTrail(stores, key, symbol).form();
}

std::string formOfAnswer(const Stores& stores, const std::string& key)
{
    return AnswerTrail(stores, key).form();
}

std::vector<std::string> subscriptsOf(const Stores& stores, const std::string& key)
{
    Texts found;
    for (const std::string& token : Util::split(key, "/"))
        if (token.ends_with("[]")) {
            const std::string name = token.substr(0, token.size() - 2);
            found.push_back(name + boundsOf(stores, key, "$" + name + "_NUMBER_IN_DEC"));
        }
    return found;
}

} // namespace Module::BMCConfig
