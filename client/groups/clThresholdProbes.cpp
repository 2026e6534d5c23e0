#include "client/groups/clThresholdProbes.hpp"

#include "client/readings/SensorAcquisition.hpp"
#include "client/words/Numbers.hpp"
#include "common/Policy.hpp"

#include <optional>

using namespace client::groups;
using namespace client::words;
using client::readings::SensorDatabase;
using client::status::Bounds;
using client::status::DeviceStatus;
using client::status::discreteCoolingWords;
using client::status::discreteVoltageWords;

std::unique_ptr<SensorDatabase> pVoltageProbeWrapper;
std::unique_ptr<SensorDatabase> pCurrentProbeWrapper;
std::unique_ptr<SensorDatabase> pTemperatureWrapper;
std::unique_ptr<SensorDatabase> pCoolingDeviceWrapper;

namespace {

/// Base units of sensors (IPMI 2.0, table 43-15).
enum BaseUnit : int { UNSPECIFIED_UNIT = 0, DEGREE_C_UNIT = 1, DEGREE_F_UNIT = 2, DEGREE_K_UNIT = 3 };

constexpr int kelvinAtZeroCelsius = 273;
constexpr int coolingNoRow = 30;
constexpr std::size_t longestName = textBlockBytes - 1;

constexpr client::status::StatusWords noWords{};

constexpr ThresholdTraits voltageTraits{
    .firstAttribute = VOLTAGE_DEVICEID,
    .m_nSensorType = 2,
    .m_nMultiplier = 1000,
    .m_nConversionUnit = 1,
    .resolutionFactor = 1,
    .linearOnly = true,
    .ignoresLowerBounds = false,
    .convertsBounds = false,
    .isFan = false,
    .nameLimit = 9,
    .defaultName = "HW_VoltageSensor",
    .noRow = CLIENT_ERROR_NO_ROW,
    .endOfInit = "\n End of VoltageProbe init()",
    .words = &discreteVoltageWords,
    .database = &pVoltageProbeWrapper,
};

constexpr ThresholdTraits currentTraits{
    .firstAttribute = CURRENT_DEVICEID,
    .m_nSensorType = 3,
    .m_nMultiplier = 1000,
    .m_nConversionUnit = 1,
    .resolutionFactor = 1,
    .linearOnly = true,
    .ignoresLowerBounds = false,
    .convertsBounds = false,
    .isFan = false,
    .nameLimit = longestName,
    .defaultName = "HW_CurrentSensor",
    .noRow = CLIENT_ERROR_NO_ROW,
    .endOfInit = "\n End of CurrentProbe init()",
    .words = &noWords,
    .database = &pCurrentProbeWrapper,
};

constexpr ThresholdTraits temperatureTraits{
    .firstAttribute = TEMPERATURE_DEVICEID,
    .m_nSensorType = 1,
    .m_nMultiplier = 1,
    .m_nConversionUnit = 10,
    .resolutionFactor = 10,
    .linearOnly = false,
    .ignoresLowerBounds = true,
    .convertsBounds = true,
    .isFan = false,
    .nameLimit = longestName,
    .defaultName = "HW_TemperatureSensor",
    .noRow = CLIENT_ERROR_NO_ROW,
    .endOfInit = "\n End of TemperatureProbe init()",
    .words = &noWords,
    .database = &pTemperatureWrapper,
};

constexpr ThresholdTraits coolingTraits{
    .firstAttribute = COOLINGDEVICE_DEVICEID,
    .m_nSensorType = 4,
    .m_nMultiplier = 1,
    .m_nConversionUnit = 1,
    .resolutionFactor = 10,
    .linearOnly = true,
    .ignoresLowerBounds = false,
    .convertsBounds = false,
    .isFan = true,
    .nameLimit = longestName,
    .defaultName = "HW_CoolingDevice",
    .noRow = coolingNoRow,
    .endOfInit = "\n End of CoolingDevice init()",
    .words = &discreteCoolingWords,
    .database = &pCoolingDeviceWrapper,
};

static_assert(VOLTAGE_ACCURACY - VOLTAGE_DEVICEID == static_cast<int>(ThresholdColumn::Accuracy));
static_assert(CURRENT_ACCURACY - CURRENT_DEVICEID == static_cast<int>(ThresholdColumn::Accuracy));
static_assert(TEMPERATURE_ACCURACY - TEMPERATURE_DEVICEID == static_cast<int>(ThresholdColumn::Accuracy));
static_assert(COOLINGDEVICE_ACCURACY - COOLINGDEVICE_DEVICEID == static_cast<int>(ThresholdColumn::Accuracy));

struct BoundSource {
    int Bounds::*to;
    int CSensorData::*from;
};

constexpr BoundSource plainBounds[] = {
    {&Bounds::upperNonRec, &CSensorData::m_iUpperNonRecover},
    {&Bounds::upperCritical, &CSensorData::m_iUpperCritical},
    {&Bounds::upperNonCri, &CSensorData::m_iUpperNonCritical},
    {&Bounds::lowerNonCri, &CSensorData::m_iLowerNonCritical},
    {&Bounds::lowerCritical, &CSensorData::m_iLowerCritical},
    {&Bounds::lowerNonRec, &CSensorData::m_iLowerNonRecover},
};

/// A fan's non-recoverable bounds stand for its non-critical ones, on which the status rule of fans works.
constexpr BoundSource fanBounds[] = {
    {&Bounds::upperNonRec, &CSensorData::m_iUpperNonCritical},
    {&Bounds::upperCritical, &CSensorData::m_iUpperCritical},
    {&Bounds::upperNonCri, &CSensorData::m_iUpperNonCritical},
    {&Bounds::lowerNonCri, &CSensorData::m_iLowerNonCritical},
    {&Bounds::lowerCritical, &CSensorData::m_iLowerCritical},
    {&Bounds::lowerNonRec, &CSensorData::m_iLowerNonCritical},
};

struct BoundColumn {
    ThresholdColumn column;
    int Bounds::*member;
};

constexpr BoundColumn boundColumns[] = {
    {ThresholdColumn::UpperNonRec, &Bounds::upperNonRec},     {ThresholdColumn::UpperCritical, &Bounds::upperCritical},
    {ThresholdColumn::UpperNonCri, &Bounds::upperNonCri},     {ThresholdColumn::LowerNonCri, &Bounds::lowerNonCri},
    {ThresholdColumn::LowerCritical, &Bounds::lowerCritical}, {ThresholdColumn::LowerNonRec, &Bounds::lowerNonRec},
};

ThresholdReading takeReading(const CSensorWrapper& wrapper, std::span<const BoundSource> bounds)
{
    ThresholdReading reading;
    reading.value = wrapper.m_cData.m_iValue;
    reading.unitType = wrapper.m_cInfo.m_iUnitType;
    reading.boundsKnown = !wrapper.m_pUnread;
    reading.answered = wrapper.m_cData.m_bAnswered;
    for (const BoundSource& bound : bounds)
        reading.bounds.*bound.to = wrapper.m_cData.*bound.from;
    return reading;
}

void takeFigures(ThresholdRow& row, const CSensorInfo& sensor)
{
    row.nResolution = sensor.m_iResolution;
    row.nTolerance = sensor.m_iTolerance;
    row.nAccuracy = sensor.m_iAccuracy;
}

std::optional<ThresholdColumn> columnOf(_SMAttribute attribute, const ThresholdTraits& traits)
{
    const int offset = attribute - traits.firstAttribute;
    if (offset < 0 || offset > static_cast<int>(ThresholdColumn::Accuracy))
        return std::nullopt;
    return static_cast<ThresholdColumn>(offset);
}

/// The bound that a column shows, null for other columns.
const BoundColumn* findBound(std::optional<ThresholdColumn> column)
{
    const auto* const found = std::ranges::find(boundColumns, column, &BoundColumn::column);
    return found == std::end(boundColumns) ? nullptr : found;
}

} // namespace

voltageProbe::voltageProbe() : ThresholdProbe(voltageTraits) {}
currentProbe::currentProbe() : ThresholdProbe(currentTraits) {}
temperatureProbe::temperatureProbe() : ThresholdProbe(temperatureTraits) {}
coolingDevice::coolingDevice() : ThresholdProbe(coolingTraits) {}

namespace client::groups {

int ThresholdProbe::init()
{
    GetAllSensorData(traits.m_nSensorType, &sensors.begin(), traits.m_nMultiplier);
    if (traits.linearOnly)
        removeNonLinear();
    sensors.settle(traits.defaultName);
    if (const int result = allocTable(sensors.all().m_tdLen()); result != CLIENT_SUCCESS)
        return result;
    for (int row = 0; row < m_nCount; ++row)
        fillRow(row);
    trace("%s", traits.endOfInit);
    return CLIENT_SUCCESS;
}

void ThresholdProbe::removeNonLinear()
{
    int number = 0;
    std::erase_if(sensors.all().m_pT, [&](const CSensorWrapper& sensor) {
        const bool removed = sensor.m_cInfo.m_bIsLinear != 0;
        if (removed)
            trace("\n Removing the object %d", number);
        ++number;
        return removed;
    });
}

std::size_t ThresholdProbe::nameLimit() const
{
    return common::policy().showsFullNames ? longestName : traits.nameLimit;
}

void ThresholdProbe::fillRow(int row)
{
    CSensorWrapper& sensor = sensors[row];
    ThresholdRow& stored = *getAddress(row);
    stored.nDeviceId = sensor.m_cInfo.m_iIdNumber;
    takeFigures(stored, sensor.m_cInfo);
    const CString& name = sensor.m_cInfo.m_cDescription;
    copyText(stored.stDescription, name.isEmpty() ? traits.defaultName : name.narrow().substr(0, nameLimit()));
    client::readings::readAtStart(sensor, traits.m_nMultiplier);
    stored.nStatus = getStatusEnum(statusAtStart(takeReading(sensor, plainBounds)));
}

const char* ThresholdProbe::statusAtStart(const ThresholdReading& reading)
{
    const Bounds& b = reading.bounds;
    if (traits.ignoresLowerBounds)
        return calStatus(reading.value, noValue, noValue, noValue, b.upperCritical, b.upperNonRec, b.upperNonCri);
    return calStatus(reading.value, b.lowerCritical, b.lowerNonRec, b.lowerNonCri, b.upperCritical, b.upperNonRec,
                     b.upperNonCri);
}

const char* ThresholdProbe::statusWhenRead(const ThresholdReading& reading)
{
    if (reading.judged)
        return reading.judged->status;
    if (!reading.boundsKnown)
        return "unknown";
    if (!traits.isFan)
        return statusAtStart(reading);
    const Bounds& b = reading.bounds;
    return coolingcalStatus(reading.value, b.lowerCritical, b.lowerNonRec, b.lowerNonCri, b.upperCritical,
                            b.upperNonRec, b.upperNonCri);
}

/// The database keeps the reading of start-up: what a failed read shows.
ThresholdReading ThresholdProbe::readLive(int row)
{
    CSensorWrapper sensor = sensors[row];
    sensor.m_cInfo.m_iIdNumber = getAddress(row)->nDeviceId;
    sensor.m_cInfo.m_usChassisId = m_nChassisId;
    GetSensorData(sensor, traits.m_nMultiplier);
    const auto judged = judge(sensor, *traits.words);
    ThresholdReading reading = takeReading(sensor, traits.isFan && !judged ? fanBounds : plainBounds);
    reading.judged = judged;
    return reading;
}

bool ThresholdProbe::readUnread(int row, std::mutex& guard)
{
    ThresholdRow* const stored = getAddress(row);
    if (!stored || !readLive(row).answered)
        return true;
    const bool answered = sensors.readUnread(row, traits.m_nMultiplier, guard);
    const std::scoped_lock lock(guard);
    takeFigures(*stored, sensors[row].m_cInfo);
    return answered;
}

std::optional<DeviceStatus> ThresholdProbe::presentStatus(int row)
{
    const ThresholdRow* const stored = getAddress(row);
    if (!stored)
        return std::nullopt;
    const ThresholdReading reading = readLive(row);
    return DeviceStatus{stored->nDeviceId, status::eventStatusOf(statusWhenRead(reading)),
                        reading.judged ? reading.judged->side : ""};
}

int ThresholdProbe::convertUnit(int unitType, int value) const
{
    if (value == noValue)
        return noValue;
    switch (unitType) {
    case UNSPECIFIED_UNIT:
        return value;
    case DEGREE_C_UNIT:
        return scaleValue(value, traits.m_nConversionUnit);
    case DEGREE_F_UNIT:
    case DEGREE_K_UNIT:
        return scaleValue(clampToValue(static_cast<long>(value) - kelvinAtZeroCelsius), traits.m_nConversionUnit);
    default:
        return 0;
    }
}

int ThresholdProbe::boundShown(const ThresholdReading& reading, int bound) const
{
    return traits.convertsBounds ? convertUnit(reading.unitType, bound) : scaleValue(bound, traits.m_nConversionUnit);
}

int ThresholdProbe::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const ThresholdRow* const stored = getAddress(row);
    if (!stored)
        return traits.noRow;
    const int unit = traits.m_nConversionUnit;
    const auto column = columnOf(attribute, traits);
    if (column == ThresholdColumn::DeviceId)
        out = stored->nDeviceId;
    else if (column == ThresholdColumn::Resolution)
        out = scaleValue(stored->nResolution, unit * traits.resolutionFactor);
    else if (column == ThresholdColumn::Tolerance)
        out = scaleValue(stored->nTolerance, unit);
    else if (column == ThresholdColumn::Accuracy)
        out = stored->nAccuracy;
    else
        return CLIENT_ERROR_NOSUCHNAME;
    return CLIENT_SUCCESS;
}

int ThresholdProbe::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const ThresholdRow* const stored = getAddress(row);
    if (!stored)
        return traits.noRow;
    if (columnOf(attribute, traits) != ThresholdColumn::Description)
        return CLIENT_ERROR_NOSUCHNAME;
    return answerText(stored->stDescription, out);
}

int ThresholdProbe::getIntData(_SMAttribute attribute, int row, long& out)
{
    out = -1;
    if (!getAddress(row))
        return traits.noRow;
    const auto column = columnOf(attribute, traits);
    const BoundColumn* const bound = findBound(column);
    if (!bound && column != ThresholdColumn::Status && column != ThresholdColumn::Reading)
        return CLIENT_ERROR_NOSUCHNAME;
    const ThresholdReading reading = readLive(row);
    if (bound)
        out = boundShown(reading, reading.bounds.*bound->member);
    else if (column == ThresholdColumn::Status)
        out = getStatusEnum(statusWhenRead(reading));
    else
        out = scaleValue(reading.value, traits.m_nConversionUnit);
    return CLIENT_SUCCESS;
}

int ThresholdProbe::getStrData(_SMAttribute attribute, int row, char*& out)
{
    if (!getAddress(row))
        return traits.noRow;
    if (columnOf(attribute, traits) != ThresholdColumn::StatusString)
        return CLIENT_ERROR_NOSUCHNAME;
    out = getNewHealthString(statusWhenRead(readLive(row)));
    return out ? CLIENT_SUCCESS : CLIENT_ERROR_MEMORY;
}

int ThresholdProbe::setIntData(_SMAttribute attribute, int row, long)
{
    if (!getAddress(row))
        return traits.noRow;
    return findBound(columnOf(attribute, traits)) ? CLIENT_SUCCESS : CLIENT_ERROR_NOSUCHNAME;
}

} // namespace client::groups
