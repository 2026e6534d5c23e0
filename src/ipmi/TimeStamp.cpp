#include "ipmi/TimeStamp.hpp"

#include <ctime>

namespace ipmi {

std::string dateAndTime(std::int64_t seconds)
{
    const std::time_t time = seconds;
    std::tm utc{};
    if (!gmtime_r(&time, &utc))
        return "Error Decoding Time Stamp";
    char text[32];
    return {text, std::strftime(text, sizeof text, "%m/%d/%Y-%H:%M:%S", &utc)};
}

std::string timeStampText(std::uint32_t stamp)
{
    if (stamp == unspecifiedTime)
        return "Invalid Time Stamp";
    return stamp <= lastPreInitTime ? "Pre-Init Time Stamp" : dateAndTime(stamp);
}

} // namespace ipmi
