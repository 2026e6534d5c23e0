#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

enum class Through { intInfo, intData, strInfo, strData, setInt };

struct Call {
    Through through;
    int entity;
    int attribute;
    int row;
    bool operator==(const Call&) const = default;
};

/// Stands in for the client behind the flat functions: keeps what was asked, answers what the test set.
struct FakeClient {
    std::vector<Call> calls;
    int rows = 3;
    int result = 0;
    int setsEnabled = 0;
    int trapsEnabled = 0;
    long number = 4711;
    long written = 0;
    std::optional<std::string> text = "value";
};
extern FakeClient theClient;

/// How often the event queue was drained, by any thread.
extern std::atomic<int> eventDrains;
