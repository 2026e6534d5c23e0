#include "common/Seams.hpp"
#include "ipmi/Codes.hpp"
#include "transport/BmcMessage.hpp"

#include <chrono>
#include <initializer_list>
#include <new>
#include <vector>

using namespace transport;

namespace {

using namespace std::chrono_literals;
using Payload = std::vector<std::uint8_t>;

constexpr int programTries = 4;
constexpr int requestRetries = 3;
constexpr std::uint8_t byteLengthLimit = 255;

std::uint8_t lowByte(std::uint16_t number)
{
    return static_cast<std::uint8_t>(number);
}

std::uint8_t highByte(std::uint16_t number)
{
    return static_cast<std::uint8_t>(number >> 8);
}

Payload joinPayload(std::initializer_list<std::uint8_t> head, const std::uint8_t* data, std::uint32_t count)
{
    Payload payload(head);
    payload.insert(payload.end(), data, data + count);
    return payload;
}

BMC_REQUEST makeRequest(std::uint8_t target, std::uint8_t netFn, std::uint8_t cmd, const Payload& payload)
{
    return {target, cmd, netFn, 0, static_cast<std::uint32_t>(payload.size()), payload.data()};
}

int writeToArea(std::uint8_t target, const Payload& payload)
{
    const BMC_REQUEST request = makeRequest(target, ipmi::netfn::oemPlatform, ipmi::cmd::writeToArea, payload);
    BMC_RESPONSE response{};
    for (int i = 0; i < programTries; ++i) {
        if (i > 0)
            current<Clock>().sleepFor(2000s);
        if (SendMessagePX_Linux(&request, &response, ipmi::channel::engine, target) == 1 &&
            response.completionCode == ipmi::completion::ok)
            return 0;
    }
    return 1;
}

int programSegment(std::uint8_t target, const Payload& payload)
{
    const BMC_REQUEST request = makeRequest(target, ipmi::netfn::firmware, ipmi::cmd::programSegment, payload);
    BMC_RESPONSE response{};
    for (int i = 1; i <= programTries; ++i) {
        if (SendRequest_Linux(&request, &response, requestRetries) != 0)
            continue;
        if (response.length < byteLengthLimit || i == programTries)
            return response.completionCode;
    }
    return 0;
}

int programData(std::uint8_t target, const Payload& payload)
{
    const BMC_REQUEST request = makeRequest(target, ipmi::netfn::firmware, ipmi::cmd::programData, payload);
    BMC_RESPONSE response{};
    for (int i = 0; i < programTries; ++i)
        if (SendRequest_Linux(&request, &response, requestRetries) == 0 && response.length < byteLengthLimit)
            return 1;
    return 0;
}

} // namespace

int WriteToAreaCmd(std::uint8_t target, std::uint8_t area, const std::uint8_t* data, std::uint32_t count)
{
    try {
        return writeToArea(target, joinPayload({area}, data, count));
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

int ProgramSegment(std::uint8_t target, std::uint16_t segment)
{
    try {
        return programSegment(target, {lowByte(segment), highByte(segment)});
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

int ProgramData(std::uint8_t target, std::uint16_t offset, const std::uint8_t* data, std::uint32_t count)
{
    try {
        return programData(target, joinPayload({lowByte(offset), highByte(offset)}, data, count));
    } catch (const std::bad_alloc&) {
        return 1;
    }
}
