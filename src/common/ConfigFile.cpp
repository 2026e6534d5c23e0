#include "common/ConfigFile.hpp"

#include "common/Descriptor.hpp"

#include <array>
#include <cctype>
#include <fcntl.h>
#include <unistd.h>

namespace common {

namespace {

constexpr std::size_t longestLine = 1023;
constexpr std::size_t shortestLine = 2;

/// Gathers a file into lines and drops those that are too long, without keeping more of them than that.
class LineTaker {
public:
    LineTaker(const TakeEntry& taker, const TakeOddLine& oddTaker) : take(taker), takeOdd(oddTaker) {}

    void add(std::string_view text)
    {
        for (const char character : text) {
            if (character == '\n')
                finish();
            else if (line.size() <= longestLine)
                line.push_back(character);
        }
    }

    void finish()
    {
        ++number;
        if (line.size() > longestLine)
            passOver("longer than 1,023 characters: ignored");
        else if (auto entry = parseConfigLine(line)) {
            entry->line = number;
            take(*entry);
        } else if (const std::size_t first = line.find_first_not_of(" \t\r"); first < line.size() && line[first] != '#')
            passOver("neither \"key = value\" nor a comment: ignored");
        line.clear();
    }

private:
    void passOver(const char* why)
    {
        if (takeOdd)
            takeOdd(number, why);
    }

    const TakeEntry& take;
    const TakeOddLine& takeOdd;
    std::string line;
    int number = 0;
};

} // namespace

std::optional<ConfigEntry> parseConfigLine(std::string_view line)
{
    line = line.substr(0, line.find('\0'));
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::size_t sign = line.find('=');
    if (line.size() < shortestLine || line.front() == '#' || sign == std::string_view::npos)
        return std::nullopt;
    ConfigEntry entry;
    for (const char character : line.substr(0, sign))
        if (character != ' ')
            entry.key.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(character))));
    std::string_view value = line.substr(sign + 1);
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    for (const char character : value)
        if (character != '"')
            entry.value.push_back(character);
    return entry;
}

bool readConfigFile(const std::string& path, const TakeEntry& take, const TakeOddLine& takeOdd)
{
    // A pipe in the file's place must not make the start wait for a writer.
    const common::Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isRegularFile())
        return false;
    LineTaker lines(take, takeOdd);
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(file.get(), buffer.data(), buffer.size())) > 0;)
        lines.add({buffer.data(), static_cast<std::size_t>(count)});
    lines.finish();
    return true;
}

} // namespace common
