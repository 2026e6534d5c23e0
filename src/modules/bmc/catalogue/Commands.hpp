#pragma once

#include <cstdint>
#include <span>

/// The commands that the catalogue sends, once: their constants, and the network function that each belongs to.
namespace Module::BMCConfig {

/// A network function, by the name of its constant under "$/IPMI/".
struct NetFunction {
    const char* constant;
    std::uint8_t number;
};

/// A command. Its constant stands under "$/IPMI/" in the standard's own words, unless the name is a constant already.
struct Command {
    const char* name;
    const char* netFunction;
    std::uint8_t number;
};

std::span<const NetFunction> netFunctions();
std::span<const Command> commands();

} // namespace Module::BMCConfig
