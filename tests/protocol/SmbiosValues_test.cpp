#include "protocol/SMBIOSProtocolImpl.hpp"
#include "tests/support/SmbiosImage.hpp"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Protocol::SMBIOS::SMBIOSProtocolImpl;
using testing::ElementsAre;

SMBIOSProtocolImpl readImage(const SmbiosImage& image)
{
    const std::string dump = image.dump();
    return {reinterpret_cast<const unsigned char*>(dump.data()), static_cast<unsigned>(dump.size())};
}

/// The value of a leaf, "(none)" without one.
std::string valueOf(const SMBIOSProtocolImpl& reader, const std::string& path)
{
    ResultMap result;
    reader.SMBiosSearch(path, result);
    const auto node = result.find(path);
    return node == result.end() ? "(none)" : node->second.mXNodeList.front();
}

/// A slip in an offset shows as a gap or an overlap: the standard's formatted areas have neither.
TEST(SmbiosValues, FieldsOfAStructureFollowOneAnother)
{
    for (unsigned minor = 3; minor <= 7; ++minor) {
        const SMBIOSProtocolImpl reader = readImage(serverImage(2, minor));
        for (const auto& [type, structure] : reader.Tables()) {
            std::size_t next = 4;
            for (const auto& field : structure.fields) {
                EXPECT_EQ(field.offset, next) << minor << " " << int{type} << " " << field.name;
                next = field.offset + field.size();
                EXPECT_TRUE(
                    std::ranges::is_sorted(field.values, std::less_equal<>{}, &Protocol::SMBIOS::ValueText::code))
                    << field.name;
            }
        }
    }
}

TEST(SmbiosValues, ChildrenAreThePathsRightBelow)
{
    const SMBIOSProtocolImpl reader = readImage(serverImage(2, 7));
    ResultMap result;
    for (const char* path : {"/SMBIOS/Type24", "/SMBIOS/Type16[2]",
                             "/SMBIOS/Type24/HardwareSecuritySettings/FrontPanelReset", "/SMBIOS/Nothing"})
        reader.SMBiosChildren(path, result);
    ASSERT_EQ(result.size(), 3U);
    EXPECT_EQ(result.at("/SMBIOS/Type24").mType, NODE_NONLEAF);
    EXPECT_THAT(result.at("/SMBIOS/Type24").mXNodeList, ElementsAre("/SMBIOS/Type24/HardwareSecuritySettings"));
    EXPECT_EQ(result.at("/SMBIOS/Type16[2]").mXNodeList.size(), 7U);
    EXPECT_THAT(result.at("/SMBIOS/Type24/HardwareSecuritySettings/FrontPanelReset").mXNodeList, ElementsAre());
}

TEST(SmbiosValues, FamiliesThatDoNotFitTheByteComeFromTheWord)
{
    const SMBIOSProtocolImpl reader = readImage([] {
        SmbiosImage image = serverImage(2, 7);
        const std::size_t processor = image.table.find("CPU 2") - 0x2A;
        image.table[processor + 6] = '\xFE';
        image.table[processor + 0x28] = '\x18';
        image.table[processor + 0x29] = '\x01';
        return image;
    }());
    EXPECT_EQ(valueOf(reader, "/SMBIOS/Type4[2]/ProcessorFamily"), "ARM");
    EXPECT_EQ(valueOf(reader, "/SMBIOS/Type4[2]/ProcessorFamily_Raw"), "280");
}

} // namespace
