#pragma once

#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>

namespace LOGGER {

/// Diagnostic categories, each switched by a bit of the SDK's start-up word: first 2, second 4, third (verbose) 8.
enum class Category : unsigned char { First, Second, Third };

/// The SDK's log file, "/var/log/Morvandale/Morvandale-%d-%m-%Y-%H-%M.log".
class Logger {
public:
    static Logger* CreateInstance();
    ~Logger();

    /// Makes the log directory (mode 0700, failure ignored) and clears the line count.
    void Init();
    /// Closes the file and clears the line count.
    void Cleanup();

    /// Writes one line. The message that opens a file is not written; every call of the system passes level 2.
    void Log(int level, std::string file, const char* function, int line, const char* format, ...)
        __attribute__((format(printf, 6, 7)));
    /// Formats at most 2,048 bytes into `out`; leaves `out` as it is when that gives nothing.
    void CreateMessage(std::string& out, const char* format, ...) __attribute__((format(printf, 3, 4)));

    void SetCategory(Category category, bool on) { flags[static_cast<int>(category)] = on; }
    void SetOff(bool off) { loggingOff = off; }
    /// True if a message of `category` would be written; asked before anything costly is formatted.
    bool Wants(Category category) const { return !loggingOff && flags[static_cast<int>(category)]; }

private:
    Logger();
    bool OpenFile();

    bool flags[4] = {};
    bool loggingOff = false;
    std::FILE* file_ = nullptr;
    std::uint64_t lines = 0;
    std::mutex guard;
};

} // namespace LOGGER

/// Logs `...` (a printf format and its arguments) if `category` is on.
#define HW_LOG(category, ...)                                                                                          \
    do {                                                                                                               \
        if (auto* hwLogger = LOGGER::Logger::CreateInstance(); hwLogger->Wants(category))                              \
            hwLogger->Log(2, __FILE__, __func__, __LINE__, __VA_ARGS__);                                               \
    } while (false)
