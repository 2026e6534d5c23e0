#pragma once

#include "common/XNode.hpp"

#include <cstdint>
#include <string>
#include <vector>

/// One reported failure.
struct RStatus {
    std::uint16_t mComponent = 0; ///< only the three-argument ResultStatus fills it
    std::uint16_t mErrorCode = 0; ///< a value of _ERROR_NAME, 1001 upward
    std::string mErrorString;
    std::string mXQuery; ///< the query, or what else names the failing thing
    _XCOMMAND mCommand = COMMAND_UNKNOWN;
};

/// What the SDK throws, by value, for every failure. Not a std::exception: callers at the SDK's border catch it by
/// name.
class ResultStatus {
public:
    ResultStatus() = default;
    ResultStatus(unsigned short errorCode, std::string message, std::string xquery, _XCOMMAND command);
    ResultStatus(unsigned short component, unsigned short errorCode, std::string message);

    void Insert(RStatus status);
    /// The object itself, through which its entries are read.
    const ResultStatus& Get() const { return *this; }
    /// Code of the first entry, 0 without one.
    unsigned short getval() const;

    std::size_t size() const { return entries.size(); }
    auto begin() const { return entries.begin(); }
    auto end() const { return entries.end(); }

private:
    std::vector<RStatus> entries;
};

/// Looks the message of `errorCode` up, logs it, and throws the ResultStatus of it.
[[noreturn]] void throwError(unsigned short errorCode, const std::string& xquery, _XCOMMAND command);
