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
/// Of a satellite that nobody meets on the bus: it is there within a fraction of it, or not at all.
constexpr std::chrono::nanoseconds bridgedLimit = 1s;

/// Enough to tell sensors and records apart, and nothing that could be secret.
RequestKey keyOf(const BMC_REQUEST& request)
{
    return {request.target, request.netFn, request.lun, request.cmd,
            request.length > 0 ? request.data[0] : std::uint8_t{0}};
}

RequestKey* findLost(const BMC_REQUEST& request)
{
    auto& all = transportState().lostRequests;
    const auto place = std::ranges::find(all, keyOf(request));
    return place == all.end() ? nullptr : &*place;
}

void remember(const BMC_REQUEST& request)
{
    TransportState& state = transportState();
    state.lostRequests[state.nextLostRequest] = keyOf(request);
    state.nextLostRequest = (state.nextLostRequest + 1) % state.lostRequests.size();
}

/// After a time-out nobody knows whether the host was switched, and a repeat might switch it twice.
bool mayHaveActed(const BMC_REQUEST& request, std::uint8_t completionCode)
{
    return completionCode == ipmi::completion::timeout && request.netFn == ipmi::netfn::chassis &&
           request.cmd == ipmi::cmd::chassisControl;
}

bool isBridged(const BMC_REQUEST& request)
{
    return request.target != ipmi::address::bmc;
}

} // namespace

bool isPassing(const BMC_REQUEST& request, std::uint8_t completionCode)
{
    namespace completion = ipmi::completion;
    return ipmi::isBusy(completionCode) || (isBridged(request) && (completionCode == completion::lostArbitration ||
                                                                   completionCode == completion::nakOnWrite));
}

Patience::Patience(const BMC_REQUEST& wanted) : request(wanted), lost(findLost(wanted)) {}

bool Patience::asksAgain(std::uint8_t completionCode)
{
    if (!isPassing(request, completionCode) || mayHaveActed(request, completionCode) || lost ||
        !common::policy().retriesBusyController)
        return false;
    const std::chrono::nanoseconds budget = common::policy().exchangeBudget;
    if (spent >= (ipmi::isBusy(completionCode) ? budget : std::min(budget, bridgedLimit)))
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
    const bool inVain = answered ? isPassing(request, completionCode) : Deadline::passed();
    if (inVain && !lost)
        remember(request);
    else if (RequestKey* const known = inVain ? nullptr : findLost(request))
        *known = {};
}

} // namespace transport
