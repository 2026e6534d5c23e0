#include "platform/SameAnswers.hpp"

#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace Platform {

namespace {

using Command = std::pair<std::uint8_t, std::uint8_t>;

/// What two readings in a row give alike.
constexpr Command steadyCommands[] = {
    {ipmi::netfn::sensorEvent, ipmi::cmd::getSensorThresholds},
    {ipmi::netfn::sensorEvent, ipmi::cmd::getSensorEventEnable},
};

thread_local SameAnswers* inForce = nullptr;

bool isSteady(const SameAnswers::Texts& tokens)
{
    constexpr std::size_t netFn = 1, cmd = 3;
    if (tokens.size() <= cmd)
        return false;
    const Command command(ipmi::parseByte(tokens[netFn]), ipmi::parseByte(tokens[cmd]));
    return std::ranges::find(steadyCommands, command) != std::end(steadyCommands);
}

} // namespace

SameAnswers::SameAnswers() : outermost(!inForce)
{
    if (outermost)
        inForce = this;
}

SameAnswers::~SameAnswers()
{
    if (outermost)
        inForce = nullptr;
}

bool SameAnswers::recall(const Texts& tokens, Texts& reply)
{
    if (!inForce)
        return false;
    const auto earlier = inForce->known.find(tokens);
    if (earlier == inForce->known.end())
        return false;
    reply = earlier->second;
    return true;
}

void SameAnswers::keep(const Texts& tokens, const Texts& reply)
{
    if (inForce && isSteady(tokens) && !reply.empty() &&
        !ipmi::isBusy(static_cast<int>(std::strtol(reply.front().c_str(), nullptr, 10))))
        inForce->known[tokens] = reply;
}

} // namespace Platform
