#pragma once

#include "common/ResultStatus.hpp"

#include <string>

/// The ResultStatus that a call ended in; 0 and nothing if it ended well.
struct Failure {
    int code = 0;
    std::string detail, words;

    /// "code detail", empty without a failure.
    std::string text() const { return code == 0 ? "" : std::to_string(code) + " " + detail; }
};

template<class Call>
Failure failureOf(Call call)
{
    try {
        call();
    } catch (const ResultStatus& status) {
        return {status.getval(), status.begin()->mXQuery, status.begin()->mErrorString};
    }
    return {};
}

/// "code detail" of the failure, empty without one.
template<class Call>
std::string failureTextOf(Call call)
{
    return failureOf(call).text();
}
