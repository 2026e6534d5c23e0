#include "common/Policy.hpp"

#include "common/ConfigFile.hpp"
#include "common/Paths.hpp"
#include "common/Seams.hpp"

#include <algorithm>
#include <cstdlib>

namespace common {

namespace {

constexpr bool Policy::*decisions[] = {
    &Policy::practical,
    &Policy::limitsExchanges,
    &Policy::retriesBusyController,
    &Policy::sleepsInPortWaits,
    &Policy::recoversFailedSends,
    &Policy::keepsUndummiedFrames,
    &Policy::checksDriverAnswers,
    &Policy::reportsDriverErrors,
    &Policy::carriesLun,
    &Policy::reopensDevice,
    &Policy::probesByKernelTables,
    &Policy::sparesSilentController,
    &Policy::locksWithinProcess,
    &Policy::readsLargePieces,
    &Policy::limitsSdrRepeats,
    &Policy::keepsPartialRepository,
    &Policy::remembersUnreadRepository,
    &Policy::keepsRepositoryOnDisk,
    &Policy::followsRepository,
    &Policy::refusesShortReadings,
    &Policy::answersFromPublished,
    &Policy::expiresReadings,
    &Policy::fillsBehindRegistration,
    &Policy::readsKernelTables,
    &Policy::takesWideEntries,
    &Policy::knowsNewerFirmware,
    &Policy::keepsFirmwareWords,
    &Policy::asksFirmwareForChassis,
    &Policy::describesInventory,
    &Policy::showsFullNames,
    &Policy::tellsRowsApart,
    &Policy::convertsByStandard,
    &Policy::heedsScanning,
    &Policy::namesDeasserted,
    &Policy::judgesEachState,
    &Policy::listsEverySensor,
    &Policy::keepsMark,
    &Policy::pacesTrapsApart,
    &Policy::cutsLongTexts,
    &Policy::readsTrueOffsets,
    &Policy::agreesOnGravity,
    &Policy::tellsWhatHolds,
    &Policy::tellsHealthOfRows,
    &Policy::neverWaitsForRecords,
    &Policy::givesUpUnreadRecords,
    &Policy::stopsDuringStart,
    &Policy::refusesSecondAgent,
    &Policy::refusesArguments,
    &Policy::backsOffCrashes,
    &Policy::endsWithoutResources,
    &Policy::tellsServiceManager,
    &Policy::answersStatus,
};

struct Figure {
    std::string_view key;
    void (*set)(Policy& policy, int value);
};

constexpr std::string_view practicalKey = "practical";
constexpr Figure figures[] = {
    {"exchangebudget", [](Policy& policy, int value) { policy.exchangeBudget = std::chrono::milliseconds(value); }},
    {"refreshperiod", [](Policy& policy, int value) { policy.refreshPeriod = std::chrono::seconds(value); }},
    {"trapburst", [](Policy& policy, int value) { policy.trapBurst = value; }},
    {"trapspersecond", [](Policy& policy, int value) { policy.trapsPerSecond = value; }},
    {"trapqueue", [](Policy& policy, int value) { policy.trapQueue = value; }},
};

Policy inForce;

void setDecisions(Policy& policy, bool value)
{
    for (bool Policy::*const decision : decisions)
        policy.*decision = value;
}

void takeEntry(Policy& policy, const ConfigEntry& entry)
{
    constexpr long greatest = 1'000'000;
    const long value = std::strtol(entry.value.c_str(), nullptr, 10);
    const auto* const figure = std::ranges::find(figures, entry.key, &Figure::key);
    if (entry.key == practicalKey)
        setDecisions(policy, value != 0);
    else if (figure != std::end(figures) && value >= 1 && value <= greatest)
        figure->set(policy, static_cast<int>(value));
}

} // namespace

Policy practicalPolicy()
{
    Policy policy;
    setDecisions(policy, true);
    return policy;
}

const Policy& policy()
{
    return inForce;
}

void loadPolicy()
{
    inForce = {};
    readConfigFile(systemPath(configPath), [](const ConfigEntry& entry) { takeEntry(inForce, entry); });
}

ScopedPolicy::ScopedPolicy(const Policy& replacement) : before(inForce)
{
    inForce = replacement;
}

ScopedPolicy::~ScopedPolicy()
{
    inForce = before;
}

} // namespace common
