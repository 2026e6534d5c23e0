#include "common/ErrorMgr.hpp"

#include "common/ErrorMessages.hpp"

#include <cstdio>

namespace ErrorManager {

namespace {

std::string reservedError(int code)
{
    char text[64];
    std::snprintf(text, sizeof text, "Reserved Error (Error Code: %d)", code);
    return text;
}

} // namespace

ErrorMgr* ErrorMgr::GetInstance()
{
    static ErrorMgr manager;
    return &manager;
}

ErrorMgr::ErrorMgr()
{
    CreateErrorMap();
}

void ErrorMgr::CreateErrorMap()
{
    for (const ErrorMessage& row : errorMessages())
        messages[row.code] = row.message;
    messages[ERROR_UNKNOWN] = reservedError(ERROR_UNKNOWN);
}

std::string ErrorMgr::Get(int code)
{
    const std::lock_guard lock(guard);
    return messages[code];
}

bool ErrorMgr::Holds(int code)
{
    const std::lock_guard lock(guard);
    return messages.contains(code);
}

} // namespace ErrorManager
