#include "client/readings/SensorAcquisition.hpp"

#include "client/query/Answers.hpp"
#include "client/query/Publication.hpp"
#include "client/query/QLInterface.hpp"
#include "client/status/StateWords.hpp"
#include "client/words/Numbers.hpp"
#include "client/words/Trace.hpp"
#include "common/Policy.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace client::query;
using namespace client::readings;
using namespace client::words;
using client::status::Limits;

namespace {

constexpr char notSupported[] = "NOT SUPPORTED";
constexpr char noReading[] = "READING_UNAVAILABLE";
/// Of a sensor whose bounds cannot be read while the controller answers for others.
constexpr int mostAttempts = 3;
constexpr std::size_t recordTextBytes = 1024;

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

struct ThresholdField {
    std::size_t place; ///< in the record
    Figure which;
    int CSensorData::*member;
    double client::status::Limits::*limit;
};

struct FigureField {
    std::size_t place; ///< in the record
    Figure which;
    int CSensorInfo::*member;
};

/// In the order in which they are asked.
constexpr ThresholdField thresholdFields[] = {
    {ipmi::sdr::lowerCritical, LowerCritical, &CSensorData::m_iLowerCritical, &Limits::lowerCritical},
    {ipmi::sdr::lowerNonCritical, LowerNonCritical, &CSensorData::m_iLowerNonCritical, &Limits::lowerNonCri},
    {ipmi::sdr::upperCritical, UpperCritical, &CSensorData::m_iUpperCritical, &Limits::upperCritical},
    {ipmi::sdr::upperNonCritical, UpperNonCritical, &CSensorData::m_iUpperNonCritical, &Limits::upperNonCri},
    {ipmi::sdr::lowerNonRecoverable, LowerNonRecoverable, &CSensorData::m_iLowerNonRecover, &Limits::lowerNonRec},
    {ipmi::sdr::upperNonRecoverable, UpperNonRecoverable, &CSensorData::m_iUpperNonRecover, &Limits::upperNonRec},
};

constexpr FigureField figureFields[] = {
    {ipmi::sdr::bAccuracy, Accuracy, &CSensorInfo::m_iAccuracy},
    {ipmi::sdr::mTolerance, Tolerance, &CSensorInfo::m_iTolerance},
    {ipmi::sdr::settableThresholds, Resolution, &CSensorInfo::m_iResolution},
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

std::string readingPath(const CSensorInfo& info)
{
    return sensorPath(info) + "/INTERPRET_SENSOR_VALUE";
}

void judgeByItself(CSensorInfo& info, const ipmi::SdrView& record)
{
    info.m_eJudged = record.hasReading() ? Judged::byReading : Judged::byStates;
    if (record.hasReading())
        info.m_bIsLinear = 0; // the controller's formula makes it so
}

CSensorInfo decodeRecord(const ipmi::SdrView& record)
{
    CSensorInfo info;
    info.m_bIsLinear = record.at(ipmi::sdr::linearisation);
    info.m_ucEntityInstance = record.entityInstance();
    info.m_usChassisId = record.entityId();
    info.m_ucType = record.at(ipmi::sdr::sensorType);
    info.m_ucLunNumber = record.lunByte();
    info.m_ucSensorNumber = record.number();
    info.m_ucEventType = record.at(ipmi::sdr::eventType);
    info.m_ucOwnerId = record.owner();
    info.m_iIdNumber = record.packedId();
    info.m_iUnitType = record.at(ipmi::sdr::baseUnit);
    info.m_usReadThresholdMask = record.at(ipmi::sdr::settableThresholds);
    if (common::policy().judgesEachState)
        judgeByItself(info, record);
    return info;
}

/// No bounds and no figures.
void clearFigures(CSensorWrapper& wrapper)
{
    for (const ThresholdField& field : thresholdFields)
        wrapper.m_cData.*field.member = noValue;
    for (const FigureField& field : figureFields)
        wrapper.m_cInfo.*field.member = noValue;
}

/// There is the record to read them from later.
void markUnread(CSensorWrapper& wrapper, const ipmi::SdrView& record)
{
    clearFigures(wrapper);
    wrapper.m_pRecord = wrapper.m_pUnread =
        std::make_shared<const ipmi::Bytes>(record.all().begin(), record.all().end());
}

/// The bound in the sensor's unit, not rounded; nothing where the sensor has none or it cannot be read.
std::optional<double> readLimit(const CSensorInfo& info, Figure which)
{
    const int raw =
        ExecuteThresholdQuery(info.m_ucSensorNumber, info.m_ucOwnerId, info.m_ucLunNumber, noValue, 1, which);
    const std::string path = readingPath(info) + "[" + std::to_string(raw) + "]";
    const auto answers = raw == noValue ? std::nullopt : tryQuery(path, "\n FAILED FOR THE THRESHOLDS:\n");
    const std::string* const value = answers ? findAnswer(*answers, path) : nullptr;
    return value ? std::optional(std::strtod(value->c_str(), nullptr)) : std::nullopt;
}

void readLimits(CSensorWrapper& wrapper)
{
    wrapper.m_cData.m_Limits = {};
    for (const ThresholdField& field : thresholdFields)
        if (const auto limit = readLimit(wrapper.m_cInfo, field.which))
            wrapper.m_cData.m_Limits.*field.limit = *limit;
}

/// Asks for those figures whose byte the record reaches: a short record leaves the others at 0.
void readFigures(CSensorWrapper& wrapper, const ipmi::SdrView& record, long multiplier)
{
    const CSensorInfo& info = wrapper.m_cInfo;
    const auto ask = [&](std::size_t place, Figure which, int& out) {
        if (record.has(place))
            out = ExecuteThresholdQuery(info.m_ucSensorNumber, info.m_ucOwnerId, info.m_ucLunNumber, record.at(place),
                                        multiplier, which);
    };
    for (const ThresholdField& field : thresholdFields)
        ask(field.place, field.which, wrapper.m_cData.*field.member);
    for (const FigureField& field : figureFields)
        ask(field.place, field.which, wrapper.m_cInfo.*field.member);
    if (info.m_eJudged == Judged::byReading)
        readLimits(wrapper);
}

/// At once, or later where the rows must not wait for it.
void takeFigures(CSensorWrapper& wrapper, const ipmi::SdrView& record, long multiplier)
{
    if (common::policy().fillsBehindRegistration)
        markUnread(wrapper, record);
    else
        readFigures(wrapper, record, multiplier);
}

void readName(CSensorInfo& info)
{
    const std::string path = sensorPath(info) + "/NAME";
    const auto answers = tryQuery(path, "\n FAILED FOR SENSORNAMEQUERY");
    if (const std::string* const name = answers ? findAnswer(*answers, path) : nullptr)
        info.m_cDescription.SetString(name->c_str());
}

void appendSensor(const std::string& path, const ipmi::SdrView& record, SensorDatabase& db, long multiplier,
                  bool discrete)
{
    if (!record.isReadable())
        return;
    CSensorWrapper wrapper;
    wrapper.m_sRecordPath = path;
    wrapper.m_cInfo = decodeRecord(record);
    const Judged judged = wrapper.m_cInfo.m_eJudged;
    if (judged == Judged::byStates)
        clearFigures(wrapper);
    else if (discrete && judged == Judged::byGroup)
        trace("\n DescreteSensor, so no threshold queries\n");
    else if (record.type() == ipmi::sdrtype::full)
        takeFigures(wrapper, record, multiplier);
    readName(wrapper.m_cInfo);
    wrapper.m_cData.m_iValue = noValue; // a controller that is busy just now must not look like a reading of zero
    readAtStart(wrapper, multiplier);
    db.m_pT.push_back(wrapper);
}

template<class Visit>
void forEachRecord(const std::string& query, const char* complaint, Visit visit)
{
    trace("%s", query.c_str());
    for (const auto& [path, node] : tryQuery(query, complaint).value_or(ResultMap())) {
        if (node.mType != NODE_LEAF)
            continue;
        if (node.mXNodeList.empty()) {
            trace("\nNo Data, continue\n");
            continue;
        }
        const ipmi::Bytes record = ipmi::parseBytes(node.mXNodeList.front().substr(0, recordTextBytes - 1));
        visit(path, ipmi::SdrView(record));
    }
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

void storeReading(CSensorWrapper& wrapper, const std::string& value, long multiplier)
{
    CSensorData& data = wrapper.m_cData;
    data.m_sStates = value;
    data.m_dReading = value == noReading ? std::nan("") : std::strtod(value.c_str(), nullptr);
    std::string text;
    MapMultipleQLStrToSNMPStr(value.c_str(), &text);
    data.m_cValueString.SetString(text.c_str());
    if (text == noReading || wrapper.m_cInfo.m_eJudged == Judged::byStates) {
        data.m_iValue = noValue;
        return;
    }
    const float reading = static_cast<float>(std::strtod(text.c_str(), nullptr));
    data.m_iValue = truncateToValue(static_cast<double>(reading * static_cast<float>(multiplier)));
}

} // namespace

void GetAllSensorData(int sensorType, SensorDatabase* db, long multiplier, bool discrete)
{
    forEachRecord("/BMC/SDR/SENSOR_TYPE[" + std::to_string(sensorType) + "]", "\n SensorType Query Failed\n",
                  [&](const std::string& path, const ipmi::SdrView& record) {
                      appendSensor(path, record, *db, multiplier, discrete);
                  });
    trace("\n End of the GetSDRData Function");
}

void client::readings::readOtherSensors(std::span<const int> types, SensorDatabase& db, long multiplier)
{
    for (const int recordType : {ipmi::sdrtype::full, ipmi::sdrtype::compact})
        forEachRecord("/BMC/SDR/RECORD_TYPE[" + std::to_string(recordType) + "]", "\n RecordType Query Failed\n",
                      [&](const std::string& path, const ipmi::SdrView& record) {
                          if (std::ranges::find(types, record.sensorType().value_or(0)) == types.end())
                              appendSensor(path, record, db, multiplier, true);
                      });
}

void GetAllSensorData(int sensorType, SensorDatabase* db, long multiplier)
{
    GetAllSensorData(sensorType, db, multiplier, false);
}

void client::readings::readAtStart(CSensorWrapper& wrapper, long multiplier)
{
    if (common::policy().fillsBehindRegistration)
        want(readingPath(wrapper.m_cInfo));
    else
        GetSensorData(wrapper, multiplier);
}

void client::readings::readNow(const CSensorWrapper& wrapper)
{
    query::readNow(readingPath(wrapper.m_cInfo));
}

bool client::readings::readUnread(CSensorWrapper& wrapper, long multiplier)
{
    if (wrapper.m_iReadAttempts >= mostAttempts)
        return true;
    const unsigned long failuresBefore = interfaceFailures();
    const ipmi::Bytes record = *wrapper.m_pUnread;
    const SDK::SameAnswers oneExchange;
    forgetStanding(sensorPath(wrapper.m_cInfo) + "/THRESHOLD/");
    readFigures(wrapper, ipmi::SdrView(record), multiplier);
    const bool failed = interfaceFailures() != failuresBefore;
    const bool givesUp = failed && ++wrapper.m_iReadAttempts >= mostAttempts;
    if (!failed || (givesUp && wrapper.m_cInfo.m_eJudged == Judged::byGroup))
        wrapper.m_pUnread.reset();
    return !failed;
}

void GetSensorData(CSensorWrapper& wrapper, long multiplier)
{
    const CSensorInfo& info = wrapper.m_cInfo;
    if (traceWanted)
        trace("\nSensor %s, number %d, type %d\n", info.m_cDescription.narrow().c_str(), info.m_ucSensorNumber,
              info.m_ucType);
    const std::string path = readingPath(info);
    const auto answers = tryQuery(path, "\n Failed for SensorReadingquery\n");
    const std::string* const value = answers ? findAnswer(*answers, path) : nullptr;
    wrapper.m_cData.m_bAnswered = value != nullptr;
    if (value)
        storeReading(wrapper, *value, multiplier);
    else if (common::policy().expiresReadings)
        storeReading(wrapper, noReading, multiplier);
}

int ExecuteThresholdQuery(int sensorNumber, int ownerId, int lun, long raw, long multiplier, int which)
{
    static constexpr char complaint[] = "\n FAILED FOR THE THRESHOLDS:\n";
    if (which == NoFigure)
        return noValue;
    const std::string path = sensorPath(sensorNumber, ownerId, lun);
    const char* const word = figureWords[which >= UpperCritical && which <= Accuracy ? which : 0];
    const auto answers = tryQuery(path + (which < Tolerance ? "/THRESHOLD/" : "/") + word, complaint);
    const int figure = answers ? readRawFigure(*answers, raw) : noValue;
    if (which >= Tolerance || raw == noValue || figure == noValue)
        return figure;
    const auto inUnits = tryQuery(path + "/INTERPRET_SENSOR_VALUE[" + std::to_string(figure) + "]", complaint);
    return inUnits ? translated(*inUnits, figure, multiplier) : figure;
}
