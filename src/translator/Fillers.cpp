#include "translator/Fillers.hpp"

#include "ipmi/SensorReading.hpp"
#include "translator/SensorValue.hpp"
#include "translator/WideText.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace translator {

namespace {

using Context = const EventContext&;
using Text = std::wstring_view;
using Out = std::wstring&;

void fillOr(Context context, Text text, Out out)
{
    out += text.empty() ? context.unknown() : text;
}

// What every event can say.

void fillSensorName(Context context, Text, Out out)
{
    out += context.sensorName.empty() ? context.misc(MISC_THE_SENSOR, L"the sensor") : context.sensorName;
}

void fillThresholdByte(Context context, int number, ipmi::DataKind kind, Out out)
{
    out += kind == ipmi::DataKind::reading ? sensorValueText(context, context.entry.eventData(number))
                                           : std::wstring(context.unknown());
}

/// A digital sensor is asserted by its state, any other by its event.
bool isStateAsserted(const SELEntry& entry)
{
    return entry.eventType() == ipmi::eventtype::digitalDiscrete ? (entry.offset() & 1) != 0 : !entry.isDeassertion();
}

/// The codes that the maker put in the record: ", event data 2 0x12".
std::wstring oemDataList(Context context)
{
    std::wstring list;
    const auto add = [&](int number, ipmi::DataKind kind, int misc, Text otherwise) {
        if (kind < ipmi::DataKind::oem)
            return;
        list.append(list.empty() ? L"" : L", ").append(context.misc(misc, otherwise));
        list += L"0x" + hexText(context.entry.eventData(number), 2, true);
    };
    add(2, context.entry.data2Kind(), MISC_EVENT_DATA_2, L"event data 2 ");
    add(3, context.entry.data3Kind(), MISC_EVENT_DATA_3, L"event data 3 ");
    return list;
}

void fillAssertion(Context context, Text, Out out)
{
    out += isStateAsserted(context.entry) ? context.misc(MISC_ASSERTED, L"reports it has been asserted")
                                          : context.misc(MISC_DEASSERTED, L"reports it has been deasserted");
    if (const std::wstring list = oemDataList(context); !list.empty()) {
        out.append(L" (").append(list).append(L").");
        return;
    }
    out += L", ";
    out += context.entry.isDeassertion() ? context.misc(MISC_DEASSERTION_EVENT, L"Deassertion Event.")
                                         : context.misc(MISC_ASSERTION_EVENT, L"Assertion Event.");
}

Text statusWord(Context context)
{
    constexpr Text words[] = {L"OK", L"Non-Critical", L"Critical", L"Non-Recoverable"};
    const int severity = std::clamp(context.severityId, int{SEVERITY_INFORMATIONAL}, int{SEVERITY_NON_RECOVERABLE});
    return context.misc(MISC_STATUS + severity, words[severity]);
}

// What only the record's maker can read: told byte by byte, and nothing advised.

std::wstring plainHex(std::uint8_t byte)
{
    return hexText(byte, 2, true) + L"h";
}

void fillCodes(Context context, Text, Out out)
{
    std::wstring list;
    const auto add = [&](int number, int misc, Text otherwise) {
        if (context.isForeignData(number))
            list.append(list.empty() ? L" (" : L", ")
                .append(context.misc(misc, otherwise))
                .append(plainHex(context.entry.eventData(number)));
    };
    add(2, MISC_EVENT_DATA_2, L"event data 2 ");
    add(3, MISC_EVENT_DATA_3, L"event data 3 ");
    out.append(list).append(list.empty() ? L"" : L")");
}

void fillAdvice(Context context, Text, Out out)
{
    const std::wstring* advice = context.tables.recommendedActions.find(context.action);
    if (advice && !context.isForeignData(2) && !context.isForeignData(3))
        out.append(L" ").append(*advice);
}

void fillEventData(Context context, Text, Out out)
{
    for (const int number : {1, 2, 3})
        out.append(number == 1 ? L"" : L" ").append(plainHex(context.entry.eventData(number)));
}

/// Value and unit; of a reading without a unit the value alone.
template<int Number>
void fillWithUnit(Context context, Text, Out out)
{
    out += sensorValueText(context, context.entry.eventData(Number));
    if (context.sdr && (context.sdr->view().units().base != 0 || context.sdr->view().units().isPercentage()))
        out += L" " + sensorUnitText(context);
}

// Numbers.

bool isSpecified(Context context, int number)
{
    return (number == 2 ? context.entry.data2Kind() : context.entry.data3Kind()) != ipmi::DataKind::unspecified;
}

/// `value` in the pattern's place of '#', or alone without a pattern.
void fillPattern(unsigned value, Text pattern, Out out)
{
    const std::size_t place = std::min(pattern.find(L'#'), pattern.size());
    out.append(pattern.substr(0, place)).append(decimalText(static_cast<int>(value)));
    if (place < pattern.size())
        out.append(pattern.substr(place + 1));
}

/// A number that the record does not have leaves a pattern out, and is said to be missing without one.
template<int Number>
void fillNumber(Context context, Text pattern, Out out)
{
    if (isSpecified(context, Number))
        fillPattern(context.entry.eventData(Number), pattern, out);
    else if (pattern.empty())
        out += context.unknown();
}

struct BitRange {
    unsigned high = 7;
    unsigned low = 0;
};

/// "7-4" or "3".
std::optional<BitRange> bitRange(Text spec)
{
    const auto isBit = [](wchar_t digit) { return digit >= L'0' && digit <= L'7'; };
    const bool one = spec.size() == 1 && isBit(spec[0]);
    const bool two = spec.size() == 3 && isBit(spec[0]) && spec[1] == L'-' && isBit(spec[2]);
    if (!one && !two)
        return std::nullopt;
    const unsigned first = static_cast<unsigned>(spec.front() - L'0');
    const unsigned second = static_cast<unsigned>(spec.back() - L'0');
    return BitRange{std::max(first, second), std::min(first, second)};
}

/// "%Bits event2:7-4%", or with a pattern "%Bits event2:7-4| (socket #)%".
template<int Number>
void fillBits(Context context, Text argument, Out out)
{
    const std::size_t bar = std::min(argument.find(L'|'), argument.size());
    const auto range = bitRange(argument.substr(0, bar));
    const Text pattern = argument.substr(std::min(bar + 1, argument.size()));
    if (range && isSpecified(context, Number)) {
        const unsigned mask = (2u << (range->high - range->low)) - 1;
        fillPattern(context.entry.eventData(Number) >> range->low & mask, pattern, out);
    } else if (pattern.empty())
        out += context.unknown();
}

// Users and channels (IPMI 2.0, table 42-3, session audit).

int channelNumber(Context context)
{
    return context.entry.eventData(3) & 0x0F;
}

void fillUserAndChannel(Context context, Text, Out out)
{
    const int user = context.entry.eventData(2) & 0x3F;
    out += user == 0 ? L" (user ID unspecified" : L" (user ID " + decimalText(user);
    out += L", channel number " + decimalText(channelNumber(context)) + L")";
}

// Places of processors and memory modules: event data 3 holds the socket in bits 7 to 5, the channel in 4 to 2, the
// module in 1 and 0; event data 2 holds the rank in bits 2 to 0.

int socketNumber(Context context)
{
    return (context.entry.eventData(3) >> 5) + (context.socketType == 0 ? 1 : 0);
}

int dimmNumber(Context context)
{
    return (context.entry.eventData(3) & 3) + 1;
}

void fillCpu(Context context, Text, Out out)
{
    out += L"CPU_" + decimalText(socketNumber(context)) + L", ";
}

void fillDimm(Context context, Text, Out out)
{
    out += L"DIMM_" + decimalText(dimmNumber(context)) + L", ";
}

void fillMemoryPair(Context context, Text, Out out)
{
    const int first = (dimmNumber(context) - 1) / 2 * 2 + 1;
    out += L"DIMM_" + decimalText(first) + L", DIMM_" + decimalText(first + 1) + L", ";
}

void fillMemoryChannel(Context context, Text, Out out)
{
    constexpr int named = 6;
    const int channel = context.entry.eventData(3) >> 2 & 7;
    out += L"Channel = ";
    if (channel < named)
        out += static_cast<wchar_t>(L'A' + channel);
    else
        out += L"Reserved";
}

void fillCpuBitmap(Context context, Text, Out out)
{
    for (int bit = 0; bit < 8; ++bit)
        if (context.entry.eventData(2) >> bit & 1)
            out += L"CPU_" + decimalText(bit + 1) + L", ";
}

// A PCI address: event data 2 the bus, event data 3 the device in bits 7 to 3 and the function in bits 2 to 0.

std::wstring pciHex(unsigned value)
{
    return L"0x" + hexText(value, 2, true);
}

unsigned pciDevice(Context context)
{
    return context.entry.eventData(3) >> 3;
}

unsigned pciFunction(Context context)
{
    return context.entry.eventData(3) & 7u;
}

void fillPciAddress(Context context, Text, Out out)
{
    out += L" (BUS:" + pciHex(context.entry.eventData(2)) + L", DEV:" + pciHex(pciDevice(context)) + L", FUN:" +
           pciHex(pciFunction(context)) + L")";
}

void fillPciId(Context context, Text, Out out)
{
    out += L"0x" + hexText(context.entry.eventData(3), 2) + hexText(context.entry.eventData(2), 2);
}

// Firmware versions: major and minor in event data 2 and 3; the families differ in what an extended record adds.

void fillVersion(Context context, Text, Out out)
{
    enum Family { PLAIN, BUILD_BYTES, BUILD_LETTERS, BUILD_NUMBER };
    out += hexText(context.entry.eventData(2), 2) + L"." + hexText(context.entry.eventData(3), 2);
    const auto more = context.entry.extension();
    if (context.platformBiosId == BUILD_BYTES && more.size() >= 3) {
        out += L"." + hexText(more[0], 2) + L"." + hexText(more[1], 2) + hexText(more[2]);
    } else if (context.platformBiosId == BUILD_LETTERS && more.size() >= 4) {
        out += L".";
        for (const std::uint8_t letter : more.first(4))
            out += static_cast<wchar_t>(letter >= 0x20 && letter < 0x7F ? letter : '.');
    } else if (context.platformBiosId == BUILD_NUMBER && !more.empty()) {
        out += L"." + decimalText(more[0]);
    }
}

std::wstring oemBytesText(std::span<const std::uint8_t> bytes)
{
    std::wstring text;
    for (const std::uint8_t byte : bytes)
        text.append(text.empty() ? L"" : L" ").append(hexText(byte, 2, true));
    return text;
}

struct FillerRow {
    Text token;
    Fill fill;
};

/// By length first, which most comparisons end with.
constexpr auto isBefore = [](Text a, Text b) { return a.size() != b.size() ? a.size() < b.size() : a < b; };

template<std::size_t Count>
constexpr std::array<FillerRow, Count> sorted(std::array<FillerRow, Count> rows)
{
    std::ranges::sort(rows, isBefore, &FillerRow::token);
    return rows;
}

/// What is behind a token's colon is its argument.
constexpr auto fillers = sorted(std::to_array<FillerRow>({
    {L"[severity]", [](Context c, Text, Out out) { fillOr(c, c.severity, out); }},
    {L"[sensor_name]", fillSensorName},
    {L"[offset_string]", fillAssertion},
    {L"[event_data_byte_2_translated]",
     [](Context c, Text, Out out) { fillThresholdByte(c, 2, c.entry.data2Kind(), out); }},
    {L"[event_data_byte_3_translated]",
     [](Context c, Text, Out out) { fillThresholdByte(c, 3, c.entry.data3Kind(), out); }},
    {L"[sensor_units]", [](Context c, Text, Out out) { out += sensorUnitText(c); }},
    {L"[recommended_action]",
     [](Context c, Text, Out out) { out += c.wordOf(c.tables.recommendedActions, c.action); }},
    {L"[timestamp]", [](Context c, Text, Out out) { fillOr(c, c.timestamp, out); }},
    {L"[gen_id]", [](Context c, Text, Out out) { out += L"0x" + hexText(c.entry.manufacturer(), 6, true); }},
    {L"[server_name]", [](Context c, Text, Out out) { out += c.misc(MISC_SERVER, L"the server"); }},
    {L"[serverName]", [](Context c, Text, Out out) { out += c.misc(MISC_SERVER, L"the server"); }},
    {L"[oem_ts_string]", [](Context c, Text, Out out) { out += oemBytesText(c.entry.oemTimestampedData()); }},
    {L"[oem_non_ts_string]", [](Context c, Text, Out out) { out += oemBytesText(c.entry.oemData()); }},
    {L"%Codes%", fillCodes},
    {L"%Advice%", fillAdvice},
    {L"%Reading%", fillWithUnit<2>},
    {L"%Threshold%", fillWithUnit<3>},
    {L"%Event type%", [](Context c, Text, Out out) { out += plainHex(c.entry.eventType()); }},
    {L"%Event data%", fillEventData},
    {L"%Record type%", [](Context c, Text, Out out) { out += plainHex(c.entry.type()); }},
    {L"%Manufacturer%",
     [](Context c, Text, Out out) { out += decimalText(static_cast<int>(c.entry.manufacturer())); }},
    {L"%Hex event2%", [](Context c, Text, Out out) { out += plainHex(c.entry.eventData(2)); }},
    {L"%Hex event3%", [](Context c, Text, Out out) { out += plainHex(c.entry.eventData(3)); }},
    {L"%UpperOrLower%",
     [](Context c, Text, Out out) {
         out += c.entry.offset() < firstUpperOffset ? c.misc(MISC_LOWER, L"Lower") : c.misc(MISC_UPPER, L"Upper");
     }},
    {L"%Transition%",
     [](Context c, Text, Out out) { (out += c.misc(MISC_TRANSITION_TO, L" - transition to ")) += statusWord(c); }},
    {L"%Status%", [](Context c, Text, Out out) { out += statusWord(c); }},
    {L"%evd3%", fillNumber<3>},
    {L"%Number event2%", fillNumber<2>},
    {L"%Number event2:", fillNumber<2>},
    {L"%Number event3%", fillNumber<3>},
    {L"%Number event3:", fillNumber<3>},
    {L"%Bits event2:", fillBits<2>},
    {L"%Bits event3:", fillBits<3>},
    {L"%EntityID event2%",
     [](Context c, Text, Out out) { out += c.wordOf(c.tables.entityIds, c.entry.eventData(2)); }},
    {L"%EntityID event3%",
     [](Context c, Text, Out out) { out += c.wordOf(c.tables.entityIds, c.entry.eventData(3)); }},
    {L"%Offset event3%",
     [](Context c, Text, Out out) { out += c.wordOf(c.tables.sensorTypes, c.entry.eventData(3)); }},
    {L"%UserID and ChannelNumber%", fillUserAndChannel},
    {L"%ChannelNumber event3%", [](Context c, Text, Out out) { out += decimalText(channelNumber(c)); }},
    {L"%CHANNEL%", fillMemoryChannel},
    {L"%CPU%", fillCpu},
    {L"%cpu_number%", [](Context c, Text, Out out) { out += decimalText(socketNumber(c)); }},
    {L"%Socket ID%", [](Context c, Text, Out out) { out += decimalText(socketNumber(c)); }},
    {L"%DIMM%", fillDimm},
    {L"%DIMM_Number%", [](Context c, Text, Out out) { out += decimalText(dimmNumber(c)); }},
    {L"%DIMM Number%", [](Context c, Text, Out out) { out += decimalText(dimmNumber(c)); }},
    {L"%CPU_DIMM Number%", [](Context c, Text, Out out) { fillCpu(c, {}, out), fillDimm(c, {}, out); }},
    {L"%Rank info%",
     [](Context c, Text, Out out) { out += L"RANK_" + decimalText(c.entry.eventData(2) & 7) + L", "; }},
    {L"%Memory Pair%", fillMemoryPair},
    {L"%CPU bitmap%", fillCpuBitmap},
    {L"%bus%", fillPciAddress},
    {L"%device%", [](Context c, Text, Out out) { out += pciHex(pciDevice(c)); }},
    {L"%function%", [](Context c, Text, Out out) { out += pciHex(pciFunction(c)); }},
    {L"%Bus_Number%", [](Context c, Text, Out out) { out += pciHex(c.entry.eventData(2)); }},
    {L"%Dev_Number%", [](Context c, Text, Out out) { out += pciHex(pciDevice(c)); }},
    {L"%Fun_Number%", [](Context c, Text, Out out) { out += pciHex(pciFunction(c)); }},
    {L"%Seg_Number%",
     [](Context c, Text, Out out) { out += pciHex(c.entry.extension().empty() ? 0 : c.entry.extension()[0]); }},
    {L"%Vendor_ID%", fillPciId},
    {L"%Device_ID%", fillPciId},
    {L"%version%", fillVersion},
}));

} // namespace

Fill findFiller(std::wstring_view token)
{
    const auto found = std::ranges::lower_bound(fillers, token, isBefore, &FillerRow::token);
    return found != fillers.end() && found->token == token ? found->fill : nullptr;
}

} // namespace translator
