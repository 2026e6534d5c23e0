#include "client/groups/SensorRows.hpp"

#include "client/groups/RowNames.hpp"
#include "common/Policy.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace client::groups {

namespace {

using Sensors = std::vector<CSensorWrapper>;

/// What was read of a sensor whose record is the same holds.
void keepFigures(const CSensorWrapper& from, CSensorWrapper& sensor)
{
    if (!from.m_pRecord || !sensor.m_pRecord || *from.m_pRecord != *sensor.m_pRecord)
        return;
    sensor.m_cData = from.m_cData;
    sensor.m_cInfo.m_iAccuracy = from.m_cInfo.m_iAccuracy;
    sensor.m_cInfo.m_iTolerance = from.m_cInfo.m_iTolerance;
    sensor.m_cInfo.m_iResolution = from.m_cInfo.m_iResolution;
    sensor.m_pUnread = from.m_pUnread;
    sensor.m_iReadAttempts = from.m_iReadAttempts;
    sensor.m_bOutdated = from.m_bOutdated;
}

/// Takes the sensor of the place out of `sensors`.
bool takeSensor(Sensors& sensors, CSensorWrapper& place)
{
    const auto found = std::ranges::find_if(sensors, [&place](const CSensorWrapper& sensor) {
        return sensor.m_cInfo.m_iIdNumber == place.m_cInfo.m_iIdNumber;
    });
    if (found == sensors.end())
        return false;
    keepFigures(place, *found);
    place = *found;
    sensors.erase(found);
    return true;
}

/// In the order in which the controller gives their records, so that rows have the same numbers whether they come
/// together or as the records are read.
bool isEarlier(const CSensorWrapper& left, const CSensorWrapper& right)
{
    const std::string &a = left.m_sRecordPath, &b = right.m_sRecordPath;
    return std::pair(a.size(), std::string_view(a)) < std::pair(b.size(), std::string_view(b));
}

bool takeFirst(Sensors& sensors, CSensorWrapper& out)
{
    if (sensors.empty())
        return false;
    out = sensors.front();
    sensors.erase(sensors.begin());
    return true;
}

std::string nameOf(const CSensorWrapper& sensor, const char* defaultName)
{
    const CString& name = sensor.m_cInfo.m_cDescription;
    return name.isEmpty() ? defaultName : name.narrow();
}

/// The entity's id and instance, as "7.4"; and the device id, which no other row of the table has.
std::vector<std::string> marksOf(const CSensorInfo& sensor)
{
    return {std::to_string(sensor.m_usChassisId) + "." + std::to_string(sensor.m_ucEntityInstance & 0x7F),
            "id " + std::to_string(sensor.m_iIdNumber)};
}

} // namespace

SensorRows::~SensorRows()
{
    if (live && database.get() == live)
        database.reset();
}

readings::SensorDatabase& SensorRows::begin()
{
    fresh = std::make_unique<readings::SensorDatabase>();
    return *fresh;
}

void SensorRows::settle(const char* defaultName)
{
    const bool grows = common::policy().fillsBehindRegistration;
    if (grows)
        std::ranges::stable_sort(fresh->m_pT, isEarlier);
    nameSensors(defaultName);
    if (!grows)
        goLive();
    else if (database)
        keepPlaces();
}

void SensorRows::nameSensors(const char* defaultName)
{
    std::vector<RowName> names;
    for (const CSensorWrapper& sensor : fresh->m_pT)
        names.push_back({nameOf(sensor, defaultName), marksOf(sensor.m_cInfo)});
    tellApart(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i].text != nameOf(fresh->m_pT[i], defaultName))
            fresh->m_pT[i].m_cInfo.m_cDescription.SetString(names[i].text.c_str());
}

/// Each sensor of the new set gets the place that it has in the database. The place of one that is gone goes to a new
/// sensor; until there is one the gone sensor keeps it, without a reading. Only places at the end vanish.
void SensorRows::keepPlaces()
{
    Sensors places = database->m_pT;
    Sensors& found = fresh->m_pT;
    std::vector<bool> stands;
    stands.reserve(places.size());
    for (CSensorWrapper& place : places)
        stands.push_back(takeSensor(found, place));
    for (std::size_t at = 0; at < places.size(); ++at)
        stands[at] = stands[at] || takeFirst(found, places[at]);
    for (; !places.empty() && !stands.back(); stands.pop_back())
        places.pop_back();
    places.insert(places.end(), found.begin(), found.end());
    found = std::move(places);
}

bool SensorRows::readUnread(int row, long multiplier, std::mutex& guard)
{
    CSensorWrapper sensor = (*this)[row];
    const bool isUnread = sensor.m_pUnread != nullptr;
    if (!isUnread && !sensor.m_bOutdated)
        return true;
    if (!isUnread) {
        sensor.m_pUnread = sensor.m_pRecord;
        sensor.m_iReadAttempts = 0;
    }
    sensor.m_bOutdated = false;
    const bool answered = !sensor.m_pUnread || readings::readUnread(sensor, multiplier);
    const std::scoped_lock lock(guard);
    if (answered || isUnread)
        (*this)[row] = sensor;
    return answered;
}

void SensorRows::goLive()
{
    if (fresh)
        database = std::move(fresh);
    live = database.get();
}

/// Until the bounds are known there is no status.
std::optional<status::Judgement> judge(const CSensorWrapper& sensor, const status::StatusWords& words)
{
    const CSensorInfo& info = sensor.m_cInfo;
    switch (info.m_eJudged) {
    case readings::Judged::byGroup:
        break;
    case readings::Judged::byReading:
        return sensor.m_pUnread ? status::Judgement()
                                : status::judgeReading(sensor.m_cData.m_dReading, sensor.m_cData.m_Limits);
    case readings::Judged::byStates:
        return status::Judgement{
            judgeStates(sensor.m_cData.m_sStates,
                        ipmi::statesOf(static_cast<std::uint8_t>(info.m_ucEventType), info.m_ucType), words)};
    }
    return std::nullopt;
}

} // namespace client::groups
