#include "client/groups/clSystemManagement.hpp"

#include "common/ConfigCheck.hpp"
#include "common/ConfigFile.hpp"
#include "common/Paths.hpp"
#include "common/Report.hpp"
#include "common/Seams.hpp"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

using namespace client::groups;
using namespace client::words;

namespace {

/// A status from here on is a result of the dispatch and not a status.
constexpr int firstNoStatus = 7;

constexpr _SMEntity rolledUp[] = {
    PROCESSOR,    POWERSUPPLY,     POWERUNIT,       VOLTAGE,       DISCRETEVOLTAGE, MEMORYARRAY,
    MEMORYDEVICE, COOLINGDEVICE,   DISCRETECOOLING, TEMPERATURE,   DRIVESLOT,       DISCRETE_PROCESSOR,
    CURRENT,      DISCRETE_MEMORY, COOLINGUNIT,     MISCELLANEOUS,
};

constexpr _SMEntity seeded[] = {
    PROCESSOR,       POWERSUPPLY,   POWERUNIT,       VOLTAGE,       DISCRETEVOLTAGE,    MEMORYARRAY,
    MEMORYDEVICE,    COOLINGDEVICE, DISCRETECOOLING, TEMPERATURE,   DISCRETE_PROCESSOR, CURRENT,
    DISCRETE_MEMORY, COOLINGUNIT,   DRIVESLOT,       MISCELLANEOUS,
};

struct TextSetting {
    std::string_view key;
    RowText systemManagement::*member;
};

constexpr TextSetting textSettings[] = {
    {"platformdescription", &systemManagement::m_stPlatformDesc},
    {"manufacturer", &systemManagement::m_stManufacturer},
    {"productname", &systemManagement::m_stProductName},
    {"productversion", &systemManagement::m_stProductVersion},
    {"productbuildnumber", &systemManagement::m_stProductBuildNum},
    {"productdescription", &systemManagement::m_stProductDesc},
    {"locale", &systemManagement::m_stLocale},
};

struct NumberSetting {
    std::string_view key;
    int systemManagement::*member;
};

constexpr NumberSetting numberSettings[] = {
    {"platformid", &systemManagement::m_nPlatformId},
    {"trapsenabled", &systemManagement::m_nTrapsEnabled},
    {"debugenabled", &systemManagement::m_nDebugEnabled},
};

constexpr IntField<systemManagement> intFields[] = {
    {SMINFO_PLATFORMID, &systemManagement::m_nPlatformId},
    {SMINFO_TRAPSENABLED, &systemManagement::m_nTrapsEnabled},
    {SMINFO_SETSENABLED, &systemManagement::m_nSetsEnabled},
};

constexpr TextField<systemManagement> textFields[] = {
    {SMINFO_PLATFORMDESC, &systemManagement::m_stPlatformDesc},
    {SMINFO_MANUFACTURER, &systemManagement::m_stManufacturer},
    {SMINFO_PRODUCTNAME, &systemManagement::m_stProductName},
    {SMINFO_PRODUCTVERSION, &systemManagement::m_stProductVersion},
    {SMINFO_PRODUCTBUILDNUM, &systemManagement::m_stProductBuildNum},
    {SMINFO_PRODUCTDESC, &systemManagement::m_stProductDesc},
};

/// As much of it as an int can hold.
int numberOf(const std::string& value)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<long>(std::strtol(value.c_str(), nullptr, 10), Limits::min(), Limits::max()));
}

/// The descriptor is exchanged and not the stream: it is never closed in between, so no other file can slip into it.
void silenceStderr()
{
    trace("\n  Redirecting standard error output into /dev/null \n");
    const int sink = open("/dev/null", O_WRONLY);
    if (sink >= 0 && sink != STDERR_FILENO) {
        dup2(sink, STDERR_FILENO);
        close(sink);
    }
    traceWanted = false;
}

} // namespace

int systemManagement::init()
{
    const std::string path = systemPath(common::configPath);
    if (!common::readConfigFile(path, [this](const common::ConfigEntry& entry) { takeSetting(entry); })) {
        trace("Error in opening config file %s\n", common::configPath);
        return CLIENT_ERROR_NO_CONFIG_FILE;
    }
    for (const common::ConfigRemark& remark : common::checkConfigFile(path)) {
        trace("hwagent.conf line %d: %s\n", remark.line, remark.text.c_str());
        common::report(common::Gravity::warning,
                       "hwagent.conf line " + std::to_string(remark.line) + ": " + remark.text);
    }
    if (m_nDebugEnabled == 0)
        silenceStderr();
    return CLIENT_SUCCESS;
}

void systemManagement::takeSetting(const common::ConfigEntry& entry)
{
    const auto* const text = std::ranges::find(textSettings, entry.key, &TextSetting::key);
    const auto* const number = std::ranges::find(numberSettings, entry.key, &NumberSetting::key);
    if (text != std::end(textSettings))
        copyText(this->*text->member, entry.value);
    else if (number != std::end(numberSettings))
        this->*number->member = numberOf(entry.value);
}

int systemManagement::getIntInfo(_SMAttribute attribute, int, long& out)
{
    if (attribute != SMINFO_HEALTHSTATUS)
        return answerInt(intFields, *this, attribute, out);
    out = m_nHealthStatus;
    return CLIENT_SUCCESS;
}

int systemManagement::getStrInfo(_SMAttribute attribute, int, char*& out)
{
    return answerText(textFields, *this, attribute, out);
}

void systemManagement::setInitialStatus(GroupCall statusOfGroup)
{
    int worst = ENUM_STATUS_HEALTHY;
    for (const _SMEntity group : rolledUp)
        if (const int status = statusOfGroup(group); status < firstNoStatus)
            worst = std::max(worst, status);
    m_nHealthStatus = worst;
}

void systemManagement::seedAllHealthLists(GroupCall seedGroup)
{
    trace("seedHealthLists() called\n");
    for (const _SMEntity group : seeded)
        seedGroup(group);
    trace("End of seedHealthLists()\n");
}

int systemManagement::setHealthStatus(int status)
{
    m_nHealthStatus = status;
    return CLIENT_SUCCESS;
}

char* systemManagement::toLower(const char* text)
{
    char* const block = newTextBlock(text);
    for (char* character = block; character && *character; ++character)
        *character = static_cast<char>(std::tolower(static_cast<unsigned char>(*character)));
    return block;
}
