// What a caller gives as a password stays between him and the BMC.

#include "common/Logger.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "tests/modules/bmc/EngineFixture.hpp"
#include "tests/support/TempRoot.hpp"

#include <sstream>

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr char password[] = "correcthorse", inHex[] = "63 6f 72 72";

class Secrets : public EngineTest {
protected:
    Secrets()
    {
        std::filesystem::create_directories(root.resolve("/var/log"));
        logger->Cleanup();
        logger->Init();
        switchLog(true);
    }
    ~Secrets() override
    {
        switchLog(false);
        logger->Cleanup();
    }

    static void switchLog(bool on)
    {
        using LOGGER::Category;
        for (const Category category : {Category::First, Category::Second, Category::Third})
            LOGGER::Logger::SetCategory(category, on);
    }
    /// What the failure of a write says; empty if there was none.
    static std::string failureOf(const char* path)
    {
        return ::failureOf([&] { Module::BMCConfig::BMCConfigModule().ProcessXQuery(path, password, false); }).text();
    }
    std::string logText()
    {
        std::ostringstream text;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root.resolve("/var/log")))
            if (entry.is_regular_file())
                text << std::ifstream(entry.path()).rdbuf();
        return text.str();
    }

    TempRoot root;
    LOGGER::Logger* logger = LOGGER::Logger::CreateInstance();
};

} // namespace

TEST_F(Secrets, APasswordIsNeitherInTheLogNorInTheErrorOfALostInterface)
{
    bmc.on(0x06, 0x47, IpmiAnswer{0});
    EXPECT_EQ(failureOf("/BMC/USER[2]/PASSWORD"), "");
    ASSERT_EQ(bmc.requests.back().data.size(), 18U);
    bmc.present = false;
    transport::resetTransportForTests();
    for (const char* path : {"/BMC/USER[2]/PASSWORD", "/BMC/USER[2]/TEST_PASSWORD"}) {
        const std::string failure = failureOf(path);
        EXPECT_THAT(failure, HasSubstr("PASSWORD"));
        EXPECT_THAT(failure, Not(HasSubstr(inHex)));
    }
    const std::string text = logText();
    EXPECT_THAT(text, HasSubstr("SET://BMC/USER[]/PASSWORD"));
    EXPECT_THAT(text, Not(HasSubstr(password)));
    EXPECT_THAT(text, Not(HasSubstr(inHex)));
}
