#include "modules/bmc/catalogue/Steps.hpp"

#include "common/Util.hpp"

#include <cstdio>
#include <iterator>

namespace Module::BMCConfig {

void Function::Print() const
{
    std::fflush(stdout);
}

namespace steps {

Script script(std::initializer_list<Steps> parts)
{
    Script whole;
    for (const Steps& part : parts)
        whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

std::vector<std::string> condition(std::string_view text)
{
    return Util::split(text, " ");
}

Steps makeStep(Opcode opcode, std::vector<std::string> operands)
{
    return {Function{static_cast<std::uint32_t>(opcode), Symbol(NODE_LEAF, std::move(operands))}};
}

Steps makeBlock(Opcode opcode, std::vector<std::string> operands, std::initializer_list<Steps> body)
{
    Steps block = makeStep(opcode, std::move(operands));
    const Script inner = script(body);
    block.insert(block.end(), inner.begin(), inner.end());
    block.push_back(Function{static_cast<std::uint32_t>(Opcode::End), {}});
    return block;
}

Steps If(std::string_view test, std::initializer_list<Steps> body)
{
    return makeBlock(Opcode::If, condition(test), body);
}

Steps For(std::string name, std::string first, std::string last, std::initializer_list<Steps> body)
{
    return makeBlock(Opcode::For, {std::move(name), std::move(first), std::move(last)}, body);
}

Steps While(std::string_view test, std::initializer_list<Steps> body)
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

Steps require(const std::string& symbol)
{
    // Map refuses an empty list by the name of its source.
    return script({
        String_Length(symbol, "$SIZE"),
        If("$SIZE == 0", {Copy(":NULL", symbol)}),
        Map(symbol, "MASK", "0", "$REQUIRED"),
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

Steps joinData(const std::string& destination)
{
    return script({
        Split("$BUFFER", ":SPACE", destination),
        Exclude(destination, "GET://BMC/COMPLETION_CODE", destination),
        Join(destination, ":SPACE", destination),
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
