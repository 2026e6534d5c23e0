#pragma once

#include "common/Seams.hpp"

#include <map>
#include <string>
#include <unistd.h>
#include <vector>

/// Programs that print what the test says, by the third word of their command line; any other is absent. Install them
/// with `ScopedSeam<CommandRunner> use(programs);`.
struct FakePrograms : CommandRunner {
    int run(const std::vector<std::string>& argv, int output) override
    {
        asked.push_back(argv);
        const auto program = prints.find(argv.size() > 2 ? argv[2] : "");
        if (program == prints.end())
            return 127;
        const std::string& text = program->second;
        return write(output, text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? status : -1;
    }

    std::map<std::string, std::string> prints;
    std::vector<std::vector<std::string>> asked;
    int status = 0;
};
