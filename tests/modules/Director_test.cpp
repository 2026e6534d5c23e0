#include "common/CMySemLock.hpp"
#include "modules/System.hpp"
#include "modules/XDirectorImpl.hpp"
#include "tests/support/BmcTest.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/support/Threads.hpp"

#include <fstream>
#include <sstream>

namespace SDK {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr unsigned char quiet = 32;
constexpr unsigned char allCategories = 2 | 4 | 8;

class DirectorTest : public BmcTest {
protected:
    DirectorTest() { system.SetFlags(quiet); }
    ~DirectorTest() override { system.SetFlags(quiet); }

    std::string getFailure(const std::string& query)
    {
        return failureTextOf([&] { system.Get(query, results); });
    }

    System system;
    ResultMap results;
};

TEST_F(DirectorTest, PathsThatNobodyOwnsAreInvalid)
{
    for (const char* query : {"/Nonsense", "/Nonsense", "/bmc/INFO", "/BMC//INFO", "", "/ProductInfo/", "/",
                              "/Platform/X", "/FILE/X", "/FILE/SCF/X", "/BMC/CONTROLLER[2]/INFO"})
        EXPECT_EQ(getFailure(query), std::string("1001 ") + query);
    EXPECT_EQ(getFailure("/BMC/LAN[1/IP"), "1105 end ] bracket not found");
}

TEST_F(DirectorTest, MapsCollectAllAnswersServeTheBmcOnlyAndEndAtAFailure)
{
    QueryMap queries{{"/BMC/INFO/VERSION", {}}, {"/BMC/INFO/@children", {}}};
    system.Get(queries, results);
    EXPECT_EQ(results.size(), 2U);
    QueryMap other{{"/BIOS/ID", {}}};
    EXPECT_EQ(failureTextOf([&] { system.Get(other, results); }), "1001 /BIOS/ID");
    std::map<std::string, std::string> values{{"/BMC/A", "1"}, {"/BMC/B", "2"}};
    EXPECT_EQ(failureTextOf([&] { system.Set(values); }), "1001 SET://BMC/A");
    QueryMap unknown{{"/Nonsense", {{"X", "1"}}}};
    EXPECT_EQ(failureTextOf([&] { system.Set(unknown); }), "1001 /Nonsense");
}

TEST_F(DirectorTest, APasswordIsNeitherInTheLogNorInTheErrorOfALostInterface)
{
    TempRoot root;
    const std::string folder = root.resolve("/var/log/Morvandale"), inHex = "63 6f 72 72";
    std::filesystem::create_directories(folder);
    LOGGER::Logger::CreateInstance()->Cleanup();
    system.SetFlags(allCategories);
    getFailure("/Nonsense"); // its first message opens the file
    const auto setFailure = [&](const char* path, const char* value) {
        std::map<std::string, std::string> values{{path, value}};
        return failureTextOf([&] { system.Set(values); });
    };
    bmc.on(0x06, 0x47, IpmiAnswer{0});
    EXPECT_EQ(setFailure("/BMC/USER[2]/PASSWORD", "correcthorse"), "");
    EXPECT_EQ(bmc.requests.back().data.size(), 18U);
    bmc.present = false;
    transport::resetTransportForTests();
    for (const char* path : {"/BMC/USER[2]/PASSWORD", "/BMC/USER[2]/TEST_PASSWORD"}) {
        const std::string failure = setFailure(path, "correcthorse");
        EXPECT_THAT(failure, AllOf(HasSubstr("PASSWORD"), Not(HasSubstr(inHex))));
    }
    setFailure("/BMC/A", "value");
    system.SetFlags(quiet);
    LOGGER::Logger::CreateInstance()->Cleanup();
    std::ostringstream log;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        log << std::ifstream(entry.path()).rdbuf();
    for (const char* told : {"Failure GET: /Nonsense on localhost, 0 msec", "SET://BMC/USER[]/PASSWORD",
                             "Executing SET: /BMC/A with value on localhost"})
        EXPECT_THAT(log.str(), HasSubstr(told));
    for (const std::string& secret : {std::string("Executing SET: /BMC/USER"), std::string("correcthorse"), inHex})
        EXPECT_THAT(log.str(), Not(HasSubstr(secret)));
}

TEST_F(DirectorTest, ThreadsMayBringNewPathsAtOnce)
{
    const ScopedSeam<Clock> real(Clock::real());
    inThreads(200, [](int thread, int turn) {
        ResultMap own;
        const std::string path = "/Nobody" + std::to_string(thread) + "x" + std::to_string(turn);
        EXPECT_EQ(failureTextOf([&] { System().Get(path, own); }), "1001 " + path);
    });
}

} // namespace
} // namespace SDK
