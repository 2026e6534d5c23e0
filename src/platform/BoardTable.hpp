#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace Platform {

/// A board's model or code name, as the firmware gives it, and the platform it belongs to.
struct BoardRow {
    const char* board;
    const char* platform;
};

/// The boards that are known by name.
std::span<const BoardRow> knownBoards();

/// Numbers of the sensors that watch the four sockets of a board; FFh where there is none.
using SocketSensors = std::array<std::uint8_t, 4>;

/// What the BMCs of a platform number alike.
struct PlatformSensors {
    const char* platform;
    SocketSensors status;
    SocketSensors thermal;
    std::uint8_t firstMemorySlot; ///< the slots' sensors follow each other
    std::uint8_t memorySlots;
};

/// The row of a platform; a row without any sensor for the others.
const PlatformSensors& sensorsOfPlatform(const char* platform);

} // namespace Platform
