#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <chrono>
#include <cstdlib>
#include <limits>
#include <utility>

// Instructions that compute: translation, conversion, arithmetic, checks.

namespace Module::BMCConfig {

namespace {

using Texts = std::vector<std::string>;

constexpr unsigned long shiftMask = 63;
constexpr int firstPrintable = 32;
constexpr int lastPrintable = 126;

int toInt(const std::string& text, int base)
{
    return static_cast<int>(std::strtol(text.c_str(), nullptr, base));
}

unsigned long toBits(const std::string& text)
{
    return std::strtoul(text.c_str(), nullptr, 16);
}

[[noreturn]] void refuseValue(const char* function)
{
    throwError(ERROR_INVALID_DATAVAL, function, COMMAND_UNKNOWN);
}

std::string mapHexToDecimal(const std::string& text, const std::string&)
{
    if (!test_for_hex(text))
        refuseValue("HEX2DEC");
    return hex_to_dec(text);
}

std::string mapDecimalToHex(const std::string& text, const std::string&)
{
    if (!check_if_number(text))
        refuseValue("DEC2HEX");
    return dec_to_hex(text);
}

std::string mapHexToString(const std::string& text, const std::string&)
{
    const unsigned long code = toBits(text);
    return code >= firstPrintable && code <= lastPrintable + 1 ? std::string(1, static_cast<char>(code))
                                                               : std::string();
}

std::string mapMask(const std::string& text, const std::string& mask)
{
    return hexText(static_cast<unsigned>(toBits(text) & toBits(mask)));
}

std::string mapBitOr(const std::string& text, const std::string& bits)
{
    return Util::dec_to_hex_string(static_cast<unsigned>(toBits(text) | toBits(bits)));
}

std::string mapLeftShift(const std::string& text, const std::string& count)
{
    return Util::dec_to_hex_string(static_cast<unsigned>(toBits(text) << (toBits(count) & shiftMask)));
}

std::string mapRightShift(const std::string& text, const std::string& count)
{
    return Util::dec_to_hex_string(static_cast<unsigned>(toBits(text) >> (toBits(count) & shiftMask)));
}

std::string mapMac(const std::string& text, const std::string&)
{
    std::string normalised;
    return validate_mac(text, normalised) ? normalised : "FAILURE";
}

std::string mapIpv6(const std::string& text, const std::string&)
{
    std::string normalised;
    return validate_ipv6(text, normalised) ? normalised : "FAILURE";
}

struct MapFunction {
    const char* name;
    std::string (*apply)(const std::string& text, const std::string& argument);
};

constexpr MapFunction mapFunctions[] = {
    {"HEX2DEC", mapHexToDecimal},   {"DEC2HEX", mapDecimalToHex},
    {"HEX2STR", mapHexToString},    {"MASK", mapMask},
    {"BIT_OR", mapBitOr},           {"LEFT_SHIFT", mapLeftShift},
    {"RIGHT_SHIFT", mapRightShift}, {"VALIDATE_MAC", mapMac},
    {"VALIDATE_IPV6", mapIpv6},
};

/// The one function that makes many values of one.
Texts mapStringToHex(const std::string& text)
{
    Texts codes;
    for (const char c : text) {
        if (c < firstPrintable || c > lastPrintable)
            return {"ERROR"};
        codes.push_back(hexText(static_cast<unsigned char>(c)));
    }
    return codes;
}

Texts mapTexts(Texts texts, const std::string& function, const std::string& argument)
{
    if (function == "STR2HEX")
        return mapStringToHex(texts.front());
    for (const MapFunction& row : mapFunctions)
        if (function == row.name)
            for (std::string& text : texts)
                text = row.apply(text, argument);
    return texts;
}

/// Sums and products wrap around in `unsigned`, as the language's numbers do.
int sumOf(const Texts& numbers)
{
    unsigned sum = 0;
    for (const std::string& number : numbers)
        sum += static_cast<unsigned>(toInt(number, 16));
    return static_cast<int>(sum);
}

int productOf(const Texts& numbers)
{
    unsigned product = 1;
    for (const std::string& number : numbers)
        product *= static_cast<unsigned>(toInt(number, 10));
    return static_cast<int>(product);
}

bool inRange(const std::string& text, const std::string& low, const std::string& high)
{
    if (text.empty() || !check_if_number(text))
        return false;
    const long number = toDecimal(text);
    return number >= toDecimal(low) && number <= toDecimal(high);
}

} // namespace

int Interpreter::Evaluate_LookupTable(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string name = getText(operands[1]);
    const Table& words = tables.get(name);
    const auto found = words.find(Util::upcase(Util::join(value(operands[0]).values, "")));
    if (found != words.end() && !found->second.empty()) {
        store(operands[2], Symbol(found->second));
        return 0;
    }
    if (name.find("SET:") != std::string::npos)
        throwError(ERROR_INVALID_DATAVAL, "Table Lookup", COMMAND_SET);
    store(operands[2], Symbol("ERROR"));
    return 0;
}

int Interpreter::Evaluate_Map(const Function& function)
{
    const Texts& operands = function.arguments.values;
    Texts list = value(operands[0]).values;
    if (list.empty())
        throwError(ERROR_INVALID_DATAVAL, operands[0] + ": Symbol not Found", COMMAND_UNKNOWN);
    const std::string name = getText(operands[1]);
    const std::string argument = operands.size() > 3 ? getText(operands[2]) : std::string();
    store(operands.back(), Symbol::ofList(mapTexts(std::move(list), name, argument)));
    return 0;
}

int Interpreter::Evaluate_Mathematical(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string operation = getText(operands[0]);
    Texts numbers;
    for (std::size_t at = 1; at + 1 < operands.size(); ++at)
        numbers.push_back(getText(operands[at]));
    int result = 0;
    if (operation == "ADD")
        result = sumOf(numbers);
    else if (operation == "MULTIPLY")
        result = productOf(numbers);
    else if (operation == "DEVIDE" && !numbers.empty())
        result = quotientOf(numbers);
    store(operands.back(), Symbol(Util::int_to_string(result)));
    return 0;
}

int Interpreter::quotientOf(const Texts& numbers) const
{
    std::int64_t quotient = toInt(numbers.front(), 10);
    for (std::size_t at = 1; at < numbers.size(); ++at) {
        const int divisor = toInt(numbers[at], 10);
        if (divisor == 0)
            refuseScript("division by 0");
        quotient /= divisor;
    }
    return static_cast<int>(quotient);
}

int Interpreter::Evaluate_Increment(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const unsigned next = static_cast<unsigned>(toInt(getText(operands[0]), 16)) + 1;
    store(operands[1], Symbol(Util::int_to_string(static_cast<int>(next))));
    return 0;
}

int Interpreter::Evaluate_Expression(const Function& function)
{
    const Texts& operands = function.arguments.values;
    unsigned sum = static_cast<unsigned>(toInt(getText(operands[0]), 10));
    for (std::size_t at = 1; at + 2 < operands.size(); at += 2) {
        const std::string sign = getText(operands[at]);
        const unsigned number = static_cast<unsigned>(toInt(getText(operands[at + 1]), 10));
        if (sign == "+")
            sum += number;
        else if (sign == "-")
            sum -= number;
        else
            refuseScript("an expression of more than sums");
    }
    store(operands.back(), Symbol(Util::int_to_string(static_cast<int>(sum))));
    return 0;
}

int Interpreter::Evaluate_Assert(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string check = getText(operands[1]);
    if (check == "RANGE_CHECK") {
        if (operands.size() < 5)
            refuseScript("a range check without its range");
        const std::string low = getText(operands[2]);
        const std::string high = getText(operands[3]);
        const Texts list = value(operands[0]).values;
        // an unset value is no number either
        bool passes = !list.empty();
        for (const std::string& text : list)
            passes = passes && inRange(text, low, high);
        if (!passes)
            throwError(ERROR_RANGE_CHECK, "ASSERT", COMMAND_SET);
    } else if (check == "STR_SIZE_CHECK") {
        const long limit = toDecimal(getText(operands[2]));
        if (static_cast<long>(value(operands[0]).text().size()) > limit)
            throwError(ERROR_STRING_LENGTH_CHECK, "ASSERT", COMMAND_SET);
    }
    return 0;
}

int Interpreter::Evaluate_Sleep(const Function& function)
{
    const long seconds = Util::string_to_long(getText(function.arguments.values[0]), 0);
    HW_LOG(LOGGER::Category::First, "Sleeping for %ld second.", seconds);
    if (seconds > 0 && seconds <= longestSleepSeconds)
        current<Clock>().sleepFor(std::chrono::seconds(seconds));
    return 0;
}

int Interpreter::Evaluate_Print(const Function& function)
{
    value(function.arguments.values[0]).print();
    return 0;
}

} // namespace Module::BMCConfig
