#pragma once

#include "common/XNode.hpp"

#include <chrono>
#include <functional>
#include <string>

/// The query cache as the practical mode uses it: one thread asks the controller and publishes each answer as it comes;
/// all others look up what was published, and what they miss is asked next. Nobody who looks up ever waits.

namespace client::query {

/// Marks the calling thread, for a scope, as the one that talks with the controller.
class ReadingScope {
public:
    ReadingScope();
    ~ReadingScope();
    ReadingScope(const ReadingScope&) = delete;
    ReadingScope& operator=(const ReadingScope&) = delete;
};

/// Marks the calling thread, for a scope, as one that only looks up: for what keeps others waiting meanwhile.
class LookUpScope {
public:
    LookUpScope();
    ~LookUpScope();
    LookUpScope(const LookUpScope&) = delete;
    LookUpScope& operator=(const LookUpScope&) = delete;

private:
    int before;
};

/// Whether the calling thread may wait for the controller.
bool mayAsk();

/// Adds the query to those that the reading thread asks by itself. A sensor's reading is asked again in each pass,
/// everything else until there is an answer.
void want(const std::string& query);

/// Copies the answer that was published last. False without one, or with a reading older than three refresh periods;
/// the query is wanted from now on.
bool lookUp(const std::string& query, ResultMap& result);

/// Asks the SDK and publishes the answer. Throws what the SDK throws.
void askController(const std::string& query, ResultMap& result);

/// The same, if this thread may ask; a failure is told as those of a pass are.
void readNow(const std::string& query);

/// Makes an answer known from now on.
void publish(const std::string& query, const ResultMap& answer);

/// Forgets what was published of queries that begin with `prefix`, but for the readings: they age by themselves.
void forgetStanding(const std::string& prefix);

/// How a pass ended: all asked, stopped by the caller, or given up on a controller that is silent.
enum class PassEnd { whole, interrupted, silent };

/// Asks every wanted query that is due: sensors that were never read first, then what somebody looked for last. A
/// failing query harms itself alone. Ends early when the controller's interface fails three times in a row, or when
/// `goOn`, called before each, says no; the next call goes on with what such a pass has left.
PassEnd readWanted(const std::function<bool()>& goOn);

/// What a pass took bears on how long a reading holds: a controller may be slower than the configured period.
/// `length` runs from the beginning of a pass to the beginning of the next.
void setRefreshPeriod(std::chrono::nanoseconds length);
std::chrono::nanoseconds refreshPeriod();

/// Whether something has come to be wanted since the last call.
bool takeNewlyWanted();

/// Whether the repository of sensor data records has changed since it was read; false when it cannot be asked.
bool repositoryChanged();

/// How a reading of the repository went: it came to its end, there is more to read, or that could not be read now.
enum class Progress { ended, more, failed };

/// Reads the repository for about `time`, on from where the last call ended. What has been read is found by queries.
Progress readRepository(std::chrono::nanoseconds time);

/// How often the controller's interface has failed the calling thread since the process began.
unsigned long interfaceFailures();

/// As at the start of the process. For tests.
void forgetAll();

} // namespace client::query
