#pragma once

#include "modules/bmc/engine/Opcodes.hpp"
#include "modules/bmc/engine/Symbol.hpp"

#include <memory>
#include <vector>

namespace Module::BMCConfig {

/// One instruction of a script, its operands as written.
struct Function {
    std::uint32_t opcode = 0;
    Symbol arguments;

    /// A hook that the dispatcher calls before each step: flushes standard output.
    void Print() const;
};

using Script = std::vector<Function>;
/// Scripts are shared, never copied: saving the machine's state costs a pointer.
using Program = std::shared_ptr<const Script>;

} // namespace Module::BMCConfig
