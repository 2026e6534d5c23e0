#include "common/Logger.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/support/Threads.hpp"

#include <cstdlib>
#include <ctime>

namespace fs = std::filesystem;
using LOGGER::Category;
using LOGGER::Logger;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace {

constexpr const char* directory = "/var/log/Morvandale";
constexpr int level = 2;

std::string readAll(const fs::path& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

long countLines(const fs::path& path)
{
    const std::string text = readAll(path);
    return std::count(text.begin(), text.end(), '\n');
}

class LoggerTest : public testing::Test {
protected:
    LoggerTest()
    {
        setenv("TZ", "UTC", 1);
        tzset();
        fs::create_directories(root.resolve("/var/log"));
        logger->Cleanup();
        logger->Init();
        Logger::SetOff(false);
    }
    ~LoggerTest() override
    {
        logger->Cleanup();
        setCategories(false);
        Logger::SetOff(false);
    }

    static void setCategories(bool on)
    {
        for (const Category category : {Category::First, Category::Second, Category::Third})
            Logger::SetCategory(category, on);
    }
    void log(const std::string& text) { logger->Log(level, "src/a/File.cpp", "work", 42, "%s", text.c_str()); }
    fs::path file(const std::string& minute = "22-13") const
    {
        return place / ("Morvandale-14-11-2023-" + minute + ".log");
    }

    TempRoot root;
    FakeClock clock; // stands at 2023-11-14 22:13:20 UTC
    ScopedSeam<Clock> use{clock};
    Logger* logger = Logger::CreateInstance();
    fs::path place = root.resolve(directory);
};

TEST_F(LoggerTest, FirstMessageOpensTheFileForItsOwnerAloneAndIsLostAndALongOneIsCut)
{
    log("first");
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(readAll(file()), "");
    log("second 100%");
    EXPECT_THAT(readAll(file()), MatchesRegex("\\[\\] \\[[0-9]{1,7}\\] \\[\\] second 100%\n"));
    log(std::string(5000, 'x'));
    EXPECT_THAT(readAll(file()), ContainsRegex("[^x]\\] x+\n$"));
    const std::string text = readAll(file());
    EXPECT_EQ(std::count(text.begin(), text.end(), 'x'), 4095);
}

TEST_F(LoggerTest, NewFileAfterFiftyThousandLines)
{
    for (int i = 0; i < 50'002; ++i)
        log("line");
    EXPECT_EQ(countLines(file()), 50'001);
    clock.advance(std::chrono::minutes(1));
    log("opens the next");
    log("first of the next");
    EXPECT_EQ(countLines(file()), 50'001);
    EXPECT_THAT(readAll(file("22-14")), HasSubstr("] first of the next\n"));
    EXPECT_EQ(countLines(file("22-14")), 1);
}

TEST_F(LoggerTest, MessagesAreLostWhileNoFileOpensAndLinksAreNotFollowed)
{
    fs::remove(place);
    log("no directory");
    log("no directory");

    const fs::path elsewhere = root.write("/elsewhere/file", "kept").parent_path();
    fs::create_directory_symlink(elsewhere, place);
    log("directory is a link");
    log("directory is a link");
    EXPECT_FALSE(fs::exists(elsewhere / file().filename()));

    fs::remove(place);
    logger->Init();
    fs::create_symlink(elsewhere / "file", file());
    log("file is a link");
    log("file is a link");
    EXPECT_EQ(readAll(elsewhere / "file"), "kept");

    fs::remove(file());
    log("opens");
    log("works again");
    EXPECT_EQ(countLines(file()), 1);
}

TEST_F(LoggerTest, CategoriesAndTheOffSwitchDecideWhatIsFormatted)
{
    int formatted = 0;
    log("opens");
    HW_LOG(Category::First, "%d", ++formatted);
    Logger::SetCategory(Category::Second, true);
    HW_LOG(Category::Third, "%d", ++formatted);
    HW_LOG(Category::Second, "%d", ++formatted);
    EXPECT_EQ(countLines(file()), 1);
    Logger::SetOff(true);
    HW_LOG(Category::Second, "%d", ++formatted);
    log("off");
    EXPECT_EQ(countLines(file()), 1);
    EXPECT_EQ(formatted, 1);
    Logger::SetOff(false);
    Logger::SetCategory(Category::Second, false);
    EXPECT_FALSE(Logger::Wants(Category::Second));
}

TEST_F(LoggerTest, ThreadsLoseNoLine)
{
    log("opens");
    inThreads(250, [this](int, int) { log("whole line"); });
    EXPECT_EQ(countLines(file()), 1000);
}

} // namespace
