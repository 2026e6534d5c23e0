#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The line that a virtual machine monitor and OpenIPMI's simulator use between them (its serial codec "VM"): frames of
/// escaped bytes, closed by one byte that tells messages from control commands.
namespace vmline {

using Bytes = std::vector<std::uint8_t>;

enum class Kind { message, control };

struct Frame {
    Kind kind;
    Bytes body;
};

/// Control commands of the simulator that concern a driver.
constexpr std::uint8_t attentionOff = 0x00;
constexpr std::uint8_t attention = 0x01;
constexpr std::uint8_t attentionWithInterrupt = 0x02;

/// Cuts the byte stream of the simulator into frames.
class Decoder {
public:
    /// The frames that `bytes` complete, in order.
    std::vector<Frame> feed(std::span<const std::uint8_t> bytes);

private:
    Bytes body;
    bool escaped = false;
};

/// One request to the BMC. `sequence` comes back in the answer.
Bytes encodeRequest(std::uint8_t sequence, std::uint8_t netFn, std::uint8_t lun, std::uint8_t command,
                    std::span<const std::uint8_t> data);

/// What a monitor says first: its protocol version and what it can do.
Bytes encodeGreeting();

struct Answer {
    std::uint8_t sequence;
    std::uint8_t netFn;
    std::uint8_t lun;
    std::uint8_t command;
    Bytes data; ///< completion code first
};

/// The answer in a message frame, or nothing when it is too short or its checksum is wrong.
std::optional<Answer> decodeAnswer(const Bytes& body);

/// The byte that makes the sum of all a multiple of 256 (IPMB's checksum).
std::uint8_t checksum(std::span<const std::uint8_t> bytes);

} // namespace vmline
