#include "common/StateFile.hpp"
#include "tests/support/TempRoot.hpp"

#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {
namespace fs = std::filesystem;

class StateFile : public testing::Test {
protected:
    StateFile() { fs::create_directories(path().parent_path().parent_path()); }
    fs::path path() { return root.resolve(std::string(common::stateFolder) + "/place"); }

    TempRoot root;
    const std::string contents = std::string("a line\n\0and bytes", 17);
};

TEST_F(StateFile, ComesBackAsItWasAndIsNobodyElsesToRead)
{
    EXPECT_FALSE(common::readStateFile("place"));
    for (const std::string& each : {std::string(), contents, std::string(100'000, 'x')}) {
        ASSERT_TRUE(common::writeStateFile("place", each));
        EXPECT_EQ(common::readStateFile("place"), each);
    }
    EXPECT_EQ(fs::status(path()).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(path().parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(std::distance(fs::directory_iterator(path().parent_path()), {}), 1);
}

TEST_F(StateFile, WhatIsOddIsNone)
{
    const std::function<void()> spoils[] = {
        [&] { fs::resize_file(path(), fs::file_size(path()) - 1); },
        [&] { fs::resize_file(path(), 5); },
        [&] { root.writeAt("/var/lib/hwagent/place", 20, "X"); },
        [&] { fs::permissions(path(), fs::perms(0666)); },
        [&] { fs::permissions(path().parent_path(), fs::perms(0777)); },
        [&] {
            fs::rename(path(), root.resolve("/elsewhere"));
            fs::create_symlink(root.resolve("/elsewhere"), path());
        },
        [&] {
            fs::remove(path());
            mkfifo(path().c_str(), 0600);
        },
    };
    for (const auto& spoil : spoils) {
        fs::remove_all(path().parent_path());
        ASSERT_TRUE(common::writeStateFile("place", contents));
        spoil();
        EXPECT_FALSE(common::readStateFile("place"));
    }
}

TEST_F(StateFile, ALinkIsNoWayToAnotherPlace)
{
    const fs::path victim = root.write("/etc/passwd", "root\n");
    ASSERT_TRUE(common::writeStateFile("place", contents));
    for (const char* const name : {"place", "place.new"}) {
        fs::remove(path().parent_path() / name);
        fs::create_symlink(victim, path().parent_path() / name);
        EXPECT_TRUE(common::writeStateFile("place", contents));
        EXPECT_EQ(common::readStateFile("place"), contents);
    }
    fs::remove_all(path().parent_path());
    fs::create_directory_symlink(root.resolve("/etc"), path().parent_path());
    EXPECT_FALSE(common::writeStateFile("place", contents));
    EXPECT_EQ(fs::file_size(victim), 5U);
    EXPECT_EQ(std::distance(fs::directory_iterator(root.resolve("/etc")), {}), 1);
}

} // namespace
