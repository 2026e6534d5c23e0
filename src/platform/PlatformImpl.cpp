#include "platform/PlatformImpl.hpp"

#include "common/Logger.hpp"
#include "common/Util.hpp"
#include "platform/BoardTable.hpp"
#include "platform/EFIVar.hpp"
#include "platform/IpmiExchange.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>
#include <string_view>

namespace Platform {

namespace {

constexpr std::chrono::seconds pauseAfterFailure{10};

/// Items of the reply to Get Device ID (IPMI 2.0, table 20-2), the completion code being item 0.
constexpr std::size_t productIdLow = 10;
constexpr std::size_t productIdHigh = 11;
constexpr std::size_t leastItems = 13;

constexpr char boardVariable[] = "FWVERSIONDATA";
constexpr char boardVariableGuid[] = "EC87D643-EBA4-4BB5-A1E5-3F3E36B20DA9";
constexpr std::size_t variableBytes = 2048;
/// The record that names the board: these four bytes, then the name, filled up with blanks or ended by a zero byte.
constexpr std::string_view boardRecord = "$FID";
constexpr std::size_t boardNameBytes = 16;

constexpr std::size_t mostMemorySlots = 32;
constexpr std::uint8_t noSensor = 0xFF;

struct ProductGroup {
    const char* platform;
    std::vector<std::string> productIds;
};

/// In this order; a later group overrides an earlier match.
const std::vector<ProductGroup>& productGroups()
{
    static const std::vector<ProductGroup> groups = {
        {"FIR_PLATFORM", {"3e0", "400", "200"}},
        {"ALDER_PLATFORM", {"280", "290", "2c0", "2b0", "3b0"}},
        {"BIRCH_PLATFORM", {"71"}},
        {"CEDAR_PLATFORM", {"3d0"}},
        {"DOGWOOD_PLATFORM", {"3a0"}},
        {"LILAC_PLATFORM", {"480"}},
        {"LINDEN_PLATFORM", {"650"}},
        {"ROWAN_PLATFORM", {"630"}},
        {"JUNIPER_PLATFORM",
         {"420", "430", "440", "450", "460", "470", "490", "4a0", "4c0", "4d0", "4e0", "4f0", "500", "510",
          "540", "550", "560", "570", "590", "5c0", "5d0", "520", "530", "580", "5a0", "5b0", "5e0"}},
        {"MAPLE_PLATFORM",
         {"6f0", "700", "710", "720", "730", "750", "760", "660", "670", "680", "690", "6a0", "6e0", "770"}},
        {"NUTMEG_PLATFORM", {"780"}},
    };
    return groups;
}

std::vector<std::string> listNumbers(std::span<const std::uint8_t> numbers)
{
    std::vector<std::string> texts;
    for (const std::uint8_t number : numbers) {
        char text[3];
        std::snprintf(text, sizeof text, "%02x", number);
        texts.emplace_back(text);
    }
    return texts;
}

bool isPrintable(char character)
{
    return character >= ' ' && character <= '~';
}

} // namespace

PlatformImpl* PlatformImpl::CreateInstance()
{
    static PlatformImpl inst;
    return &inst;
}

void PlatformImpl::InitializePlatformList()
{
    for (const BoardRow& row : knownBoards())
        boardTable[row.board] = row.platform;
}

void PlatformImpl::InitPlatform()
{
    const std::lock_guard hold(guard);
    findPlatform();
}

std::string PlatformImpl::platformName()
{
    const std::lock_guard hold(guard);
    findPlatform();
    return type;
}

std::string PlatformImpl::platformId()
{
    const std::lock_guard hold(guard);
    try {
        findPlatform();
    } catch (const ResultStatus&) {
        if (id.empty())
            throw;
    }
    return id;
}

void PlatformImpl::Reset()
{
    const std::lock_guard hold(guard);
    type.clear();
    id.clear();
    asked.reset();
    failure.reset();
}

void PlatformImpl::findPlatform()
{
    if (!type.empty())
        return;
    // a clock that was set back must not stretch the pause
    const Clock::TimePoint now = current<Clock>().now();
    const bool pausing = asked && now >= *asked && now < *asked + pauseAfterFailure;
    if (!pausing) {
        failure.reset();
        try {
            type = searchPlatform();
        } catch (const ResultStatus& status) {
            failure = status;
        }
        // a BMC that does not answer takes its time about it: the pause begins afterwards
        asked = current<Clock>().now();
        HW_LOG(LOGGER::Category::First, "Platform ID is %s", id.c_str());
        HW_LOG(LOGGER::Category::First, "Platform Type is %s", type.c_str());
    }
    if (failure)
        throw ResultStatus(*failure);
}

std::string PlatformImpl::searchPlatform()
{
    GetPlatformIDfromSMI(id);
    id.erase(id.find_last_not_of(' ') + 1);
    const std::string platform = getPlatformType(id);
    return platform.empty() ? platformOfBmc() : platform;
}

void PlatformImpl::GetPlatformIDfromSMI(std::string& boardId)
{
    const std::vector<std::uint8_t> data = EFIVar(boardVariable, boardVariableGuid, variableBytes).GetVariable();
    const std::string text(data.begin(), data.end());
    const std::size_t record = text.find(boardRecord);
    const std::string name =
        record == std::string::npos ? std::string() : text.substr(record + boardRecord.size(), boardNameBytes);
    boardId.assign(name.begin(), std::ranges::find_if_not(name, isPrintable));
}

std::string PlatformImpl::getPlatformType(const std::string& boardId) const
{
    const auto row = boardTable.find(boardId);
    return row == boardTable.end() ? std::string() : row->second;
}

std::vector<std::string> PlatformImpl::GetProcThermSensor(const char* boardId) const
{
    return listNumbers(sensorsOfPlatform(getPlatformType(boardId).c_str()).thermal);
}

std::vector<std::string> PlatformImpl::GetProcStatusSensor(const char* boardId) const
{
    return listNumbers(sensorsOfPlatform(getPlatformType(boardId).c_str()).status);
}

std::vector<std::string> PlatformImpl::GetMemorySlotSensor(const char* boardId) const
{
    const PlatformSensors& sensors = sensorsOfPlatform(getPlatformType(boardId).c_str());
    std::array<std::uint8_t, mostMemorySlots> numbers;
    numbers.fill(noSensor);
    for (std::uint8_t slot = 0; slot < sensors.memorySlots; ++slot)
        numbers[slot] = static_cast<std::uint8_t>(sensors.firstMemorySlot + slot);
    return listNumbers(numbers);
}

void PlatformImpl::execIPMICommand(const std::string& request, std::vector<std::string>& reply)
{
    exchangeIpmi(Util::split(request, " "), {}, reply);
}

std::string PlatformImpl::platformOfBmc()
{
    constexpr char getDeviceId[] = "20 06 00 01";
    std::vector<std::string> reply;
    execIPMICommand(getDeviceId, reply);
    if (reply[0] != "0" || reply.size() < leastItems)
        return {};
    return DetectPlatformfromID(reply[productIdLow] + reply[productIdHigh]);
}

std::string PlatformImpl::DetectPlatformfromID(const std::string& productId)
{
    std::string platform = "OTHER_PLATFORM";
    for (const ProductGroup& group : productGroups())
        if (std::find(group.productIds.begin(), group.productIds.end(), productId) != group.productIds.end())
            platform = group.platform;
    return platform;
}

} // namespace Platform
