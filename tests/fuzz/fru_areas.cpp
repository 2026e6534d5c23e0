#include "tests/fuzz/World.hpp"

#include "modules/bmc/subjects/FruAreas.hpp"

#include <numeric>

// A FRU device's inventory. The first byte says how the device gives it out, and whether its sums are made right,
// without which hardly any input would come past them.

namespace {

using Bytes = Input::Bytes;
using namespace Module::BMCConfig;

enum Trait : std::uint8_t { RIGHT_SUMS = 0x01, WORDS = 0x02, SMALL_PIECES = 0x04, SHORT_PIECES = 0x08, NO_SIZE = 0x10 };

void makeSumRight(Bytes& bytes, std::size_t first, std::size_t length)
{
    if (length == 0 || first + length > bytes.size())
        return;
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(first);
    const auto last = begin + static_cast<std::ptrdiff_t>(length) - 1;
    *last = static_cast<std::uint8_t>(-std::accumulate(begin, last, 0));
}

void makeSumsRight(Bytes& inventory)
{
    makeSumRight(inventory, 0, fruHeaderSize);
    for (const std::size_t offset : fruAreaOffsets(inventory))
        if (offset != 0 && offset < inventory.size())
            makeSumRight(inventory, offset, fruAreaLength(std::span(inventory).subspan(offset)));
}

class Device {
public:
    explicit Device(Input& input) : traits(input.byte()), inventory(input.rest())
    {
        if (traits & RIGHT_SUMS)
            makeSumsRight(inventory);
    }

    IpmiAnswer tellSize() const
    {
        if (traits & NO_SIZE)
            return {0xC1};
        return {0, static_cast<std::uint8_t>(inventory.size()), static_cast<std::uint8_t>(inventory.size() >> 8),
                static_cast<std::uint8_t>(unit() - 1)};
    }

    IpmiAnswer read(const IpmiRequest& request) const
    {
        const std::size_t most = traits & SMALL_PIECES ? 16 : 255;
        const std::size_t offset = (request.data.at(1) | request.data.at(2) << 8) * unit();
        const std::size_t count = request.data.at(3) * unit();
        if (offset >= inventory.size())
            return {0xC9};
        if (count > most && !(traits & SHORT_PIECES))
            return {0xCA};
        const std::size_t given = std::min({count, most, inventory.size() - offset});
        IpmiAnswer answer{0, static_cast<std::uint8_t>((given + unit() - 1) / unit())};
        const auto first = inventory.begin() + static_cast<std::ptrdiff_t>(offset);
        answer.insert(answer.end(), first, first + static_cast<std::ptrdiff_t>(given));
        return answer;
    }

    const Bytes& bytes() const { return inventory; }

private:
    std::size_t unit() const { return traits & WORDS ? 2 : 1; }

    std::uint8_t traits;
    Bytes inventory;
};

/// UTF-8 without control characters, which is what an OCTET STRING of a manager's table shows.
void checkText(const std::string& text)
{
    std::size_t tail = 0;
    for (const char character : text) {
        const auto byte = static_cast<std::uint8_t>(character);
        require((byte & 0xC0) == 0x80 ? tail > 0 : tail == 0);
        require(byte >= 0x20 && byte != 0x7F);
        tail = tail > 0 ? tail - 1 : byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
    }
    require(tail == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    World world(input);
    const Device device(input);
    world.bmc.on(0x0A, 0x10, device.tellSize());
    world.bmc.on(0x0A, 0x11, [&](const IpmiRequest& request) { return device.read(request); });
    for (const auto& [path, node] : world.ask("/BMC/FRU[1]"))
        for (const std::string& text : node.mXNodeList)
            checkText(text);
    for (const FruArea kind : {FruArea::Chassis, FruArea::Board, FruArea::Product})
        for (const auto& [name, text] : decodeFruArea(kind, device.bytes()))
            checkText(text);
    return 0;
}
