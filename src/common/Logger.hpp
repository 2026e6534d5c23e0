#pragma once

#include "common/Descriptor.hpp"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

namespace LOGGER {

/// Diagnostic categories, each switched by a bit of the SDK's start-up word: first 2, second 4, third (verbose) 8.
enum class Category : unsigned char { First, Second, Third };

/// The SDK's log file, "/var/log/Morvandale/Morvandale-%d-%m-%Y-%H-%M.log". A file that can't be opened costs the
/// messages, never the operation. Safe to use from any thread.
class Logger {
public:
    static Logger* CreateInstance();
    ~Logger();

    /// Makes the log directory (mode 0700, failure ignored) and clears the line count.
    void Init();
    /// Closes the file and clears the line count.
    void Cleanup();

    /// Writes one line, unless logging is off. The message that opens a file is not written; every call of the system
    /// passes level 2, whose form bears neither file nor function. A message is cut to 4,095 characters.
    void Log(int level, std::string file, const char* function, int line, const char* format, ...)
        __attribute__((format(printf, 6, 7)));
    /// Formats at most 2,048 bytes into `out`; leaves `out` as it is when that gives nothing.
    void CreateMessage(std::string& out, const char* format, ...) __attribute__((format(printf, 3, 4)));

    static void SetCategory(Category category, bool on) { Switch(BitOf(category), on); }
    static void SetOff(bool off) { Switch(offBit, off); }
    /// True if a message of `category` would be written; asked before anything costly is formatted. One load.
    static bool Wants(Category category)
    {
        const unsigned bit = BitOf(category);
        return (switches.load(std::memory_order_relaxed) & (bit | offBit)) == bit;
    }

private:
    static constexpr unsigned offBit = 1U << 7;

    Logger();
    static unsigned BitOf(Category category) { return 1U << static_cast<unsigned>(category); }
    static void Switch(unsigned bit, bool on)
    {
        if (on)
            switches |= bit;
        else
            switches &= ~bit;
    }
    bool StartFile();
    void CloseFile();
    void WriteLine(std::string_view text);

    static inline std::atomic<unsigned> switches{0};

    common::File output;
    std::uint64_t lines = 0;
    std::mutex guard; ///< of `output` and `lines`
};

} // namespace LOGGER

/// Logs `...` (a printf format and its arguments) if `category` is on. The arguments are evaluated only then.
#define HW_LOG(category, ...)                                                                                          \
    do {                                                                                                               \
        if (LOGGER::Logger::Wants(category))                                                                           \
            LOGGER::Logger::CreateInstance()->Log(2, __FILE__, __func__, __LINE__, __VA_ARGS__);                       \
    } while (false)
