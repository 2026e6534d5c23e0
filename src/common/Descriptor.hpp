#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace common {

/// Owns a file descriptor; a negative number stands for none.
class Descriptor {
public:
    explicit Descriptor(int opened = -1) : number(opened) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }

    explicit operator bool() const { return number >= 0; }
    int get() const { return number; }
    /// Gives the number away: somebody else closes it.
    int release() { return std::exchange(number, -1); }
    /// Whether it is open on a file that has a beginning and an end.
    bool isRegularFile() const;

private:
    int number;
};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Owns a stdio stream.
using File = std::unique_ptr<std::FILE, FileCloser>;

/// The file opened for reading, closed in programs that are run; null if that fails.
File openToRead(const std::string& path);
/// All bytes of the file, which may come in pieces; none if there is no file, it has more than `most`, or reading
/// fails. Does not wait, whatever stands at the path.
std::vector<std::uint8_t> readSmallFile(const std::string& path, std::size_t most);
/// The same as text.
std::string readSmallText(const std::string& path, std::size_t most);
/// A stream over the descriptor, which it then owns; null, and the descriptor closed, if there is none.
File streamOver(Descriptor descriptor, const char* mode);

} // namespace common
