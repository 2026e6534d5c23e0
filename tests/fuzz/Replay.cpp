// replay FOLDER COUNT: a fuzz target without libFuzzer. Runs each file of the folder as it is, and COUNT mutants of it,
// which are the same in each run; what a sanitizer finds ends it.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;
using Dice = std::minstd_rand;

std::size_t upTo(Dice& dice, std::size_t most)
{
    return std::uniform_int_distribution<std::size_t>(0, most)(dice);
}

void mutateOnce(Bytes& bytes, Dice& dice)
{
    constexpr std::uint8_t telling[] = {0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF};
    const std::size_t place = upTo(dice, bytes.size() - 1);
    switch (upTo(dice, 4)) {
    case 0:
        bytes[place] ^= static_cast<std::uint8_t>(1U << upTo(dice, 7));
        break;
    case 1:
        bytes[place] = telling[upTo(dice, std::size(telling) - 1)];
        break;
    case 2:
        bytes[place] = static_cast<std::uint8_t>(upTo(dice, 255));
        break;
    case 3:
        bytes.resize(place + 1);
        break;
    default: // a part once more
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(place), bytes[upTo(dice, bytes.size() - 1)]);
    }
}

Bytes mutantOf(Bytes bytes, Dice& dice)
{
    for (std::size_t turns = 1 + upTo(dice, 7); turns > 0 && !bytes.empty(); --turns)
        mutateOnce(bytes, dice);
    return bytes;
}

Bytes read(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return EXIT_FAILURE;
    std::vector<std::filesystem::path> paths(std::filesystem::directory_iterator(argv[1]), {});
    std::ranges::sort(paths);
    Dice dice;
    std::size_t runs = 0;
    for (const std::filesystem::path& path : paths) {
        Bytes input = read(path);
        for (int mutants = std::atoi(argv[2]);; input = mutantOf(read(path), dice)) {
            LLVMFuzzerTestOneInput(input.data(), input.size());
            ++runs;
            if (mutants-- == 0)
                break;
        }
    }
    std::printf("%zu inputs of %zu files\n", runs, paths.size());
    return paths.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}
