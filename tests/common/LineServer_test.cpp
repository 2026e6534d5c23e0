#include "common/LineServer.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/TempRoot.hpp"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using common::Descriptor;

constexpr char folder[] = "/run/agent";

class LineServer : public testing::Test {
protected:
    LineServer() { fs::create_directories(root.resolve("/run")); }

    fs::path path(const std::string& name = "") { return root.resolve(folder + name); }

    Descriptor connectAndSay(std::string_view words)
    {
        Descriptor connection = common::connectTo(folder, "s");
        EXPECT_EQ(send(connection.get(), words.data(), words.size(), MSG_NOSIGNAL), static_cast<ssize_t>(words.size()));
        return connection;
    }

    /// What has come so far; "open" behind it while more may come.
    static std::string heard(const Descriptor& connection)
    {
        std::string text;
        char part[512];
        ssize_t got = 0;
        while ((got = recv(connection.get(), part, sizeof part, MSG_DONTWAIT)) > 0)
            text.append(part, static_cast<std::size_t>(got));
        return text + (got < 0 && errno == EAGAIN ? "open" : "");
    }

    static void serve(common::LineServer& server)
    {
        for (int turn = 0; turn < 3; ++turn)
            server.serve(0ms);
    }

    TempRoot root;
    FakeClock clock;
    ScopedSeam<Clock> useClock{clock};
    common::LineServer server{[](const std::string& request) { return "you said " + request + "\n"; }};
};

TEST_F(LineServer, ItsFileIsForItsOwnerAloneAndTakesALeftoversPlaceButFollowsNoLink)
{
    struct stat status {};
    ASSERT_TRUE(server.open(folder, "s"));
    ASSERT_EQ(stat(path("/s").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFSOCK | 0600));
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms::owner_all);

    fs::remove(path("/s"));
    root.write("/run/target", "kept");
    fs::create_symlink(root.resolve("/run/target"), path("/s"));
    common::LineServer next([](const std::string&) { return ""; });
    ASSERT_TRUE(next.open(folder, "s")) << "in the place of a link";
    EXPECT_TRUE(fs::is_socket(path("/s")) && fs::file_size(root.resolve("/run/target")) == 4);

    fs::permissions(path(), fs::perms::others_write, fs::perm_options::add);
    EXPECT_FALSE(common::LineServer([](const std::string&) { return ""; }).open(folder, "s"));
    fs::rename(path(), root.resolve("/run/other"));
    fs::create_directory_symlink(root.resolve("/run/other"), path());
    EXPECT_FALSE(common::LineServer([](const std::string&) { return ""; }).open(folder, "s"));
}

TEST_F(LineServer, ALineIsAnsweredAndTheSocketGoesWithTheServer)
{
    {
        common::LineServer brief([](const std::string& request) { return request + "\n"; });
        ASSERT_TRUE(brief.open(folder, "s"));
        const Descriptor asks = connectAndSay("status\nand more\n");
        serve(brief);
        EXPECT_EQ(heard(asks), "status\nend\n");
    }
    EXPECT_FALSE(fs::exists(path("/s")));
    EXPECT_FALSE(common::connectTo(folder, "s"));
}

TEST_F(LineServer, WhoSaysTooMuchOrTooLittleOrReadsNothingHoldsUpNobody)
{
    ASSERT_TRUE(server.open(folder, "s"));
    const Descriptor silent = connectAndSay("stat");
    const Descriptor wordy = connectAndSay(std::string(300, 'x'));
    const Descriptor wordyLine = connectAndSay(std::string(256, 'x') + "\n");
    connectAndSay("gone before the end");
    connectAndSay("gone before the answer\n");
    serve(server);
    EXPECT_EQ(heard(wordy), "error = the line is too long\nend\n");
    EXPECT_EQ(heard(wordyLine), "error = the line is too long\nend\n");
    EXPECT_EQ(heard(silent), "open");
    send(silent.get(), "us\n", 3, 0);
    serve(server);
    EXPECT_EQ(heard(silent), "you said status\nend\n");

    std::vector<Descriptor> many;
    for (int count = 0; count < 8; ++count)
        many.push_back(connectAndSay("no line's end"));
    serve(server);
    const Descriptor ninth = connectAndSay("x\n");
    serve(server);
    EXPECT_EQ(heard(ninth), "open");
    clock.advance(6s);
    serve(server);
    EXPECT_EQ(heard(many.front()), "");
    EXPECT_EQ(heard(ninth), "you said x\nend\n");
}

TEST_F(LineServer, AnAnswerThatNobodyReadsIsGivenUp)
{
    common::LineServer talker([](const std::string&) { return std::string(4 << 20, 'x'); });
    ASSERT_TRUE(talker.open(folder, "s"));
    const Descriptor lazy = connectAndSay("all\n"), other = connectAndSay("waits\n");
    serve(talker);
    clock.advance(6s);
    talker.serve(0ms);
    const std::string taken = heard(lazy);
    EXPECT_TRUE(!taken.empty() && taken.size() < (4U << 20) && taken.back() == 'x') << taken.size();
}

} // namespace
