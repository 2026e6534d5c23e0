#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

/// The fuzzer's bytes, taken one thing after the other. When they have run out, numbers are 0 and all else is empty.
class Input {
public:
    using Bytes = std::vector<std::uint8_t>;

    Input(const std::uint8_t* data, std::size_t size) : left(data, size) {}

    bool empty() const { return left.empty(); }
    std::uint8_t byte()
    {
        const auto taken = take(1);
        return taken.empty() ? std::uint8_t{0} : taken.front();
    }
    unsigned word() { return byte() | static_cast<unsigned>(byte()) << 8; }
    /// At most `count` bytes, in a buffer that ends where they end.
    Bytes bytes(std::size_t count)
    {
        const auto taken = take(count);
        return {taken.begin(), taken.end()};
    }
    /// As many bytes as the next one says.
    Bytes part() { return bytes(byte()); }
    Bytes rest() { return bytes(left.size()); }
    std::string text(std::size_t count)
    {
        const auto taken = take(count);
        return {taken.begin(), taken.end()};
    }
    std::string restAsText() { return text(left.size()); }

private:
    std::span<const std::uint8_t> take(std::size_t count)
    {
        const auto taken = left.first(std::min(count, left.size()));
        left = left.subspan(taken.size());
        return taken;
    }

    std::span<const std::uint8_t> left;
};

/// A finding unless `sound`.
inline void require(bool sound)
{
    if (!sound)
        std::abort();
}
