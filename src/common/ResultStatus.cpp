#include "common/ResultStatus.hpp"

#include "common/ErrorMgr.hpp"
#include "common/Logger.hpp"

#include <utility>

ResultStatus::ResultStatus(unsigned short errorCode, std::string message, std::string xquery, _XCOMMAND command)
    : entries{RStatus{0, errorCode, std::move(message), std::move(xquery), command}}
{
}

ResultStatus::ResultStatus(unsigned short component, unsigned short errorCode, std::string message)
    : entries{RStatus{component, errorCode, std::move(message), {}, COMMAND_UNKNOWN}}
{
}

void ResultStatus::Insert(RStatus status)
{
    entries.push_back(std::move(status));
}

unsigned short ResultStatus::getval() const
{
    return entries.empty() ? 0 : entries.front().mErrorCode;
}

void throwError(unsigned short errorCode, const std::string& xquery, _XCOMMAND command)
{
    const std::string message = ErrorManager::ErrorMgr::GetInstance()->Get(errorCode);
    HW_LOG(LOGGER::Category::First, "Error %d: %s: %s", int{errorCode}, xquery.c_str(), message.c_str());
    throw ResultStatus(errorCode, message, xquery, command);
}
