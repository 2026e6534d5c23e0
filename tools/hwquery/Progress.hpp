#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace hwquery {

/// A line on the terminal, if standard error is one, for work that takes longer than a moment: what is done, for how
/// long and with how many exchanges. It is gone when the work is.
class Progress {
public:
    explicit Progress(std::string what);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// How far it is: "128 of 3000 records".
    void note(std::string how);

private:
    void show();

    std::mutex guard;
    std::condition_variable ended;
    std::string what, far;
    bool over = false;
    std::thread shower;
};

} // namespace hwquery
