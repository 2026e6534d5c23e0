#include "common/ConfigCheck.hpp"
#include "common/Paths.hpp"
#include "tests/support/TempRoot.hpp"

#include <gtest/gtest.h>

namespace {

/// "line: remark" for each.
std::string remarksOn(const std::string& text)
{
    TempRoot root;
    std::string all;
    for (const common::ConfigRemark& remark : common::checkConfigFile(root.write(common::configPath, text).string()))
        all += std::to_string(remark.line) + ": " + remark.text + "\n";
    return all;
}

TEST(ConfigCheck, EachOddLineIsToldAndSoundOnesAreNot)
{
    EXPECT_EQ(
        remarksOn(
            "# comment\n\n \t# x\r\n\r\nPlatform Id = -7 \r\npractical=1\ntrapqueue = \"5\"\nlocale=\nsetsenabled=0"),
        "");
    EXPECT_EQ(remarksOn("practical = yes\n"
                        "trapBurst = 0\n"
                        "refreshPeriod = 1000001\n"
                        "trapsEnabled\n"
                        "trapsEnbled = 1\n"
                        "platformId = 99999999999\n"
                        "manufacturer = " +
                        std::string(512, 'x') +
                        "\n"
                        "#" +
                        std::string(2000, 'x') +
                        "\n"
                        "trapsEnabled = 1\n"
                        "TRAPSENABLED = \n"),
              "1: practical = \"yes\": takes a number\n"
              "2: trapburst = \"0\": takes a whole number from 1 to 1000000, ignored\n"
              "3: refreshperiod = \"1000001\": takes a whole number from 1 to 1000000, ignored\n"
              "4: neither \"key = value\" nor a comment: ignored\n"
              "5: unknown key \"trapsenbled\"\n"
              "6: platformid = \"99999999999\": takes a number\n"
              "7: manufacturer: cut to 511 characters\n"
              "8: longer than 1,023 characters: ignored\n"
              "10: trapsenabled = \"\": takes a number\n"
              "10: trapsenabled again, in the place of line 9\n");
}

} // namespace
