#include "common/ErrorMgr.hpp"

namespace ErrorManager {

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
    for (const common::ErrorRow& row : common::errorRows())
        if (row.text[0] != '\0')
            messages[row.code] = row.text;
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
