#include "client/readings/SensorAcquisition.hpp"

#include "client/query/Answers.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Numbers.hpp"
#include "client/words/Trace.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr char notSupported[] = "NOT SUPPORTED";
constexpr std::size_t recordTextBytes = 1024;

enum RecordType : int { fullRecord = 1, compactRecord = 2 };

/// Kinds of figure of a sensor, as ExecuteThresholdQuery takes them; all below Tolerance are thresholds.
enum Figure : int {
    UpperCritical = 1,
    UpperNonCritical,
    UpperNonRecoverable,
    LowerNonCritical,
    LowerNonRecoverable,
    LowerCritical,
    Tolerance,
    Resolution,
    Accuracy,
    NoFigure,
};

constexpr const char* figureWords[] = {
    "UPPER_CRITICAL", // stands for every number without a word of its own
    "UPPER_CRITICAL", "UPPER_NONCRITICAL", "UPPER_NONRECOVERABLE", "LOWER_NONCRITICAL", "LOWER_NONRECOVERABLE",
    "LOWER_CRITICAL", "TOLERANCE",         "RESOLUTION",           "ACCURACY",
};

/// Numbers of the SDR bytes that are read, from 1 (IPMI 2.0, 43.1).
enum SdrByte : std::size_t {
    byteRecordType = 4,
    byteOwnerId = 6,
    byteLun = 7,
    byteSensorNumber = 8,
    byteEntityId = 9,
    byteEntityInstance = 10,
    byteSensorType = 13,
    byteEventType = 14,
    byteReadableMask = 20,
    byteBaseUnit = 22,
    byteLinearization = 24,
};

struct ThresholdField {
    std::size_t sdrByte;
    Figure which;
    int CSensorData::*member;
};

struct FigureField {
    std::size_t sdrByte;
    Figure which;
    int CSensorInfo::*member;
};

/// In the order in which they are asked.
constexpr ThresholdField thresholdFields[] = {
    {41, LowerCritical, &CSensorData::m_iLowerCritical},
    {42, LowerNonCritical, &CSensorData::m_iLowerNonCritical},
    {38, UpperCritical, &CSensorData::m_iUpperCritical},
    {39, UpperNonCritical, &CSensorData::m_iUpperNonCritical},
    {40, LowerNonRecoverable, &CSensorData::m_iLowerNonRecover},
    {37, UpperNonRecoverable, &CSensorData::m_iUpperNonRecover},
};

constexpr FigureField figureFields[] = {
    {28, Accuracy, &CSensorInfo::m_iAccuracy},
    {26, Tolerance, &CSensorInfo::m_iTolerance},
    {20, Resolution, &CSensorInfo::m_iResolution},
};

/// The bytes of a record as text, numbered from 1; a byte beyond the record's end reads as 0.
class RecordBytes {
public:
    explicit RecordBytes(const std::string& text) : tokens(Util::split(text.substr(0, recordTextBytes - 1), " ")) {}

    bool has(std::size_t number) const { return number >= 1 && number <= tokens.size(); }
    int at(std::size_t number) const
    {
        return has(number) ? clampToValue(std::strtol(tokens[number - 1].c_str(), nullptr, 16)) : 0;
    }

private:
    std::vector<std::string> tokens;
};

std::string sensorPath(int sensorNumber, int ownerId, int lun)
{
    char path[100];
    std::snprintf(path, sizeof path, "/BMC/SENSOR[%d]/OWNER[%d]/LUN[%d]", sensorNumber, ownerId, lun);
    return path;
}

std::string sensorPath(const CSensorInfo& info)
{
    return sensorPath(info.m_ucSensorNumber, info.m_ucOwnerId, info.m_ucLunNumber);
}

/// The LUN's bits 5 to 7 lie above the sensor number, the rest of it below the owner.
int deviceIdOf(const CSensorInfo& info)
{
    constexpr unsigned upperLunBits = 0xE0;
    const auto lun = static_cast<unsigned>(info.m_ucLunNumber);
    return static_cast<int>(static_cast<unsigned>(info.m_ucSensorNumber) << 16 | lun | (lun & upperLunBits) << 19 |
                            static_cast<unsigned>(info.m_ucOwnerId) << 8);
}

CSensorInfo decodeRecord(const RecordBytes& record)
{
    CSensorInfo info;
    info.m_bIsLinear = record.at(byteLinearization);
    info.m_ucEntityInstance = static_cast<unsigned char>(record.at(byteEntityInstance));
    info.m_usChassisId = static_cast<unsigned short>(record.at(byteEntityId));
    info.m_ucType = static_cast<unsigned char>(record.at(byteSensorType));
    info.m_ucLunNumber = record.at(byteLun);
    info.m_ucSensorNumber = record.at(byteSensorNumber);
    info.m_ucEventType = record.at(byteEventType);
    info.m_ucOwnerId = record.at(byteOwnerId);
    info.m_iIdNumber = deviceIdOf(info);
    info.m_iUnitType = record.at(byteBaseUnit);
    info.m_usReadThresholdMask = static_cast<unsigned short>(record.at(byteReadableMask));
    return info;
}

/// Asks for those figures whose byte the record reaches: a short record leaves the others at 0.
void readFigures(CSensorWrapper& wrapper, const RecordBytes& record, long multiplier)
{
    const CSensorInfo& info = wrapper.m_cInfo;
    const auto ask = [&](std::size_t sdrByte, Figure which, int& out) {
        if (record.has(sdrByte))
            out = ExecuteThresholdQuery(info.m_ucSensorNumber, info.m_ucOwnerId, info.m_ucLunNumber, record.at(sdrByte),
                                        multiplier, which);
    };
    for (const ThresholdField& field : thresholdFields)
        ask(field.sdrByte, field.which, wrapper.m_cData.*field.member);
    for (const FigureField& field : figureFields)
        ask(field.sdrByte, field.which, wrapper.m_cInfo.*field.member);
}

void readName(CSensorInfo& info)
{
    const std::string query = sensorPath(info) + "/NAME";
    try {
        ResultMap result;
        CallQLInterface(query, result);
        if (const std::string* const name = findAnswer(result, query))
            info.m_cDescription.SetString(name->c_str());
    } catch (const ResultStatus& failure) {
        trace("\n FAILED FOR SENSORNAMEQUERY");
        traceFailure(failure);
    }
}

void appendSensor(const RecordBytes& record, SensorDatabase& db, long multiplier, bool discrete)
{
    const int recordType = record.at(byteRecordType);
    if (recordType != fullRecord && recordType != compactRecord)
        return;
    CSensorWrapper wrapper;
    wrapper.m_cInfo = decodeRecord(record);
    if (discrete)
        trace("\n DescreteSensor, so no threshold queries\n");
    else if (recordType == fullRecord)
        readFigures(wrapper, record, multiplier);
    readName(wrapper.m_cInfo);
    GetSensorData(wrapper, multiplier);
    db.m_pT.push_back(wrapper);
}

ResultMap recordsOfType(int sensorType)
{
    const std::string query = "/BMC/SDR/SENSOR_TYPE[" + std::to_string(sensorType) + "]";
    trace("%s", query.c_str());
    ResultMap records;
    try {
        CallQLInterface(query, records);
    } catch (const ResultStatus& failure) {
        trace("\n SensorType Query Failed\n");
        traceFailure(failure);
    }
    return records;
}

/// What the threshold query itself answers; `raw` becomes "no value" with it.
int readRawFigure(const ResultMap& answers, long& raw)
{
    int figure = noValue;
    for (const auto& [path, node] : answers) {
        if (node.mXNodeList.empty())
            continue;
        const std::string& value = node.mXNodeList.front();
        if (value == notSupported) {
            trace("\nThreshold Querry returns no value, so NO_VALUE_PRSENT is set\n");
            figure = noValue;
            raw = noValue;
        } else {
            figure = clampToValue(std::strtol(value.c_str(), nullptr, 10));
        }
    }
    return figure;
}

int translated(const ResultMap& answers, int figure, long multiplier)
{
    for (const auto& [path, node] : answers) {
        if (node.mXNodeList.empty()) {
            trace("Error: No Value, so Value is 0\n");
            figure = 0;
        } else {
            const double value = std::strtod(node.mXNodeList.front().c_str(), nullptr);
            figure = truncateToValue(value * static_cast<double>(multiplier));
        }
    }
    return figure;
}

void storeReading(CSensorData& data, const std::string& value, long multiplier)
{
    std::string text;
    MapMultipleQLStrToSNMPStr(value.c_str(), &text);
    data.m_cValueString.SetString(text.c_str());
    if (text == "READING_UNAVAILABLE") {
        data.m_iValue = noValue;
        return;
    }
    const float reading = static_cast<float>(std::strtod(text.c_str(), nullptr));
    data.m_iValue = truncateToValue(static_cast<double>(reading * static_cast<float>(multiplier)));
}

} // namespace

void GetAllSensorData(int sensorType, SensorDatabase* db, long multiplier, bool discrete)
{
    for (const auto& [path, node] : recordsOfType(sensorType)) {
        if (node.mType != NODE_LEAF)
            continue;
        if (node.mXNodeList.empty()) {
            trace("\nNo Data, continue\n");
            continue;
        }
        appendSensor(RecordBytes(node.mXNodeList.front()), *db, multiplier, discrete);
    }
    trace("\n End of the GetSDRData Function");
}

void GetAllSensorData(int sensorType, SensorDatabase* db, long multiplier)
{
    GetAllSensorData(sensorType, db, multiplier, false);
}

void GetSensorData(CSensorWrapper& wrapper, long multiplier)
{
    const CSensorInfo& info = wrapper.m_cInfo;
    if (traceWanted)
        trace("\nSensor %s, number %d, type %d\n", info.m_cDescription.narrow().c_str(), info.m_ucSensorNumber,
              info.m_ucType);
    const std::string query = sensorPath(info) + "/INTERPRET_SENSOR_VALUE";
    try {
        ResultMap result;
        CallQLInterface(query, result);
        if (const std::string* const value = findAnswer(result, query))
            storeReading(wrapper.m_cData, *value, multiplier);
    } catch (const ResultStatus& failure) {
        trace("\n Failed for SensorReadingquery\n");
        traceFailure(failure);
    }
}

int ExecuteThresholdQuery(int sensorNumber, int ownerId, int lun, long raw, long multiplier, int which)
{
    if (which == NoFigure)
        return noValue;
    const std::string path = sensorPath(sensorNumber, ownerId, lun);
    const char* const word = figureWords[which >= UpperCritical && which <= Accuracy ? which : 0];
    int figure = noValue;
    try {
        ResultMap answers;
        CallQLInterface(path + (which < Tolerance ? "/THRESHOLD/" : "/") + word, answers);
        figure = readRawFigure(answers, raw);
        if (which >= Tolerance || raw == noValue || figure == noValue)
            return figure;
        CallQLInterface(path + "/INTERPRET_SENSOR_VALUE[" + std::to_string(figure) + "]", answers);
        return translated(answers, figure, multiplier);
    } catch (const ResultStatus& failure) {
        trace("\n FAILED FOR THE THRESHOLDS:\n");
        traceFailure(failure);
        return figure;
    }
}
