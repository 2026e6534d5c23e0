#include "common/Logger.hpp"

#include "common/Seams.hpp"

#include <cstdarg>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace LOGGER {

namespace {

constexpr const char* logDirectory = "/var/log/Morvandale";
constexpr const char* fileNameFormat = "Morvandale-%d-%m-%Y-%H-%M.log";
constexpr std::uint64_t mostLines = 50'000;

std::string nameForNow()
{
    const std::time_t now = currentSeconds();
    std::tm local{};
    char name[1024] = {};
    if (!localtime_r(&now, &local) || std::strftime(name, sizeof name, fileNameFormat, &local) == 0)
        return {};
    return name;
}

/// The log runs as root: neither a directory nor a file put there as a link leads it elsewhere.
common::File openToAppend(const std::string& directory, const std::string& name)
{
    const common::Descriptor parent(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!parent)
        return nullptr;
    constexpr int flags = O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC;
    return common::streamOver(common::Descriptor(openat(parent.get(), name.c_str(), flags, 0600)), "a+");
}

/// What system call 224 returns, in the field's seven characters. Its arguments are zeros, so that whatever the call
/// means on this processor it is given no address to write to.
std::string threadField()
{
    constexpr long threadCall = 224;
    constexpr std::size_t width = 7;
    return std::to_string(static_cast<unsigned>(syscall(threadCall, 0L, 0L, 0L, 0L, 0L, 0L))).substr(0, width);
}

std::string baseName(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace

Logger* Logger::CreateInstance()
{
    static Logger logger;
    return &logger;
}

Logger::Logger()
{
    Init();
}

Logger::~Logger()
{
    SetOff(true); // detached threads may still ask while the process exits
    Cleanup();
}

void Logger::Init()
{
    const std::lock_guard lock(guard);
    mkdir(systemPath(logDirectory).c_str(), 0700);
    lines = 0;
}

void Logger::Cleanup()
{
    const std::lock_guard lock(guard);
    CloseFile();
}

void Logger::CloseFile()
{
    output.reset();
    lines = 0;
}

bool Logger::StartFile()
{
    if (output && lines <= mostLines)
        return false;
    if (output) {
        CloseFile();
        mkdir(systemPath(logDirectory).c_str(), 0700);
    }
    output = openToAppend(systemPath(logDirectory), nameForNow());
    return true;
}

void Logger::WriteLine(std::string_view text)
{
    const std::lock_guard lock(guard);
    if (StartFile())
        return; // the message that opens a file is given up for it
    if (std::fwrite(text.data(), 1, text.size(), output.get()) != text.size())
        std::clearerr(output.get());
    std::fflush(output.get());
    ++lines;
}

void Logger::Log(int level, std::string file, const char* function, int line, const char* format, ...)
{
    if (switches & offBit)
        return;
    char message[4096];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);

    constexpr int withPlace = 1;
    const std::string thread = threadField();
    char text[4608];
    if (level == withPlace)
        std::snprintf(text, sizeof text, "[%s] %s:%d:%s() %s\n", thread.c_str(), baseName(file).c_str(), line, function,
                      message);
    else
        std::snprintf(text, sizeof text, "[%s] [%s] [%s] %s\n", "", thread.c_str(), "", message);
    WriteLine(text);
}

void Logger::CreateMessage(std::string& out, const char* format, ...)
{
    char message[2048 + 1] = {};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    if (message[0])
        out = message;
}

} // namespace LOGGER
