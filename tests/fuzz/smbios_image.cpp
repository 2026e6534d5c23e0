#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/fuzz/Input.hpp"
#include "tests/support/SmbiosImage.hpp"

// A table as firmware leaves it, of any version, behind an entry point that is sound; or the whole image.

namespace {

constexpr unsigned wholeImage = 0xFF;
constexpr unsigned newestWide = 0x40;   ///< the policy's catalogue, behind an entry point of 64 bits
constexpr unsigned countOfInput = 0x80; ///< the entry point's count comes with the input, and not from the structures

std::string imageOf(Input& input)
{
    const unsigned choice = input.byte();
    if (choice == wholeImage)
        return input.restAsText();
    SmbiosImage image(2, choice & 7);
    image.count = choice & countOfInput ? input.word() : 0xFFFF;
    image.table = input.text(0xFFFF);
    return choice & newestWide ? image.wideDump() : image.dump();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const common::ScopedPolicy policy(size > 0 && (data[0] & newestWide) ? common::practicalPolicy()
                                                                         : common::Policy());
    const std::string image = imageOf(input);
    const std::vector<unsigned char> exact(image.begin(), image.end());
    try {
        const Protocol::SMBIOS::SMBIOSProtocolImpl reader(exact.data(), static_cast<unsigned>(exact.size()));
        ResultMap types, values;
        reader.SMBiosSearch("/SMBIOS", types);
        for (const auto& [path, node] : types) {
            reader.SMBiosSearch(path, values);
            reader.SMBiosChildren(path, values);
        }
    } catch (const ResultStatus&) { // no entry point
    }
    return 0;
}
