#pragma once

#include <chrono>
#include <string>

namespace common {

/// Gravity of a message, as syslog(3) counts it.
enum class Gravity { error = 3, warning = 4, notice = 5, information = 6 };

/// Where the messages for the administrator go. Replaceable with ScopedSeam.
struct SystemLog {
    virtual ~SystemLog() = default;
    virtual void write(Gravity gravity, const std::string& text) = 0;
    static SystemLog& real();
};

/// Writes one line to the system's log in the practical mode; nothing without it, when messages are those on standard
/// error alone. Any thread.
void report(Gravity gravity, const std::string& text);

/// Likewise for what may come again and again: the first of `key` at once, later ones once an hour with the number of
/// those left out. `key` is short and one of few.
void reportLimited(Gravity gravity, const std::string& key, const std::string& text);

/// The key of what says that there is no controller, or none that answers: the cause of much else.
inline constexpr const char* controllerKey = "controller";

/// Whether `key` was told of and has not ended. For what would only repeat it in other words.
bool stillStands(const std::string& key);

/// Forgets `key`: the next of it is told at once. For a state that has ended.
void reportEnded(const std::string& key);

} // namespace common
