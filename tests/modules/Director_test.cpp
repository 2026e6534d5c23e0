#include "common/CMySemLock.hpp"
#include "modules/System.hpp"
#include "modules/XDirectorImpl.hpp"
#include "tests/support/BmcTest.hpp"
#include "tests/support/TempRoot.hpp"

#include <fstream>
#include <sstream>
#include <thread>

namespace SDK {
namespace {

constexpr unsigned char quiet = 32;
constexpr unsigned char firstCategory = 2;

class DirectorTest : public BmcTest {
protected:
    DirectorTest() { system.SetFlags(quiet); }
    ~DirectorTest() override { system.SetFlags(quiet); }

    template<class Call>
    static std::string failureOf(Call call)
    {
        return ::failureOf(call).text();
    }

    std::string getFailure(const std::string& query)
    {
        return failureOf([&] { system.Get(query, results); });
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

TEST_F(DirectorTest, MapGetsCollectAllAnswersAndServeTheBmcOnly)
{
    QueryMap queries{{"/BMC/INFO/VERSION", {}}, {"/BMC/INFO/@children", {}}};
    system.Get(queries, results);
    EXPECT_EQ(results.size(), 2U);
    QueryMap other{{"/BIOS/ID", {}}};
    EXPECT_EQ(failureOf([&] { system.Get(other, results); }), "1001 /BIOS/ID");
}

TEST_F(DirectorTest, FailedItemEndsAMapOfSets)
{
    std::map<std::string, std::string> values{{"/BMC/A", "1"}, {"/BMC/B", "2"}};
    EXPECT_EQ(failureOf([&] { system.Set(values); }), "1001 SET://BMC/A");
    QueryMap queries{{"/Nonsense", {{"X", "1"}}}};
    EXPECT_EQ(failureOf([&] { system.Set(queries); }), "1001 /Nonsense");
}

TEST_F(DirectorTest, SecretsStayOutOfTheLog)
{
    TempRoot root;
    std::filesystem::create_directories(root.resolve("/var/log/Morvandale"));
    LOGGER::Logger::CreateInstance()->Cleanup();
    system.SetFlags(firstCategory);
    getFailure("/Nonsense"); // its first message opens the file
    std::map<std::string, std::string> secret{{"/BMC/USER[1]/PASSWORD", "hunter2"}}, plain{{"/BMC/A", "value"}};
    failureOf([&] { system.Set(secret); });
    failureOf([&] { system.Set(plain); });
    system.SetFlags(quiet);
    LOGGER::Logger::CreateInstance()->Cleanup();
    std::ostringstream log;
    for (const auto& entry : std::filesystem::directory_iterator(root.resolve("/var/log/Morvandale")))
        log << std::ifstream(entry.path()).rdbuf();
    EXPECT_NE(log.str().find("Failure GET: /Nonsense on localhost, 0 msec"), std::string::npos) << log.str();
    EXPECT_NE(log.str().find("Executing SET: /BMC/A with value on localhost"), std::string::npos);
    EXPECT_EQ(log.str().find("Executing SET: /BMC/USER"), std::string::npos);
    EXPECT_EQ(log.str().find("hunter2"), std::string::npos);
}

TEST_F(DirectorTest, ThreadsMayBringNewPathsAtOnce)
{
    const ScopedSeam<Clock> real(Clock::real());
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([thread] {
            for (int i = 0; i < 200; ++i) {
                ResultMap own;
                const std::string path = "/Nobody" + std::to_string(thread) + "x" + std::to_string(i);
                EXPECT_EQ(failureOf([&] { System().Get(path, own); }), "1001 " + path);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace SDK
