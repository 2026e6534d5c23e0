#include "transport/SilenceWatch.hpp"

#include "common/Facts.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "ipmi/Codes.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/Deadline.hpp"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string>

namespace transport {

namespace {

using namespace std::chrono_literals;

constexpr int failuresUntilSilent = 3;
constexpr auto pauseBetweenProbes = 5s;
/// Of one probe, so that it leaves the controller in peace for part of the time.
constexpr auto probeBudget = 3s;

/// Get Device ID (IPMI 2.0, 20.1), which a controller answers before all else.
bool probe()
{
    const Deadline deadline(probeBudget);
    const BMC_REQUEST request{ipmi::address::bmc, ipmi::cmd::getDeviceId, ipmi::netfn::app, 0, 0, nullptr};
    BMC_RESPONSE response;
    std::memset(&response, 0, sizeof response);
    return InitilizeIPMB_Interface() == 0 && sendRequest(request, response, 0) &&
           response.completionCode == ipmi::completion::ok;
}

constexpr int satelliteFailures = 2;
constexpr auto pauseBetweenSatelliteTries = 30s;

std::string timeOfDay(Clock::TimePoint point)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(point);
    std::tm parts{};
    char text[sizeof "23:59:59"];
    return localtime_r(&seconds, &parts) && std::strftime(text, sizeof text, "%H:%M:%S", &parts) ? text : "";
}

} // namespace

bool SilenceWatch::admits()
{
    if (!common::policy().sparesSilentController || failures < failuresUntilSilent)
        return true;
    const Clock::SteadyPoint now = current<Clock>().steady();
    if (now < nextProbe)
        return false;
    nextProbe = now + pauseBetweenProbes;
    if (probe())
        noteReturn();
    else
        noteSilence();
    return failures == 0;
}

void SilenceWatch::note(bool answered)
{
    if (answered)
        failures = 0;
    else if (failures++ == 0)
        firstFailure = current<Clock>().now();
}

void SilenceWatch::noteSilence()
{
    if (!told)
        common::reportLimited(common::Gravity::warning, common::controllerKey,
                              "no answer from the BMC since " + timeOfDay(firstFailure));
    told = true;
    common::noteFact(common::controllerFact, "no answer since " + timeOfDay(firstFailure));
}

void SilenceWatch::noteReturn()
{
    if (told)
        common::report(common::Gravity::notice, "the BMC answers again");
    common::reportEnded(common::controllerKey);
    common::noteFact(common::controllerFact, "answers");
    *this = {};
}

/// The place of a target; of more than there are places for, some share one.
SatelliteWatch::Satellite& SatelliteWatch::find(std::uint8_t target)
{
    const auto place =
        std::ranges::find_if(known, [=](const Satellite& each) { return each.target == target || each.target == 0; });
    Satellite& satellite = place == known.end() ? known.back() : *place;
    satellite.target = target;
    return satellite;
}

bool SatelliteWatch::admits(std::uint8_t target)
{
    const Satellite& satellite = find(target);
    return satellite.failures < satelliteFailures || current<Clock>().steady() >= satellite.nextTry;
}

void SatelliteWatch::note(std::uint8_t target, bool answered)
{
    Satellite& satellite = find(target);
    satellite.failures = answered ? 0 : satellite.failures + 1;
    satellite.nextTry = current<Clock>().steady() + pauseBetweenSatelliteTries;
}

} // namespace transport
