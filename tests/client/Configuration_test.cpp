#include "client/groups/clSystemManagement.hpp"
#include "common/ConfigFile.hpp"
#include "common/Paths.hpp"
#include "tests/client/ClientFixture.hpp"
#include "tests/support/TempRoot.hpp"

#include <sys/stat.h>

namespace {

using common::configPath;

class Configuration : public ClientFixture {
protected:
    Configuration() { traceWanted = true; }
    ~Configuration() override { traceWanted = false; }

    /// init() over a file of that text; stderr is caught, and given back afterwards.
    int initWith(const std::string& text)
    {
        root.write(configPath, text);
        return initHere();
    }
    int initHere()
    {
        testing::internal::CaptureStderr();
        const int result = group.init();
        std::fputs("after", stderr);
        messages = testing::internal::GetCapturedStderr();
        return result;
    }

    TempRoot root;
    systemManagement group;
    std::string messages;
};

TEST_F(Configuration, KeysAndValuesAreTakenAsWritten)
{
    EXPECT_EQ(initWith("  # a comment\n"
                       "Trap sEnabled = 1\n"
                       "   SETSENABLED=1\n"
                       "platformid= 2147483647abc\n"
                       "debugenabled=7\n"
                       "manufacturer=  \"a b\" \n"
                       "productname=a=b\r\n"
                       "unknown=1\n"
                       "productversion=first\n"
                       "productversion=second\n"
                       "Locale = de_DE.utf8"),
              0);
    EXPECT_EQ(group.isTrapEnabled(), 1);
    EXPECT_EQ(group.isSetEnabled(), 0);
    EXPECT_EQ(group.m_nPlatformId, 2147483647);
    EXPECT_STREQ(group.m_stManufacturer, "a b ");
    EXPECT_STREQ(group.m_stProductName, "a=b\r");
    EXPECT_STREQ(group.m_stProductVersion, "second");
    EXPECT_STREQ(group.m_stLocale, "de_DE.utf8");
    EXPECT_EQ(messages, "hwagent.conf line 3: setsenabled has no effect: the agent only reads\n"
                        "hwagent.conf line 4: platformid = \"2147483647abc\": takes a number\n"
                        "hwagent.conf line 8: unknown key \"unknown\"\n"
                        "hwagent.conf line 10: productversion again, in the place of line 9\nafter");
}

TEST_F(Configuration, OddLinesAreIgnored)
{
    const std::string tooLong = "manufacturer=" + std::string(1024 - 13, 'x') + "\n";
    const std::string longest = "productname=" + std::string(1023 - 12, 'y') + "\n";
    EXPECT_EQ(initWith("trapsenabled\n\n=\n \n=1\n" + tooLong + std::string(5000, '=') + "\n" + longest +
                       std::string("platformid=3\0"
                                   "4\nproductdescription\0=x\n",
                                   37) +
                       "debugenabled=1\n"),
              0);
    EXPECT_EQ(group.isTrapEnabled(), 0);
    EXPECT_STREQ(group.m_stManufacturer, "");
    EXPECT_STREQ(group.m_stProductName, std::string(511, 'y').c_str());
    EXPECT_EQ(group.m_nPlatformId, 3);
    EXPECT_STREQ(group.m_stProductDesc, "");
    EXPECT_EQ(group.m_nDebugEnabled, 1);
}

TEST_F(Configuration, WithoutDebuggingStderrIsSilenced)
{
    EXPECT_EQ(initWith("trapsenabled=1\n"), 0);
    EXPECT_EQ(messages, "\n  Redirecting standard error output into /dev/null \n");
    EXPECT_FALSE(traceWanted);
}

TEST_F(Configuration, MissingFileDirectoryAndPipeAreNoFileAndKeepStderr)
{
    const std::string complaint = "Error in opening config file /usr/local/hwagent/conf/hwagent.conf\nafter";
    EXPECT_EQ(initHere(), 10);
    EXPECT_EQ(messages, complaint);
    const std::string path = systemPath(configPath);
    std::filesystem::create_directories(path);
    EXPECT_EQ(initHere(), 10);
    EXPECT_EQ(messages, complaint);
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(initHere(), 10);
    EXPECT_EQ(group.isTrapEnabled(), 0);
}

} // namespace
