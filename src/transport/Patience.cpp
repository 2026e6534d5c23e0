#include "transport/Patience.hpp"

#include "common/Policy.hpp"
#include "common/Seams.hpp"
#include "ipmi/Codes.hpp"
#include "transport/Deadline.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>

namespace transport {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::nanoseconds longestPause = 500ms;
constexpr auto lostFor = 1min;
/// Of a satellite: one that is there answers in a fraction of it.
constexpr std::chrono::nanoseconds bridgedBudget = 1s;

/// Enough to tell sensors and records apart, and nothing that could be secret.
RequestKey keyOf(const BMC_REQUEST& request)
{
    return {request.target, request.netFn, request.lun, request.cmd,
            request.length > 0 ? request.data[0] : std::uint8_t{0}};
}

LostRequest* findLost(const BMC_REQUEST& request)
{
    auto& all = transportState().lostRequests;
    const auto place = std::ranges::find(all, keyOf(request), &LostRequest::key);
    return place == all.end() ? nullptr : &*place;
}

bool isLost(const BMC_REQUEST& request)
{
    const LostRequest* const known = findLost(request);
    return known && current<Clock>().steady() < known->until;
}

void remember(const BMC_REQUEST& request)
{
    TransportState& state = transportState();
    LostRequest* place = findLost(request);
    if (!place) {
        place = &state.lostRequests[state.nextLostRequest];
        state.nextLostRequest = (state.nextLostRequest + 1) % state.lostRequests.size();
    }
    *place = {.key = keyOf(request), .until = current<Clock>().steady() + lostFor};
}

bool isBridged(const BMC_REQUEST& request)
{
    return request.target != ipmi::address::bmc;
}

} // namespace

Patience::Patience(const BMC_REQUEST& wanted) : request(wanted), lost(isLost(wanted)) {}

std::chrono::nanoseconds Patience::budget() const
{
    const std::chrono::nanoseconds whole = common::policy().exchangeBudget;
    return lost && isBridged(request) ? std::min(whole, bridgedBudget) : whole;
}

bool Patience::isPassing(std::uint8_t completionCode) const
{
    return ipmi::isBusy(completionCode) ||
           (isBridged(request) &&
            (completionCode == ipmi::completion::lostArbitration || completionCode == ipmi::completion::nakOnWrite));
}

bool Patience::asksAgain(std::uint8_t completionCode)
{
    if (!isPassing(completionCode) || lost || !common::policy().retriesBusyController)
        return false;
    const bool busy = ipmi::isBusy(completionCode);
    if (spent >= (busy ? budget() : std::min(budget(), bridgedBudget)))
        return false;
    const std::chrono::nanoseconds now = std::min(pause, Deadline::left());
    current<Clock>().sleepFor(now);
    spent += now;
    pause = std::min(2 * pause, longestPause);
    return !Deadline::passed();
}

void Patience::note(bool answered, std::uint8_t completionCode) const
{
    if (!common::policy().retriesBusyController)
        return;
    const bool inVain = answered ? isPassing(completionCode) : Deadline::passed();
    if (inVain && !lost)
        remember(request);
    else if (LostRequest* const known = inVain ? nullptr : findLost(request))
        *known = {};
}

} // namespace transport
