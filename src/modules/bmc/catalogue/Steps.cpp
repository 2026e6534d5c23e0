#include "modules/bmc/catalogue/Steps.hpp"

#include "common/Util.hpp"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace Module::BMCConfig {

void Function::Print() const
{
    std::fflush(stdout);
}

namespace steps {

namespace {

/// Moves the parts to the end of `whole`, which is made large enough for `more` steps besides.
void append(Script& whole, Parts parts, std::size_t more)
{
    std::size_t count = whole.size() + more;
    for (const Part& part : parts)
        count += part.steps.size();
    whole.reserve(count);
    for (const Part& part : parts)
        std::ranges::move(part.steps, std::back_inserter(whole));
}

} // namespace

Script script(Parts parts)
{
    Script whole;
    append(whole, parts, 0);
    return whole;
}

std::vector<std::string> condition(std::string_view text)
{
    return Util::split(text, " ");
}

Steps makeStep(Opcode opcode, std::vector<std::string> operands)
{
    Steps step;
    step.push_back(Function{static_cast<std::uint32_t>(opcode), Symbol(NODE_LEAF, std::move(operands))});
    return step;
}

Steps makeBlock(Opcode opcode, std::vector<std::string> operands, Parts body)
{
    Steps block = makeStep(opcode, std::move(operands));
    append(block, body, 1);
    block.push_back(Function{static_cast<std::uint32_t>(Opcode::End), {}});
    return block;
}

Steps If(std::string_view test, Parts body)
{
    return makeBlock(Opcode::If, condition(test), body);
}

Steps For(std::string name, std::string first, std::string last, Parts body)
{
    return makeBlock(Opcode::For, {std::move(name), std::move(first), std::move(last)}, body);
}

Steps While(std::string_view test, Parts body)
{
    return makeBlock(Opcode::While, condition(test), body);
}

Steps returnText(const std::string& value)
{
    return script({Copy(value, "$RESULT"), Return("$RESULT")});
}

Steps send(const std::string& packet)
{
    return script({
        IPMI(packet, "$BUFFER"),
        IPMIResponse("$BUFFER", "GET://BMC/COMPLETION_CODE", "$COMPLETION_CODE"),
    });
}

Steps sendWithoutThrow(const std::string& packet)
{
    return script({
        IPMI_Without_Throw(packet, "$BUFFER"),
        IPMIResponse("$BUFFER", "GET://BMC/COMPLETION_CODE", "$COMPLETION_CODE"),
    });
}

Steps readField(const std::string& filter, const std::string& destination, const std::string& error)
{
    return script({
        IPMIResponse("$BUFFER", filter, destination),
        If(destination + " == ERROR", {Throw(error == "$COMPLETION_CODE" ? "IPMI_RESPONSE_ERROR" : error)}),
    });
}

Steps take(const std::string& symbol)
{
    return take(symbol.substr(symbol.rfind('/') + 1), symbol);
}

Steps take(const std::string& name, const std::string& symbol)
{
    return script({
        Size("$" + name, "$SIZE"),
        If("$SIZE != 0", {Copy("$" + name, symbol)}),
    });
}

Steps takeRequired(const std::string& symbol)
{
    return script({take(symbol), require(symbol)});
}

Steps refuse(const std::string& symbol)
{
    // Map refuses an empty list by the name of its source.
    return script({Copy(":NULL", symbol), Map(symbol, "MASK", "0", "$REFUSED")});
}

Steps require(const std::string& symbol)
{
    return script({String_Length(symbol, "$SIZE"), If("$SIZE == 0", {refuse(symbol)})});
}

Steps requireForce()
{
    return require("$FORCE");
}

Steps assertSubscript(const std::string& name, unsigned low, unsigned high)
{
    const std::string number = "$" + name + "_NUMBER", decimal = number + "_IN_DEC";
    return script({
        Map(number, "HEX2DEC", decimal),
        Assert(decimal, "RANGE_CHECK", std::to_string(low), std::to_string(high), "$ASSERT_VALUE"),
    });
}

Steps requireAddress(const std::string& symbol)
{
    return script({
        Map(symbol, "HEX2DEC", "$ADDRESS"),
        If("$ADDRESS > 255", {Throw("ERROR_CONTROLLER_NOT_PRESENT")}),
    });
}

Steps answerIfAbsent(const std::string& word)
{
    return If("$COMPLETION_CODE == RESPONSE_ERROR_INVALID_COMMAND", {returnText(word)});
}

Steps checkCode()
{
    return If("$COMPLETION_CODE != 0", {Throw("$COMPLETION_CODE")});
}

Steps sendAndCheck(const std::string& packet)
{
    return script({send(packet), checkCode()});
}

Steps readCount(const std::string& filter, const std::string& mask)
{
    return script({
        readField(filter, "$COUNT", "$COMPLETION_CODE"),
        Map("$COUNT", "MASK", mask, "$COUNT"),
        Map("$COUNT", "HEX2DEC", "$COUNT"),
    });
}

Steps joinData(const std::string& destination)
{
    return script({
        Split("$BUFFER", ":SPACE", destination),
        Exclude(destination, "GET://BMC/COMPLETION_CODE", destination),
        Join(destination, ":SPACE", destination),
    });
}

Steps returnData(const std::string& packet)
{
    return script({
        sendAndCheck(packet),
        joinData("$RESULT"),
        Return("$RESULT"),
    });
}

Steps returnBytes(unsigned first)
{
    return script({
        Split("$BUFFER", ":SPACE", "$FIELD"),
        Read("$FIELD", std::to_string(first) + "-SIZE", "$FIELD"),
        Size("$FIELD", "$SIZE"),
        If("$SIZE == 0", {Throw("IPMI_RESPONSE_ERROR")}),
        Join("$FIELD", ":SPACE", "$RESULT"),
        Return("$RESULT"),
    });
}

Steps returnNumber(const std::string& symbol)
{
    return script({
        Prepend(symbol, "0", "2", symbol),
        Flatten(symbol, symbol),
        Map(symbol, "HEX2DEC", "$RESULT"),
        Return("$RESULT"),
    });
}

Steps returnBcdVersion(const std::string& symbol)
{
    return script({
        Map(symbol, "MASK", "F", "$MAJOR"),
        Map(symbol, "RIGHT_SHIFT", "4", "$MINOR"),
        FormatString("$MAJOR", ".", "$MINOR", "$RESULT"),
        Return("$RESULT"),
    });
}

Steps waitFor(const std::string& query, const std::string& expected, const std::string& error)
{
    return script({
        Poll(query, expected, "5", "5", "$RESPONSE"),
        If("$RESPONSE != TRUE", {Throw(error)}),
    });
}

Steps returnMembers(const std::string& name, const std::string& first, const std::string& last)
{
    return script({
        Copy(":NULL", "$MEMBERS"),
        If(first + " <= " + last, {For("MEMBER", first, last,
                                       {
                                           Map("$MEMBER", "HEX2DEC", "$MEMBER_IN_DEC"),
                                           FormatString(name + "[", "$MEMBER_IN_DEC", "]", "$MEMBER_NAME"),
                                           Append("$MEMBER_NAME", "$MEMBERS"),
                                       })}),
        Return("$MEMBERS"),
    });
}

Steps sendOrThrow(const std::string& packet, const std::string& error)
{
    return script({
        send(packet),
        If("$COMPLETION_CODE == 0", {returnText("SUCCESS")}),
        Throw(error),
    });
}

Script branch(std::initializer_list<const char*> children)
{
    std::vector<std::string> operands(children.begin(), children.end());
    operands.emplace_back("$RESULT");
    return makeStep(Opcode::Append, std::move(operands));
}

} // namespace steps
} // namespace Module::BMCConfig
