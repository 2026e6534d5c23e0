#pragma once

#include "common/ErrorName.hpp"

#include <map>
#include <mutex>
#include <string>

namespace ErrorManager {

/// The table from error code to message.
class ErrorMgr {
public:
    static ErrorMgr* GetInstance();

    /// The message of `code`, conversions such as %s as they stand. A code without a row gets an empty one, which
    /// stays.
    std::string Get(int code);
    /// True if the map holds a row for `code`, empty or not.
    bool Holds(int code);

private:
    ErrorMgr();
    void CreateErrorMap();

    std::mutex guard; ///< a miss changes the map, and misses come from any thread
    std::map<int, std::string> messages;
};

} // namespace ErrorManager
