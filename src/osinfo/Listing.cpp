#include "osinfo/Listing.hpp"

#include "common/Descriptor.hpp"
#include "common/Seams.hpp"
#include "osinfo/OsInfo.hpp"

#include <charconv>
#include <sys/mman.h>
#include <utility>

namespace osinfo {

namespace {

constexpr std::size_t longestLine = 255;
constexpr std::size_t mostLines = 4096; ///< against a file or a program without end

std::vector<std::string> readLines(std::FILE* file)
{
    std::vector<std::string> lines;
    std::string line;
    for (int byte = std::fgetc(file); byte != EOF && lines.size() < mostLines; byte = std::fgetc(file)) {
        if (byte == '\n')
            lines.push_back(std::exchange(line, {}));
        else if (line.size() < longestLine)
            line += static_cast<char>(byte);
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

} // namespace

std::vector<std::string> linesOfFile(const std::string& absolutePath)
{
    const common::File file = common::openToRead(systemPath(absolutePath));
    return file ? readLines(file.get()) : std::vector<std::string>();
}

std::vector<std::string> linesOfCommand(std::vector<std::string> argv)
{
    argv.insert(argv.begin(), {"env", "LC_ALL=C"});
    const auto output = common::streamOver(common::Descriptor(memfd_create("osinfo", MFD_CLOEXEC)), "r+");
    if (!output || runCommand(argv, fileno(output.get())) < 0)
        return {};
    std::rewind(output.get());
    return readLines(output.get());
}

std::vector<std::string> wordsOf(std::string_view line)
{
    std::vector<std::string> words;
    split(line, " \t\r", words);
    return words;
}

std::optional<unsigned long long> parseNumber(std::string_view text)
{
    unsigned long long number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

} // namespace osinfo
