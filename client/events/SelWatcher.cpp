#include "client/events/SelWatcher.hpp"

#include "client/door/Functions.hpp"
#include "client/events/SNMP_RouteEvent.hpp"
#include "client/events/SelFollower.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/CheckedCopy.hpp"
#include "client/words/Trace.hpp"
#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SelView.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cxxabi.h>
#include <string_view>

using namespace client::events;
using namespace client::words;

int m_iLastRecordID = lastRecordOfLog;
std::string sSelEntry;
std::string sLastSelEntry;
std::string sDiscription;
std::string sTimeStamp;
std::string sSeverity;
EVENT_DATA_STRUCT t_SelData;
EVENT_DATA_STRUCT t_LastSelData;
CSelWrapper aSelWrapper;

namespace {

constexpr int mostRecords = 3000;

/// Places of the bytes in a record's text (IPMI 2.0, 32.1).
enum Token : std::size_t {
    tokenRecordIdLow = 0,
    tokenRecordIdHigh = 1,
    tokenRecordType = 2,
    tokenTimestamp = 3,
    tokenGeneratorId = 7,
    tokenEvmRev = 9,
    tokenSensorType = 10,
    tokenSensorNumber = 11,
    tokenEventTrigger = 12,
    tokenEventData1 = 13,
    tokenEventData2 = 14,
    tokenEventData3 = 15,
    mostTokens = 28,
};

using Tokens = std::array<std::string, mostTokens>;

/// At most 28 parts between single blanks; the rest of the text is left.
Tokens splitAtBlanks(std::string_view text)
{
    Tokens tokens;
    for (std::string& token : tokens) {
        const std::size_t blank = text.find(' ');
        token = text.substr(0, blank);
        if (blank == std::string_view::npos)
            break;
        text.remove_prefix(blank + 1);
    }
    return tokens;
}

template<class Number>
Number hexadecimal(const std::string& token)
{
    return static_cast<Number>(std::strtoul(token.c_str(), nullptr, 16));
}

unsigned char decimal(const std::string& token)
{
    return static_cast<unsigned char>(std::strtol(token.c_str(), nullptr, 10));
}

unsigned char firstCharacter(const std::string& token)
{
    return token.empty() ? 0 : static_cast<unsigned char>(token.front());
}

void decodeFields(const Tokens& tokens)
{
    using Byte = unsigned char;
    t_SelData.usRecordId = hexadecimal<unsigned short>(tokens[tokenRecordIdLow]);
    t_SelData.ucRecordType = hexadecimal<Byte>(tokens[tokenRecordType]);
    t_SelData.t_Timestamp = hexadecimal<std::time_t>(tokens[tokenTimestamp]);
    t_SelData.usGeneratorID = hexadecimal<unsigned short>(tokens[tokenGeneratorId]);
    t_SelData.ucEvmRev = firstCharacter(tokens[tokenEvmRev]);
    t_SelData.ucSensorType = hexadecimal<Byte>(tokens[tokenSensorType]);
    t_SelData.ucSensorNumber = hexadecimal<Byte>(tokens[tokenSensorNumber]);
    t_SelData.ucEventTrigger = hexadecimal<Byte>(tokens[tokenEventTrigger]);
    t_SelData.ucEventData1 = decimal(tokens[tokenEventData1]);
    t_SelData.ucEventData2 = firstCharacter(tokens[tokenEventData2]);
    t_SelData.ucEventData3 = firstCharacter(tokens[tokenEventData3]);
    aSelWrapper.m_cInfo.m_ucEventData1 = t_SelData.ucEventData1;
}

void moveMark(const Tokens& tokens)
{
    const unsigned high = hexadecimal<unsigned>(tokens[tokenRecordIdHigh]) * 256 & 0xFFFF;
    const int id = static_cast<int>(high + hexadecimal<unsigned char>(tokens[tokenRecordIdLow]));
    if (id >= m_iLastRecordID || m_iLastRecordID == lastRecordOfLog)
        m_iLastRecordID = id;
}

} // namespace

ResultMap client::events::readLog(unsigned first, int most)
{
    char mark[10];
    std::snprintf(mark, sizeof mark, "%x", first);
    SDK::Parameters parameters = {{"RECORD_ID", mark}, {"RANGE", std::to_string(most)}};
    if (const std::string locale = client::door::configuredLocale(); !locale.empty())
        parameters["LOCALE"] = locale;
    ResultMap result;
    CallQLGetMapInterface({{translatedLog, parameters}}, result);
    trace("\n Using /BMC/SEL/TRANSLATED - %d", static_cast<int>(result.size()));
    return result;
}

namespace {

const std::string& firstValue(const _XNode& node)
{
    return node.mXNodeList.at(0);
}

const std::string& textOfLast(const ResultMap& result, std::size_t count)
{
    return firstValue(result.at(std::string(translatedLog) + "[" + std::to_string(count - 1) + "]" + rawField));
}

void takeRaw(const std::string& text)
{
    sSelEntry = text;
    DecodeSELQuery();
}

/// The description in the configured locale, while sDiscription stays English: it chooses the trap.
std::string localDescription;

/// In a locale of its own the log gives the English text beside, behind all other fields.
void takeEnglish(const std::string& value)
{
    localDescription = sDiscription;
    sDiscription = value;
}

/// What a field's key contains, tried in this order, says what becomes of its value.
struct Field {
    std::string_view part;
    void (*take)(const std::string& value);
};

constexpr Field fields[] = {
    {"RAW", takeRaw},
    {"DESCR", [](const std::string& value) { sDiscription = value; }},
    {"TIMESTAMP", [](const std::string& value) { sTimeStamp = value; }},
    {"SEVERITY", [](const std::string& value) { sSeverity = value; }},
    {"ENGLISH", takeEnglish},
};

void takeField(const ResultMap& result, const std::string& key)
{
    const auto entry = result.find(key);
    if (entry == result.end() || entry->second.mXNodeList.empty())
        return;
    for (const Field& field : fields) {
        if (key.find(field.part) == std::string::npos)
            continue;
        field.take(entry->second.mXNodeList.front());
        return;
    }
}

void fillWrapper()
{
    CSelInfo& info = aSelWrapper.m_cInfo;
    info.m_cLocalTimeStamp.SetString(sTimeStamp.c_str());
    info.m_cSeverity.SetString(sSeverity.c_str());
    info.m_cShown.SetString(localDescription.c_str());
    info.m_usGeneratorID = t_SelData.usGeneratorID;
    info.m_ucEventData1 = t_SelData.ucEventData1;
    info.m_ucEventData2 = t_SelData.ucEventData2;
    info.m_ucEventData3 = t_SelData.ucEventData3;
    info.m_ucEvMRev = t_SelData.ucEvmRev;
    info.m_usRecordId = t_SelData.usRecordId;
    info.m_bStandardEvent = t_SelData.ucRecordType == ipmi::systemEventType;
    info.m_cSensorType.SetString(std::to_string(t_SelData.ucSensorType).c_str());
}

} // namespace

void client::events::handleRecord(const ResultMap& result, const _XNode& keys)
{
    localDescription.clear();
    for (const std::string& key : keys.mXNodeList)
        takeField(result, key);
    fillWrapper();
    copyChecked(t_SelData.sEventDiscription, sDiscription);
    copyChecked(t_SelData.sSeverity, sSeverity);
    routeEvent(t_SelData);
    t_LastSelData = t_SelData;
    sLastSelEntry = sSelEntry;
}

namespace {

/// The first record is the one that an earlier pass handled last.
void handleNewRecords(const ResultMap& result, const std::vector<std::string>& records)
{
    trace("\n ------------------- SEL Start -----------------\n");
    trace("This is last SEL record, so skip\n");
    for (std::size_t index = 1; index < records.size(); ++index)
        if (const auto record = result.find(records[index]); record != result.end())
            handleRecord(result, record->second);
    trace("\n ------------------- SEL End -----------------\n");
}

int poll()
{
    const ResultMap result = readLog(static_cast<unsigned>(m_iLastRecordID), mostRecords);
    const auto log = result.find(translatedLog);
    if (log == result.end() || log->second.mXNodeList.empty()) {
        trace("No SEL record found!");
        return 0;
    }
    sSelEntry = textOfLast(result, log->second.mXNodeList.size());
    if (sLastSelEntry.empty()) {
        sLastSelEntry = sSelEntry;
        DecodeSELQuery();
        trace("First time reading the SEL. Structures related to SEL are initialized now.\n");
        return 0;
    }
    if (sLastSelEntry == sSelEntry) {
        trace("Last and current SEL entries are equal.\n");
        return 0;
    }
    handleNewRecords(result, log->second.mXNodeList);
    return 1;
}

void traceRefusal(const ResultStatus& failure)
{
    trace("Query Failed to get the Last Record");
    for (const RStatus& entry : failure) {
        trace("Operation: %d", entry.mCommand);
        trace("on :%s", entry.mXQuery.c_str());
        trace(" failed Error code. %d  -", entry.mErrorCode);
        if (entry.mErrorCode != ERROR_INVALID_DATAVAL)
            continue;
        trace("Sel record ID = %d is not valid. SEL may be cleared.", m_iLastRecordID);
        m_iLastRecordID = lastRecordOfLog;
    }
}

} // namespace

int CheckForNewSELEntry()
{
    try {
        return common::policy().keepsMark ? logFollower().turn() : poll();
    } catch (const ResultStatus& failure) {
        traceRefusal(failure);
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        trace("Query Failed to get the Last Record");
    }
    return 0;
}

void DecodeSELQuery()
{
    try {
        trace("\n The SEL entry is %s:", sSelEntry.c_str());
        const Tokens tokens = splitAtBlanks(sSelEntry);
        decodeFields(tokens);
        moveMark(tokens);
    } catch (...) {
        trace("\nDeclode SEL failed\n");
    }
}

void client::events::keepMark()
{
    logFollower().keep();
}

ipmi::Bytes client::events::bytesOf(const EVENT_DATA_STRUCT& record)
{
    ipmi::Bytes bytes = ipmi::parseBytes(sSelEntry);
    const ipmi::SelView inHand(bytes);
    const bool isIt = inHand.sensorType() == record.ucSensorType && inHand.sensorNumber() == record.ucSensorNumber &&
                      ipmi::byteAt(bytes, ipmi::sel::directionAndType) == record.ucEventTrigger;
    return isIt && bytes.size() >= ipmi::sel::recordSize ? bytes : ipmi::Bytes();
}
