#include "ipmi/States.hpp"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>

namespace {

using ipmi::Gravity;

const std::map<std::string, Gravity> letters = {{"U", Gravity::untold},
                                                {"I", Gravity::fine},
                                                {"W", Gravity::nonCritical},
                                                {"C", Gravity::critical},
                                                {"N", Gravity::nonRecoverable}};

std::uint8_t byteOf(const std::string& digits)
{
    return static_cast<std::uint8_t>(std::stoi(digits, nullptr, 16));
}

/// The texts of the event log say of each state how grave it is; log and table are two lists of one thing.
TEST(States, AreAsGraveAsTheEventLogSays)
{
    const std::regex section(R"(\[(generic|specific|override)\.(..)(..)?\])"),
        state(R"rx("(..)" = \["(.)", "(.)".*)rx");
    std::ifstream log(HWAGENT_ENGLISH);
    std::span<const ipmi::State> states;
    int count = 0;
    for (std::string line; std::getline(log, line);) {
        std::smatch part;
        if (std::regex_match(line, part, section))
            states = part[1] == "generic"    ? ipmi::statesOf(byteOf(part[2]), 0xEE)
                     : part[1] == "specific" ? ipmi::statesOf(0x6F, byteOf(part[2]))
                                             : ipmi::statesOf(byteOf(part[2]), byteOf(part[3]));
        if (!std::regex_match(line, part, state) || part[1] == "FF")
            continue;
        ASSERT_LT(byteOf(part[1]), states.size()) << line;
        EXPECT_EQ(states[byteOf(part[1])].gravity, letters.at(part[2])) << line;
        EXPECT_EQ(states[byteOf(part[1])].ofEnd, letters.at(part[3])) << line;
        ++count;
    }
    EXPECT_GT(count, 200);
}

} // namespace
