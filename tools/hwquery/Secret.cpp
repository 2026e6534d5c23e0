#include "tools/hwquery/Secret.hpp"

#include <sys/resource.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <iostream>

namespace hwquery {

namespace {

constexpr char secretWord[] = "PASSWORD";

volatile std::sig_atomic_t interruptedBy = 0;

/// The terminal shows nothing of what is typed while one lives, and shows it again whatever ends the typing.
class Unseen {
public:
    Unseen()
    {
        struct sigaction ending {};
        ending.sa_handler = [](int number) { interruptedBy = number; };
        for (std::size_t at = 0; at < std::size(signals); ++at)
            sigaction(signals[at], &ending, &before[at]);
        tcgetattr(STDIN_FILENO, &shown);
        termios hidden = shown;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    ~Unseen()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
        std::fputs("\n", stderr);
        for (std::size_t at = 0; at < std::size(signals); ++at)
            sigaction(signals[at], &before[at], nullptr);
        if (interruptedBy != 0)
            raise(interruptedBy);
    }
    Unseen(const Unseen&) = delete;
    Unseen& operator=(const Unseen&) = delete;

private:
    static constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
    struct sigaction before[std::size(signals)]{};
    termios shown{};
};

/// Read byte by byte: a read that a signal ends must not begin anew.
std::optional<std::string> typed(const std::string& question)
{
    std::fputs(question.c_str(), stderr);
    const Unseen unseen;
    std::string line;
    for (char c = 0; read(STDIN_FILENO, &c, 1) == 1;)
        if (c == '\n')
            return line;
        else
            line += c;
    return std::nullopt;
}

std::optional<std::string> complain(const std::string& words)
{
    std::fprintf(stderr, "hwquery: %s\n", words.c_str());
    return std::nullopt;
}

std::optional<std::string> ask(const std::string& path)
{
    const auto first = typed("Password for " + path + ": ");
    const auto again = first ? typed("Once more: ") : std::nullopt;
    if (!again)
        return complain("no password was given");
    return first == again ? first : complain("the two are not the same");
}

std::optional<std::string> firstLine(std::istream& input, const std::string& name)
{
    std::string line;
    if (!std::getline(input, line))
        return complain("no password in " + name);
    return line;
}

std::optional<std::string> fromFile(const std::string& file)
{
    struct stat about {};
    if (stat(file.c_str(), &about) == 0 && S_ISREG(about.st_mode) && (about.st_mode & (S_IRGRP | S_IROTH)) != 0)
        std::fprintf(stderr, "hwquery: others than its owner can read %s\n", file.c_str());
    std::ifstream input(file);
    return firstLine(input, file);
}

} // namespace

bool isSecret(const std::string& path)
{
    return path.find(secretWord) != std::string::npos;
}

std::optional<std::string> readSecret(const std::string& path, const std::string& file)
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    if (!file.empty() && file != "-")
        return fromFile(file);
    if (file.empty() && isatty(STDIN_FILENO))
        return ask(path);
    return firstLine(std::cin, "standard input");
}

} // namespace hwquery
