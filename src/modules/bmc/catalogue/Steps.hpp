#pragma once

#include "modules/bmc/engine/Function.hpp"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Builders of scripts. Each instruction's step carries the instruction's own name; If, For and While take their body
/// and bring their End along, so that none can be lost; idioms return runs of steps. A script reads like the list of
/// its steps:
///
///     script({
///         IPMI("GET://BMC/SDR/RESERVE", "$BUFFER"),
///         If("$CODE == 0", {
///             Return("$RESULT"),
///         }),
///         Throw("ERROR_SDR_REPOSITORY_EXCEPTION"),
///     })
namespace Module::BMCConfig::steps {

/// One step or a run of steps.
using Steps = std::vector<Function>;

/// A run of steps in a list of them: a list's elements are constant, and what is built in place is to move on.
struct Part {
    Part(Steps&& steps_) : steps(std::move(steps_)) {}
    Part(const Steps& steps_) : steps(steps_) {}

    mutable Steps steps;
};
using Parts = std::initializer_list<Part>;

/// Joins runs of steps into one script.
Script script(Parts parts);

/// Operands of a condition, written with blanks: "$A == 0", "$A != $B AND $C < 10". Operands cannot hold blanks.
std::vector<std::string> condition(std::string_view text);

Steps makeStep(Opcode opcode, std::vector<std::string> operands);
Steps makeBlock(Opcode opcode, std::vector<std::string> operands, Parts body);

#define HW_STEP(name)                                                                                                  \
    template<class... Operands>                                                                                        \
    Steps name(Operands&&... operands)                                                                                 \
    {                                                                                                                  \
        std::vector<std::string> texts;                                                                                \
        texts.reserve(sizeof...(operands));                                                                            \
        (texts.emplace_back(std::forward<Operands>(operands)), ...);                                                   \
        return makeStep(Opcode::name, std::move(texts));                                                               \
    }
HW_STEP(IPMI)
HW_STEP(IPMIResponse)
HW_STEP(LookupTable)
HW_STEP(Store)
HW_STEP(Copy)
HW_STEP(Append)
HW_STEP(Template)
HW_STEP(Map)
HW_STEP(Expression)
HW_STEP(FormatString)
HW_STEP(Split)
HW_STEP(Join)
HW_STEP(Pad)
HW_STEP(Flatten)
HW_STEP(Filter)
HW_STEP(Read)
HW_STEP(Print)
HW_STEP(Exclude)
HW_STEP(Size)
HW_STEP(Return)
HW_STEP(Assert)
HW_STEP(Throw)
HW_STEP(Sleep)
HW_STEP(Increment)
HW_STEP(String_Length)
HW_STEP(Assign)
HW_STEP(Prepend)
HW_STEP(Poll)
HW_STEP(IPMI_Without_Throw)
HW_STEP(Mathematical)
HW_STEP(Template_with_Catch)
#undef HW_STEP

Steps If(std::string_view test, Parts body);
/// The body runs for `name` from `first` up to and including `last`, as hexadecimal text in "$name".
Steps For(std::string name, std::string first, std::string last, Parts body);
Steps While(std::string_view test, Parts body);

// Idioms.

/// Stores `value` as the result and ends the script.
Steps returnText(const std::string& value);
/// Sends `packet`; leaves the reply in $BUFFER and the completion code, "0" or its name, in $COMPLETION_CODE.
Steps send(const std::string& packet);
/// Behind a send: a completion code other than 0 is thrown by its own name.
Steps checkCode();
/// Both.
Steps sendAndCheck(const std::string& packet);
/// A send to a controller that may not be there: no answer at all reads as "IPMI_RESPONSE_ERROR".
Steps sendWithoutThrow(const std::string& packet);
/// After a send that succeeded: takes the filter's fields into `destination`. A reply that ends before them throws
/// `error`, or for the completion code's own, which says nothing then, IPMI_RESPONSE_ERROR.
Steps readField(const std::string& filter, const std::string& destination, const std::string& error);
/// Copies a parameter that the caller gave by its plain name to the symbol that a packet holds, by default the one that
/// ends in "/NAME"; without one that stays as it is.
Steps take(const std::string& symbol);
Steps take(const std::string& name, const std::string& symbol);
/// The same for a symbol without which nothing is sent.
Steps takeRequired(const std::string& symbol);
/// Throws 1089 with the name of `symbol`: its value cannot be sent.
Steps refuse(const std::string& symbol);
/// Throws 1089 with the name of `symbol` if it is not set or empty: a request without it would be sent with all that
/// follows it shifted.
Steps require(const std::string& symbol);
/// For writes whose effect on a board is the manufacturer's secret: nothing is sent unless the caller gives a parameter
/// FORCE beside the value.
Steps requireForce();
/// Checks the subscript "NAME[]" against both bounds and leaves it in $NAME_NUMBER_IN_DEC; throws 1091 otherwise.
Steps assertSubscript(const std::string& name, unsigned low, unsigned high);
/// Throws ERROR_CONTROLLER_NOT_PRESENT for an address in `symbol` that is no byte.
Steps requireAddress(const std::string& symbol);
/// After a send: returns `word` if the controller does not know the command.
Steps answerIfAbsent(const std::string& word);
/// All data bytes of the reply in $BUFFER as one blank-separated text in `destination`.
Steps joinData(const std::string& destination);
/// Sends `packet` and ends the script with all data of the answer as one text, or with the completion code's error.
Steps returnData(const std::string& packet);
/// After a send that succeeded: ends the script with the reply's bytes from field `first` on as one text; a reply
/// without any throws IPMI_RESPONSE_ERROR.
Steps returnBytes(unsigned first);
/// Ends the script with the bytes in `symbol`, high byte first, as one decimal number.
Steps returnNumber(const std::string& symbol);
/// Ends the script with a version byte of two digits, of which the upper one stands behind the point: 51h is "1.5".
Steps returnBcdVersion(const std::string& symbol);
/// Asks `query` for 25 seconds at most, until its answer begins with `expected`; throws `error` if it never does.
Steps waitFor(const std::string& query, const std::string& expected, const std::string& error);
/// After a send that succeeded: the bits in `mask` of the filter's byte as a decimal number in $COUNT.
Steps readCount(const std::string& filter, const std::string& mask);
/// Ends the script with the members NAME[first] to NAME[last] of an array, both decimal text or symbols of such.
Steps returnMembers(const std::string& name, const std::string& first, const std::string& last);
/// Sends `packet`; a completion code of 0 returns "SUCCESS", any other throws `error`.
Steps sendOrThrow(const std::string& packet, const std::string& error);
/// A branch of the tree: a non-leaf that names `children`.
Script branch(std::initializer_list<const char*> children);

} // namespace Module::BMCConfig::steps
