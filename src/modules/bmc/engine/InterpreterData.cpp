#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>
#include <utility>

// Instructions that move values, and take texts and lists apart or put them together.

namespace Module::BMCConfig {

namespace {

constexpr char emptyValue[] = ":NULL";
constexpr int mostPaddings = 512;
/// How many symbols Copy follows from name to name; a ring of names has no end.
constexpr int mostHops = 64;

using Texts = std::vector<std::string>;

bool namesSymbol(const Texts& list)
{
    return list.size() == 1 && list.front().starts_with('$');
}

} // namespace

int Interpreter::Evaluate_Copy(const Function& function)
{
    const Texts& operands = function.arguments.values;
    if (operands[0] == emptyValue) {
        store(operands[1], Symbol());
        return 0;
    }
    Symbol copy = get(operands[0]);
    for (int hops = 0; namesSymbol(copy.values); ++hops) {
        Texts named = value(copy.values.front()).values;
        if (named == copy.values)
            break;
        if (hops >= mostHops)
            refuseScript("symbols name one another without end");
        copy.values = std::move(named);
    }
    store(operands[1], std::move(copy));
    return 0;
}

int Interpreter::Evaluate_Assign(const Function& function)
{
    const Texts& operands = function.arguments.values;
    std::string text = getText(operands[0]);
    store(getText(operands[1]), Symbol(std::move(text)));
    return 0;
}

int Interpreter::Evaluate_Store(const Function& function)
{
    const Texts& operands = function.arguments.values;
    Symbol list(operands[0] == "STRING" ? NODE_LEAF : NODE_NONLEAF, {});
    for (auto operand = operands.begin(); operand != std::prev(operands.end()); ++operand)
        list.values.push_back(getText(*operand));
    store(operands.back(), std::move(list));
    return 0;
}

int Interpreter::Evaluate_Append(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string& destination = operands.back();
    Symbol list(NODE_NONLEAF, test_for_symbol(destination) ? value(destination).values : Texts{});
    for (auto operand = operands.begin(); operand != std::prev(operands.end()); ++operand)
        list.values.push_back(getText(*operand));
    store(destination, std::move(list));
    table.mark_as_stinking_garbage(destination);
    return 0;
}

int Interpreter::Evaluate_Flatten(const Function& function)
{
    const Texts& operands = function.arguments.values;
    store(operands[1], Symbol(Util::join(value(operands[0]).values, "")));
    return 0;
}

int Interpreter::Evaluate_Size(const Function& function)
{
    const Texts& operands = function.arguments.values;
    store(operands[1], Symbol(std::to_string(value(operands[0]).size())));
    return 0;
}

int Interpreter::Evaluate_String_Length(const Function& function)
{
    const Texts& operands = function.arguments.values;
    store(operands[1], Symbol(std::to_string(value(operands[0]).text().size())));
    return 0;
}

int Interpreter::Evaluate_Read(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string index = getText(operands[1]);
    const bool range = index.find('-') != std::string::npos;
    long first = 0;
    std::string end = "SIZE";
    if (range) {
        const Texts bounds = Util::split(index, "-");
        if (bounds.size() < 2)
            refuseScript("a range without an end");
        first = toDecimal(getText(bounds[0]));
        end = getText(bounds[1]);
    }
    const Texts& list = value(operands[0]).values;
    const long size = static_cast<long>(list.size());
    long last = end == "SIZE" ? size : toDecimal(end);
    if (!range && !index.empty()) {
        first = toDecimal(index);
        if (first >= size)
            throwError(ERROR_READ_OUT_OF_RANGE, Util::join(list, " "), COMMAND_SET);
        last = first + 1;
    }
    first = std::max(first, 0L);
    last = std::min(last, size);
    Texts picked;
    if (first < last)
        picked.assign(list.begin() + first, list.begin() + last);
    store(operands[2], Symbol::ofList(std::move(picked)));
    return 0;
}

int Interpreter::Evaluate_Pad(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string filler = getText(operands[1]);
    const long count = toDecimal(getText(operands[2]));
    Texts list = value(operands[0]).values;
    for (int round = 0; round < mostPaddings && static_cast<long>(list.size()) < count; ++round)
        list.push_back(filler);
    store(operands[3], Symbol::ofList(std::move(list)));
    return 0;
}

int Interpreter::Evaluate_Prepend(const Function& function)
{
    const Texts& operands = function.arguments.values;
    value(operands[1]); // read, but the fill is always "0"
    const long width = toDecimal(getText(operands[2]));
    Texts list = value(operands[0]).values;
    for (std::string& text : list) {
        const long length = static_cast<long>(text.size());
        if (length < width)
            text.insert(0, static_cast<std::size_t>(std::min<long>(width - length, mostPaddings)), '0');
    }
    store(operands[3], Symbol::ofList(std::move(list)));
    return 0;
}

int Interpreter::Evaluate_Join(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string separator = separatorText(getText(operands[1]));
    const long group = operands.size() < 4 ? 1 : std::strtol(getText(operands[2]).c_str(), nullptr, 16);
    const Texts& list = value(operands[0]).values;
    if (list.empty() || group > static_cast<long>(list.size())) {
        store(operands.back(), Symbol(""));
        return 0;
    }
    if (group < 1)
        refuseScript("a join in groups of nothing");
    store(operands.back(), Symbol(joinGroups(list, separator, group)));
    return 0;
}

int Interpreter::Evaluate_Split(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string text = getText(operands[0]);
    if (text.empty())
        throwError(ERROR_INVALID_DATAVAL, "", COMMAND_UNKNOWN);
    store(operands[2], Symbol::ofList(Util::split(text, separatorText(getText(operands[1])))));
    return 0;
}

int Interpreter::Evaluate_FormatString(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::size_t parts = operands.size() - 1;
    std::string text;
    for (std::size_t at = 0; at < parts; ++at) {
        const Symbol part = get(operands[at]);
        if (part.type == NODE_LEAF) {
            text += part.text();
            continue;
        }
        if (++at == parts)
            refuseScript("a list without a separator");
        text += joinGroups(part.values, separatorText(getText(operands[at])), 1);
    }
    store(operands.back(), Symbol(std::move(text)));
    return 0;
}

int Interpreter::Evaluate_Filter(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const Texts fields = Util::split(value(operands[0]).text(), " ");
    store(operands[2], Symbol::ofList(pickFields(fields, filters.get(getText(operands[1])).values)));
    return 0;
}

int Interpreter::Evaluate_Exclude(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const Symbol& filter = filters.get(getText(operands[1]));
    Texts fields = value(operands[0]).values;
    std::set<unsigned long> places;
    for (const std::string& index : filter.values)
        places.insert(std::strtoul(index.c_str(), nullptr, 10));
    // from the back, so that the places in front stay true
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        if (*place < fields.size())
            fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(*place));
    store(operands[2], Symbol::ofList(std::move(fields)));
    return 0;
}

} // namespace Module::BMCConfig
