#pragma once

#include "client/traps/TrapFunctions.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace client::traps {

/// Goes out where a test names no trap: managers keep no state of it.
inline constexpr char harmlessTrap[] = "trapSysReconfig";

/// The trap of that name in the MIB, with the objects and the severity of a real one, and a text that begins with
/// "TEST". It names no device: its row is 0. Nothing for an unknown name.
std::optional<Trap> makeTestTrap(std::string_view name);

/// The trap's name in the MIB; empty for one that it does not have.
std::string nameOf(const Trap& trap);

} // namespace client::traps
