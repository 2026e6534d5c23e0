#pragma once

#include <cstdint>

/// What the stand-in for "libipmi.so" was given, and what it is to answer. It lives in the library as `standInRecord`.
struct StandInRecord {
    int sessions = 0, closed = 0, sends = 0;
    int failingSessions = 0; ///< so many sessions are refused first
    char address[16] = {};
    std::uint64_t arguments[13] = {}; ///< behind the address, the pointer replaced by what it points to

    std::uint8_t netFnLun = 0;
    std::uint32_t requestLength = 0;
    unsigned timeout = 0;

    std::uint16_t sendResult = 0;
    std::uint8_t answer[4] = {};
    std::uint32_t answerLength = 0;
};
