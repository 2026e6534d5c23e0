#include "client/status/StatusWords.hpp"
#include "client/words/Entities.hpp"
#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"

#include <algorithm>
#include <string_view>

namespace {

constexpr const char* statusNames[] = {"other", "unknown", "ok", "nonCritical", "critical", "nonRecoverable"};

struct SeverityWord {
    std::string_view word;
    HEALTH_STATUS status;
};

constexpr SeverityWord severityWords[] = {
    {"Monitor", ENUM_STATUS_OTHER},   {"Information", ENUM_STATUS_OTHER}, {"OK", ENUM_STATUS_OK},
    {"Degraded", ENUM_STATUS_NONCRI}, {"Error", ENUM_STATUS_CRITICAL},    {"CRITICAL", ENUM_STATUS_CRITICAL},
    {"Fatal", ENUM_STATUS_NONREC},
};

struct HealthName {
    std::string_view word;
    std::string_view shown;
};

constexpr HealthName healthNames[] = {
    {"ok", "Healthy"},        {"nonCritical", "Warning"},     {"warning", "Warning"},
    {"critical", "Critical"}, {"nonRecoverable", "Critical"},
};

} // namespace

const char* getStringStatus(int status)
{
    return status >= ENUM_STATUS_OTHER && status <= ENUM_STATUS_NONREC ? statusNames[status - 1] : nullptr;
}

int getOrvelStatus(const char* severity)
{
    const auto* const row = std::ranges::find(severityWords, std::string_view(severity), &SeverityWord::word);
    return row == std::end(severityWords) ? ENUM_STATUS_UNKNOWN : row->status;
}

int getNewHealthEnum(int status)
{
    trace("Old Health Status : %d\n", status);
    switch (status) {
    case ENUM_STATUS_OK:
        return ENUM_STATUS_HEALTHY;
    case ENUM_STATUS_NONCRI:
        return ENUM_STATUS_WARNING;
    case ENUM_STATUS_CRITICAL:
    case ENUM_STATUS_NONREC:
        return ENUM_STATUS_CRITIC;
    default:
        return ENUM_STATUS_UNAVAILABLE;
    }
}

char* getNewHealthString(const char* status)
{
    trace("Old Health String : %s\n", status);
    const auto* const row = std::ranges::find(healthNames, std::string_view(status), &HealthName::word);
    return newTextBlock(row == std::end(healthNames) ? "Unavailable" : row->shown);
}
