#include "tools/hwquery/Consent.hpp"

#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace hwquery {

namespace {

bool agrees(const std::string& question)
{
    std::cerr << question << " Go on? [y/N] " << std::flush;
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

bool refuse(const std::string& question, const char* otherwise)
{
    std::fprintf(stderr, "hwquery: %s %s\n", question.c_str(), otherwise);
    return false;
}

} // namespace

bool mayGoOn(const Module::BMCConfig::Advice& advice, const std::string& name, const Options& options)
{
    using Module::BMCConfig::Need;
    const std::string question = name + ": " + advice.effect + ".";
    switch (advice.need) {
    case Need::nothing:
        return true;
    case Need::force:
        return options.force || refuse(question, "Not done without --force.");
    case Need::consent:
        if (options.yes)
            return true;
        if (!isatty(STDIN_FILENO) || !isatty(STDERR_FILENO))
            return refuse(question, "Not done without --yes, as nobody is at a terminal to be asked.");
        return agrees(question) || refuse(name + ":", "not done.");
    }
    return false;
}

bool mayGoOn(const std::string& query, const std::string& name, const Options& options)
{
    return mayGoOn(Module::BMCConfig::adviceFor(query), name, options);
}

} // namespace hwquery
