#pragma once

#include "common/Descriptor.hpp"
#include "common/Seams.hpp"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace common {

/// The line behind every whole answer.
inline constexpr char endOfAnswer[] = "end\n";

/// A local socket for root: a client sends one line and gets lines, the last of them "end". Nobody makes another wait:
/// all are served by the one thread that calls serve(), eight at a time, each for five seconds at most, and a line has
/// at most 255 characters.
class LineServer {
public:
    /// Gives the lines that answer a request, each with its end.
    using Answer = std::function<std::string(const std::string& request)>;

    explicit LineServer(Answer answer_) : answer(std::move(answer_)) {}
    /// Takes the socket out of its folder.
    ~LineServer();
    LineServer(const LineServer&) = delete;
    LineServer& operator=(const LineServer&) = delete;

    /// Makes the socket, 0600, in the place of one that a killed process left; the folder too, 0700, if it is missing.
    /// False, with errno, if that fails, or if the folder is a link or others may write there.
    bool open(const char* folder, const char* name);
    bool isOpen() const { return static_cast<bool>(listener); }

    /// Serves those who are there, and waits up to `duration` for somebody. The wait is a cancellation point.
    void serve(std::chrono::milliseconds duration);

private:
    struct Client {
        Descriptor socket;
        Clock::SteadyPoint deadline;
        std::string request, reply;
    };
    void await(std::chrono::milliseconds duration);
    void admit();
    void attend(Client& client);
    void readRequest(Client& client);

    Answer answer;
    Descriptor place;
    std::string name;
    Descriptor listener;
    std::vector<Client> clients;
};

/// A connection to the socket `name` in `folder`; none, with errno, if nobody listens there or it is not for us.
Descriptor connectTo(const char* folder, const char* name);

} // namespace common
