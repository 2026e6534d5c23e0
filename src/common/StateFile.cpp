#include "common/StateFile.hpp"

#include "common/Descriptor.hpp"
#include "common/Seams.hpp"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace common {

namespace {

constexpr mode_t folderMode = 0700, fileMode = 0600, writableForOthers = 022;
constexpr off_t mostBytes = 4L << 20;
/// In front of the contents: 16 digits and a line's end.
constexpr std::size_t checksumBytes = 17;

/// FNV-1a, which finds what a full disk or a spoilt sector does to a file.
std::string checksum(std::string_view contents)
{
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char each : contents)
        sum = (sum ^ static_cast<unsigned char>(each)) * 0x100000001B3;
    char text[checksumBytes + 1];
    std::snprintf(text, sizeof text, "%016llx\n", static_cast<unsigned long long>(sum));
    return text;
}

/// Whether nobody but us could have written there.
bool isOurs(const Descriptor& opened, mode_t kind)
{
    struct stat status {};
    return opened && fstat(opened.get(), &status) == 0 && (status.st_mode & S_IFMT) == kind &&
           status.st_uid == geteuid() && (status.st_mode & writableForOthers) == 0 && status.st_size <= mostBytes;
}

bool writeAll(int file, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(file, text.data(), text.size());
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::string readAll(int file)
{
    std::string text;
    char part[4096];
    for (ssize_t got = 0; (got = read(file, part, sizeof part)) > 0;)
        text.append(part, static_cast<std::size_t>(got));
    return text;
}

} // namespace

Descriptor openOwnFolder(const char* folder, IfMissing ifMissing)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const std::string path = systemPath(folder);
    Descriptor opened(open(path.c_str(), flags));
    if (!opened && ifMissing == IfMissing::make && mkdir(path.c_str(), folderMode) == 0)
        opened = Descriptor(open(path.c_str(), flags));
    if (opened && !isOurs(opened, S_IFDIR)) {
        errno = EPERM;
        return Descriptor();
    }
    return opened;
}

std::optional<std::string> readStateFile(const std::string& name, const char* folder)
{
    const Descriptor place = openOwnFolder(folder, IfMissing::fail);
    if (!place)
        return std::nullopt;
    const Descriptor file(openat(place.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!isOurs(file, S_IFREG))
        return std::nullopt;
    const std::string text = readAll(file.get());
    if (text.size() < checksumBytes || !text.starts_with(checksum(std::string_view(text).substr(checksumBytes))))
        return std::nullopt;
    return text.substr(checksumBytes);
}

bool writeStateFile(const std::string& name, std::string_view contents, const char* folder)
{
    const Descriptor place = openOwnFolder(folder, IfMissing::make);
    if (!place)
        return false;
    const std::string fresh = name + ".new";
    unlinkat(place.get(), fresh.c_str(), 0);
    const Descriptor file(
        openat(place.get(), fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode));
    return file && writeAll(file.get(), checksum(contents)) && writeAll(file.get(), contents) &&
           fdatasync(file.get()) == 0 && renameat(place.get(), fresh.c_str(), place.get(), name.c_str()) == 0;
}

} // namespace common
