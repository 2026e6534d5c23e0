#include "client/status/StatusWords.hpp"

#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"

#include <algorithm>
#include <string_view>

using namespace client::words;

namespace {

/// One step of both scales: the word that the rules give, its numbers, and the word that managers see.
struct Status {
    std::string_view word;
    HEALTH_STATUS ofEvent;
    NEW_HEALTH_STATUS ofRow;
    const char* shown;
};

constexpr Status statuses[] = {
    {"other", ENUM_STATUS_OTHER, ENUM_STATUS_UNAVAILABLE, "Unavailable"},
    {"unknown", ENUM_STATUS_UNKNOWN, ENUM_STATUS_UNAVAILABLE, "Unavailable"},
    {"ok", ENUM_STATUS_OK, ENUM_STATUS_HEALTHY, "Healthy"},
    {"nonCritical", ENUM_STATUS_NONCRI, ENUM_STATUS_WARNING, "Warning"},
    {"critical", ENUM_STATUS_CRITICAL, ENUM_STATUS_CRITIC, "Critical"},
    {"nonRecoverable", ENUM_STATUS_NONREC, ENUM_STATUS_CRITIC, "Critical"},
    {"warning", ENUM_STATUS_NONCRI, ENUM_STATUS_WARNING, "Warning"}, // another word for nonCritical
};
constexpr const Status& unknown = statuses[1];

/// Null for a number off the scale.
const Status* findStatus(int ofEvent)
{
    const auto* const found = std::ranges::find(statuses, ofEvent, &Status::ofEvent);
    return found == std::end(statuses) ? nullptr : found;
}

const Status& statusNamed(std::string_view word)
{
    const auto* const found = std::ranges::find(statuses, word, &Status::word);
    return found == std::end(statuses) ? unknown : *found;
}

struct SeverityWord {
    std::string_view word;
    HEALTH_STATUS status;
};

constexpr SeverityWord severityWords[] = {
    {"Monitor", ENUM_STATUS_OTHER},   {"Information", ENUM_STATUS_OTHER}, {"OK", ENUM_STATUS_OK},
    {"Degraded", ENUM_STATUS_NONCRI}, {"Error", ENUM_STATUS_CRITICAL},    {"CRITICAL", ENUM_STATUS_CRITICAL},
    {"Fatal", ENUM_STATUS_NONREC},
};

} // namespace

const char* getStringStatus(int status)
{
    const Status* const found = findStatus(status);
    return found ? found->word.data() : nullptr;
}

int getOrvelStatus(const char* severity)
{
    const auto* const row = std::ranges::find(severityWords, std::string_view(severity), &SeverityWord::word);
    return row == std::end(severityWords) ? ENUM_STATUS_UNKNOWN : row->status;
}

int getNewHealthEnum(int status)
{
    trace("Old Health Status : %d\n", status);
    const Status* const found = findStatus(status);
    return found ? found->ofRow : ENUM_STATUS_UNAVAILABLE;
}

char* getNewHealthString(const char* status)
{
    trace("Old Health String : %s\n", status);
    return newTextBlock(statusNamed(status).shown);
}

namespace client::status {

int rowStatusOf(const char* word)
{
    return statusNamed(word).ofRow;
}

int eventStatusOf(const char* word)
{
    return statusNamed(word).ofEvent;
}

const char* healthWord(int status)
{
    const Status* const found = findStatus(status);
    return found ? found->shown : unknown.shown;
}

} // namespace client::status
