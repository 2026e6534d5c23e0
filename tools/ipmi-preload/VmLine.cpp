#include "ipmi-preload/VmLine.hpp"

#include <algorithm>
#include <numeric>

namespace vmline {

namespace {

constexpr std::uint8_t endOfMessage = 0xA0;
constexpr std::uint8_t endOfControl = 0xA1;
constexpr std::uint8_t escape = 0xAA;
constexpr std::uint8_t escapeBit = 0x10;
constexpr std::uint8_t protocolVersion = 1;
constexpr std::uint8_t commandVersion = 0xFF;
constexpr std::uint8_t commandCapabilities = 0x08;
constexpr std::uint8_t canAttend = 0x10; ///< the monitor takes attention notices
constexpr std::size_t answerHead = 3;    ///< sequence, network function and LUN, command

void appendEscaped(Bytes& out, std::span<const std::uint8_t> bytes, std::uint8_t end)
{
    for (std::uint8_t byte : bytes) {
        if (byte == endOfMessage || byte == endOfControl || byte == escape) {
            out.push_back(escape);
            byte |= escapeBit;
        }
        out.push_back(byte);
    }
    out.push_back(end);
}

} // namespace

std::uint8_t checksum(std::span<const std::uint8_t> bytes)
{
    return static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0));
}

std::vector<Frame> Decoder::feed(std::span<const std::uint8_t> bytes)
{
    std::vector<Frame> frames;
    for (const std::uint8_t byte : bytes) {
        if (byte == endOfMessage || byte == endOfControl) {
            frames.push_back({byte == endOfMessage ? Kind::message : Kind::control, std::move(body)});
            body.clear();
            escaped = false;
        } else if (byte == escape) {
            escaped = true;
        } else {
            body.push_back(escaped ? static_cast<std::uint8_t>(byte & ~escapeBit) : byte);
            escaped = false;
        }
    }
    return frames;
}

Bytes encodeRequest(std::uint8_t sequence, std::uint8_t netFn, std::uint8_t lun, std::uint8_t command,
                    std::span<const std::uint8_t> data)
{
    Bytes plain = {sequence, static_cast<std::uint8_t>(netFn << 2 | (lun & 3)), command};
    plain.insert(plain.end(), data.begin(), data.end());
    plain.push_back(checksum(plain));
    Bytes out;
    appendEscaped(out, plain, endOfMessage);
    return out;
}

Bytes encodeGreeting()
{
    Bytes out;
    appendEscaped(out, Bytes{commandVersion, protocolVersion}, endOfControl);
    appendEscaped(out, Bytes{commandCapabilities, canAttend}, endOfControl);
    return out;
}

std::optional<Answer> decodeAnswer(const Bytes& body)
{
    if (body.size() < answerHead + 2 || checksum(body) != 0) // at least a completion code, and the checksum
        return std::nullopt;
    return Answer{.sequence = body[0],
                  .netFn = static_cast<std::uint8_t>(body[1] >> 2),
                  .lun = static_cast<std::uint8_t>(body[1] & 3),
                  .command = body[2],
                  .data = Bytes(body.begin() + answerHead, body.end() - 1)};
}

} // namespace vmline
