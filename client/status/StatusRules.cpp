#include "client/status/StatusRules.hpp"

#include "client/query/QLInterface.hpp"
#include "client/words/Entities.hpp"
#include "client/words/Trace.hpp"
#include "common/ResultStatus.hpp"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view strictFanBoards[] = {"Larch-1", "Larch-2", "Larch-3", "Larch-4", "Larch-5"};

struct StatusWord {
    std::string_view word;
    NEW_HEALTH_STATUS status;
};

constexpr StatusWord statusWords[] = {
    {"other", ENUM_STATUS_UNAVAILABLE},   {"unknown", ENUM_STATUS_UNAVAILABLE}, {"ok", ENUM_STATUS_HEALTHY},
    {"nonCritical", ENUM_STATUS_WARNING}, {"critical", ENUM_STATUS_CRITIC},     {"nonRecoverable", ENUM_STATUS_CRITIC},
    {"warning", ENUM_STATUS_WARNING},
};

bool isAbove(int reading, int bound)
{
    return bound != noValue && reading > bound;
}

bool isBelow(int reading, int bound)
{
    return bound != noValue && reading < bound;
}

bool isOutside(int reading, int lower, int upper)
{
    return isAbove(reading, upper) || isBelow(reading, lower);
}

const char* wordInside(std::initializer_list<int> bounds)
{
    const bool anySet = std::any_of(bounds.begin(), bounds.end(), [](int bound) { return bound != noValue; });
    return anySet ? "ok" : "unknown";
}

/// The firmware's tables may be out of reach; then the model is unknown, and the caller must go on: nothing may leave
/// for the MIB handler.
std::string readBoardModel()
{
    static const std::string query = "/BIOS/PlatformID";
    try {
        ResultMap result;
        CallQLInterface(query, result);
        const auto entry = result.find(query);
        if (entry != result.end() && entry->second.mType == NODE_LEAF && !entry->second.mXNodeList.empty())
            return entry->second.mXNodeList.front();
    } catch (const ResultStatus& failure) {
        traceFailure(failure);
    }
    return {};
}

} // namespace

const char* calStatus(int reading, int lowerCritical, int lowerNonRec, int lowerNonCri, int upperCritical,
                      int upperNonRec, int upperNonCri)
{
    if (reading == noValue)
        return "unknown";
    if (isOutside(reading, lowerNonRec, upperNonRec) || isOutside(reading, lowerCritical, upperCritical))
        return "critical";
    if (isOutside(reading, lowerNonCri, upperNonCri))
        return "nonCritical";
    return wordInside({lowerCritical, lowerNonRec, lowerNonCri, upperCritical, upperNonRec, upperNonCri});
}

const char* coolingcalStatus(int reading, int lowerCritical, int lowerNonRec, int lowerNonCri, int upperCritical,
                             int upperNonRec, int upperNonCri)
{
    const std::string model = readBoardModel();
    if (reading == noValue)
        return "unknown";
    if (isOutside(reading, lowerNonRec, upperNonRec))
        return std::ranges::find(strictFanBoards, model) != std::end(strictFanBoards) ? "critical" : "nonCritical";
    if (isOutside(reading, lowerCritical, upperCritical))
        return "critical";
    if (isOutside(reading, lowerNonCri, upperNonCri))
        return "nonCritical";
    return wordInside({lowerCritical, lowerNonRec, lowerNonCri, upperCritical, upperNonRec, upperNonCri});
}

int getStatusEnum(const char* word)
{
    const auto* const row = std::ranges::find(statusWords, std::string_view(word), &StatusWord::word);
    return row == std::end(statusWords) ? ENUM_STATUS_UNAVAILABLE : row->status;
}

const char* healthWord(int status)
{
    switch (status) {
    case ENUM_STATUS_OK:
        return "Healthy";
    case ENUM_STATUS_NONCRI:
        return "Warning";
    case ENUM_STATUS_CRITICAL:
    case ENUM_STATUS_NONREC:
        return "Critical";
    default:
        return "Unavailable";
    }
}
