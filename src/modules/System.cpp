#include "modules/System.hpp"

#include "common/CMySemLock.hpp"
#include "common/Logger.hpp"
#include "modules/XDirectorImpl.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "platform/IpmiExchange.hpp"

namespace SDK {

namespace {

constexpr char productQuery[] = "/ProductInfo";
constexpr char productKey[] = "/ProductName";
constexpr char productName[] = "Morvandale 7.0 Build 16";

constexpr unsigned char locksFlag = 1;
constexpr unsigned char firstCategoryFlag = 2;
constexpr unsigned char secondCategoryFlag = 4;
constexpr unsigned char thirdCategoryFlag = 8;
constexpr unsigned char loggingOffFlag = 32;

} // namespace

void System::Get(std::string query, ResultMap& results)
{
    results.clear();
    if (query != productQuery) {
        XDirectorImpl::CreateInstance()->ProcessXQuery(query, results);
        return;
    }
    results[productKey].mXNodeList = {productName};
}

void System::Get(QueryMap& queries, ResultMap& results)
{
    results.clear();
    XDirectorImpl::CreateInstance()->ProcessXQuery(queries, results);
}

void System::Set(std::map<std::string, std::string>& values)
{
    XDirectorImpl::CreateInstance()->ProcessXQuery(values, true, false);
}

void System::Set(QueryMap& queries)
{
    XDirectorImpl::CreateInstance()->ProcessXQuery(queries);
}

bool System::repositoryChanged()
{
    return Module::BMCConfig::BMCConfigModule::repositoryChanged();
}

bool System::readRepository(std::chrono::nanoseconds time)
{
    return Module::BMCConfig::BMCConfigModule::readRepository(time);
}

unsigned long long System::exchanges()
{
    return Platform::exchangeCount();
}

void System::SetFlags(unsigned char flags)
{
    using LOGGER::Category;
    using LOGGER::Logger;
    Common::CMySemLock::SetThreadFlag(flags & locksFlag);
    Logger::SetCategory(Category::First, flags & firstCategoryFlag);
    Logger::SetCategory(Category::Second, flags & secondCategoryFlag);
    Logger::SetCategory(Category::Third, flags & thirdCategoryFlag);
    Logger::SetOff(flags & loggingOffFlag);
}

} // namespace SDK
