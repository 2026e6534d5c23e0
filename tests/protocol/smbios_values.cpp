#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "protocol/SMBIOSProtocolImpl.hpp"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string_view>

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;

void printBelow(const SMBIOSProtocolImpl& reader, const std::string& path)
{
    ResultMap found;
    reader.SMBiosSearch(path, found);
    for (const auto& [name, node] : found) {
        const bool isGroup = node.mType == NODE_NONLEAF;
        std::printf("%s\t%s\n", name.c_str(), isGroup ? "" : node.mXNodeList.front().c_str());
        if (isGroup)
            printBelow(reader, name);
    }
}

} // namespace

/// smbios_values [practical] DUMP: each value of the dump as "path<TAB>value", a group as its path and a tab, or the
/// error's code.
int main(int argc, char** argv)
{
    const bool practical = argc == 3 && std::string_view(argv[1]) == "practical";
    const common::ScopedPolicy policy(practical ? common::practicalPolicy() : common::Policy());
    std::ifstream file(argc > 1 ? argv[argc - 1] : "", std::ios::binary);
    const std::string image{std::istreambuf_iterator<char>(file), {}};
    try {
        const SMBIOSProtocolImpl reader(reinterpret_cast<const unsigned char*>(image.data()),
                                        static_cast<unsigned>(image.size()));
        printBelow(reader, "/SMBIOS");
        return 0;
    } catch (const ResultStatus& status) {
        std::fprintf(stderr, "%d\n", int{status.getval()});
        return 1;
    }
}
