#pragma once

#include <cstdint>

/// The instruction set: X(name, opcode, fewest operands, most operands). Everything that goes by instruction - the
/// enum, the names, the operand check, the dispatch table, the step builders' lint - is made from this one list.
#define HW_OPCODES(X)                                                                                                  \
    X(IPMI, 0, 2, 2)                                                                                                   \
    X(IPMIResponse, 1, 3, 3)                                                                                           \
    X(LookupTable, 2, 3, 3)                                                                                            \
    X(Store, 3, 2, 255)                                                                                                \
    X(Copy, 4, 2, 2)                                                                                                   \
    X(Append, 5, 1, 255)                                                                                               \
    X(Template, 6, 1, 1)                                                                                               \
    X(Map, 8, 3, 4)                                                                                                    \
    X(If, 10, 3, 255)                                                                                                  \
    X(For, 11, 3, 3)                                                                                                   \
    X(While, 12, 3, 255)                                                                                               \
    X(Expression, 13, 2, 255)                                                                                          \
    X(FormatString, 14, 2, 255)                                                                                        \
    X(Split, 15, 3, 3)                                                                                                 \
    X(Join, 16, 3, 4)                                                                                                  \
    X(Pad, 17, 4, 4)                                                                                                   \
    X(End, 19, 0, 0)                                                                                                   \
    X(Flatten, 20, 2, 2)                                                                                               \
    X(Filter, 21, 3, 3)                                                                                                \
    X(Read, 23, 3, 3)                                                                                                  \
    X(Print, 24, 1, 1)                                                                                                 \
    X(Exclude, 25, 3, 3)                                                                                               \
    X(Size, 26, 2, 2)                                                                                                  \
    X(Return, 27, 1, 1)                                                                                                \
    X(Assert, 29, 4, 5)                                                                                                \
    X(Throw, 30, 1, 1)                                                                                                 \
    X(Sleep, 33, 1, 1)                                                                                                 \
    X(Increment, 34, 2, 2)                                                                                             \
    X(String_Length, 35, 2, 2)                                                                                         \
    X(Assign, 36, 2, 2)                                                                                                \
    X(Prepend, 37, 4, 4)                                                                                               \
    X(Poll, 38, 5, 5)                                                                                                  \
    X(IPMI_Without_Throw, 39, 2, 2)                                                                                    \
    X(Mathematical, 40, 2, 255)                                                                                        \
    X(Template_with_Catch, 41, 1, 1)

namespace Module::BMCConfig {

enum class Opcode : std::uint32_t {
#define HW_ENUMERATOR(name, code, fewest, most) name = (code),
    HW_OPCODES(HW_ENUMERATOR)
#undef HW_ENUMERATOR
};

/// One past the highest opcode; numbers without a name are instructions that do nothing.
inline constexpr std::uint32_t opcodeLimit = 42;

/// What is known of an opcode; `name` is null for the unnamed numbers.
struct OpcodeInfo {
    const char* name = nullptr;
    unsigned fewestOperands = 0;
    unsigned mostOperands = 255;
};

constexpr OpcodeInfo opcodeInfo(std::uint32_t opcode)
{
    switch (opcode) {
#define HW_CASE(name, code, fewest, most)                                                                              \
    case code:                                                                                                         \
        return {#name, fewest, most};
        HW_OPCODES(HW_CASE)
#undef HW_CASE
    default:
        return {};
    }
}

} // namespace Module::BMCConfig
