#include "translator/Fillers.hpp"

#include <algorithm>
#include <array>

namespace translator {

namespace {

using Word = std::wstring_view;

// The miscellaneous strings of a list start at 100h + 20h for each list before it.

constexpr Word updateTargets[] = {
    L"Integrated BMC", L"SDR repository", L"FRU data", L"BIOS", L"Management Engine", L"boot block", L"configuration",
};
constexpr Word fruStateChanges[] = {
    L"Normal state change",
    L"Change commanded by software outside of the FRU",
    L"State change by an operator at the hot swap handle",
    L"State change by the hot swap push button",
    L"State change by FRU action",
    L"Communication Lost",
    L"Communication Lost by a local failure",
    L"State change by unexpected extraction",
    L"State change by operator intervention or update",
    L"Unable to compute the IPMB address",
    L"Unexpected deactivation",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"State change of unknown cause",
};
constexpr Word fruStates[] = {
    L"FRU not installed",
    L"FRU inactive",
    L"FRU activation requested",
    L"FRU activation in progress",
    L"FRU active",
    L"FRU deactivation requested",
    L"FRU deactivation in progress",
    L"FRU communication lost",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
    L"Unknown FRU state",
};
constexpr Word postPhases[] = {
    L"processor start",  L"memory detection",      L"memory configuration",    L"memory test",
    L"chipset start",    L"PCI bus detection",     L"PCI resource assignment", L"USB start",
    L"video start",      L"keyboard start",        L"storage detection",       L"boot device selection",
    L"option ROM start", L"operating system load",
};
constexpr Word eventCodes[] = {
    L"no event", L"entry", L"progress", L"error", L"exit",
};
constexpr Word busErrorTypes[] = {
    L"data link layer",       L"surprise link down",
    L"flow control protocol", L"poisoned TLP",
    L"completion time-out",   L"completer abort",
    L"unexpected completion", L"receiver overflow",
    L"malformed TLP",         L"ECRC",
    L"unsupported request",   L"ACS violation",
};
constexpr Word memoryErrors[] = {
    L"no error", L"ECC", L"parity", L"address parity", L"command parity", L"link", L"training",
};
constexpr Word memoryErrorCauses[] = {
    L"invalid memory type", L"memory disabled",    L"memory mismatch", L"training failed",
    L"too many DIMMs",      L"built-in self test", L"SPD checksum",
};
constexpr Word memoryErrorPlaces[] = {
    L"DIMM",
    L"channel",
    L"memory controller",
    L"memory riser",
};
constexpr Word linkErrors[] = {
    L"link width reduced by half",
    L"link width reduced by a quarter",
    L"link retrained with a CRC error",
    L"link initialization failed",
    L"protocol error",
};
constexpr Word catastrophicErrors[] = {
    L"unknown",
    L"catastrophic error",
    L"processor core error",
    L"processor mismatch",
};
constexpr Word measurementLevels[] = {
    L"off",
    L"trusted boot refused",
    L"trusted boot measured",
    L"locked",
};
constexpr Word eventSources[] = {
    L"BMC", L"BIOS", L"Management Engine", L"operating system", L"hot swap controller",
};
constexpr Word powerDomains[] = {
    L"entire platform", L"processor", L"memory", L"hardware protection", L"input/output",
};
constexpr Word powerPolicies[] = {
    L"policy 0", L"policy 1", L"policy 2", L"policy 3", L"policy 4", L"policy 5", L"policy 6", L"policy 7",
};
constexpr Word agentErrors[] = {
    L"no error",           L"policy misconfigured", L"reading of power failed", L"reading of inlet temperature failed",
    L"host communication", L"time out of step",     L"limit exceeded",
};
constexpr Word engineHealth[] = {
    L"recovery entered by the jumper",
    L"image execution failed",
    L"flash erase failed",
    L"flash state information corrupt",
    L"internal error",
    L"BMC cold reset refused",
    L"direct flash update requested",
    L"manufacturing error",
    L"persistent storage integrity error",
    L"firmware exception",
    L"flash worn out",
};
constexpr Word linkNodes[] = {
    L"node 0",
    L"node 1",
    L"node 2",
    L"node 3",
};
constexpr Word controllers[] = {
    L"controller 0",
    L"controller 1",
    L"controller 2",
    L"controller 3",
};
constexpr Word channels[] = {
    L"channel A", L"channel B", L"channel C", L"channel D", L"channel E", L"channel F",
};

/// Of the watchdog's timer (IPMI 2.0, table 42-3, type 23h).
constexpr Word timerUses[] = {
    L"an unknown use",       L"the firmware (FRB2)",
    L"the firmware (POST)",  L"the start of the operating system",
    L"the operating system", L"the OEM",
};

constexpr WordList lists[] = {
    {L"%update_target%", 2, 0, 0x0F, 0, 0x100, updateTargets},
    {L"%fru state change%", 2, 4, 0x0F, 0, 0x120, fruStateChanges},
    {L"%fru offset%", 2, 0, 0x0F, 0, 0x140, fruStates},
    {L"%FRB2 post code%", 2, 4, 0x0F, 0, 0x160, postPhases},
    {L"%Event code%", 2, 0, 0x07, 0, 0x180, eventCodes},
    {L"%Error type%", 1, 0, 0x0F, 0, 0x1A0, busErrorTypes},
    {L"%mem error%", 2, 0, 0x0F, 0, 0x1C0, memoryErrors},
    {L"%memory error1%", 2, 0, 0x0F, 1, 0x1E0, memoryErrorCauses},
    {L"%memory error2%", 2, 4, 0x0F, 0, 0x200, memoryErrorPlaces},
    {L"%QPI Error%", 2, 0, 0x0F, 0, 0x220, linkErrors},
    {L"%CATERR Type%", 2, 0, 0xFF, 0, 0x240, catastrophicErrors},
    {L"%MTM LEVEL%", 2, 0, 0x0F, 0, 0x260, measurementLevels},
    {L"%source%", 2, 4, 0x0F, 0, 0x280, eventSources},
    {L"%Domain id%", 2, 0, 0x0F, 0, 0x2A0, powerDomains},
    {L"%Policy id%", 3, 0, 0xFF, 0, 0x2C0, powerPolicies},
    {L"%Error%", 2, 4, 0x0F, 0, 0x2E0, agentErrors},
    {L"%SPS_HEALTH_DESC%", 2, 0, 0xFF, 0, 0x300, engineHealth},
    {L"%QPINode_ID%", 3, 0, 0xFF, 0, 0x320, linkNodes},
    {L"%MemQPINode_ID%", 3, 4, 0x0F, 0, 0x340, linkNodes},
    {L"%Controller_Num%", 3, 2, 0x03, 0, 0x360, controllers},
    {L"%Cha_Number%", 3, 2, 0x07, 0, 0x380, channels},
    {L"%Timer use%", 2, 0, 0x0F, 0, 0x3A0, timerUses},
};

} // namespace

const WordList* findWordList(std::wstring_view token)
{
    const auto found = std::ranges::find(lists, token, &WordList::token);
    return found == std::end(lists) ? nullptr : found;
}

void fillWord(const WordList& list, const EventContext& context, std::wstring& out)
{
    const int value = (context.entry.eventData(list.dataByte) >> list.shift & list.mask) - list.base;
    const bool listed = value >= 0 && value < static_cast<int>(list.words.size());
    out += listed ? context.misc(list.firstMisc + value, list.words[static_cast<std::size_t>(value)])
                  : context.misc(MISC_RESERVED, L" Reserved");
}

} // namespace translator
