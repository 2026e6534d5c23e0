#pragma once

#include "common/Report.hpp"

/// The system's log as lines of text. Install it with `ScopedSeam<common::SystemLog> use(log);`.
struct CaughtLog : common::SystemLog {
    void write(common::Gravity, const std::string& text) override { lines += text + "\n"; }
    std::string lines;
};
