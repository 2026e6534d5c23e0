#pragma once

#include "client/groups/BaseContainer.hpp"
#include "client/groups/SensorRows.hpp"

namespace client::groups {

/// The columns that the groups of analog sensors have in common, in the order of their attributes.
enum class ThresholdColumn {
    DeviceId,
    Description,
    StatusString,
    Status,
    Reading,
    UpperNonRec,
    UpperCritical,
    UpperNonCri,
    LowerNonCri,
    LowerCritical,
    LowerNonRec,
    Resolution,
    Tolerance,
    Accuracy,
};

/// Reading and bounds of one sensor as a group sees them.
struct ThresholdReading {
    int value = words::noValue;
    status::Bounds bounds;
    int unitType = 0;
    bool boundsKnown = true;
    bool answered = false;                   ///< see CSensorData
    std::optional<status::Judgement> judged; ///< where the group's own rules do not count
};

/// What differs between the groups of analog sensors.
struct ThresholdTraits {
    _SMAttribute firstAttribute; ///< DEVICEID; the other thirteen follow it
    int m_nSensorType;           ///< IPMI 2.0, table 42-3
    long m_nMultiplier;          ///< fixed point of the sensor values
    int m_nConversionUnit;       ///< from sensor values to shown ones
    int resolutionFactor;        ///< further factor of the resolution shown
    bool linearOnly;             ///< sensors with a linearization belong to a discrete group
    bool ignoresLowerBounds;     ///< in the status
    bool convertsBounds;         ///< shows bounds by `convertUnit`
    bool isFan;                  ///< live bounds taken unevenly, and the status rule of fans
    std::size_t nameLimit;       ///< characters of a sensor's name that are kept
    const char* defaultName;
    int noRow; ///< result for a row that does not exist
    const char* endOfInit;
    const status::StatusWords* words;                    ///< of sensors that report states
    std::unique_ptr<readings::SensorDatabase>* database; ///< row i of the table is element i
};

/// A table of analog sensors with reading, bounds, status and three fixed figures. Readings and bounds are integers in
/// the unit that the columns show; 0x7fffffff is "no value".
class ThresholdProbe : public BaseContainer<ThresholdRow> {
public:
    explicit ThresholdProbe(const ThresholdTraits& groupTraits) : traits(groupTraits), sensors(*traits.database) {}

    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;
    int getIntData(_SMAttribute attribute, int row, long& out) override;
    int getStrData(_SMAttribute attribute, int row, char*& out) override;
    /// Takes a bound and sends it nowhere: there is no query that sets one.
    int setIntData(_SMAttribute attribute, int row, long value) override;
    void goLive() override { sensors.goLive(); }
    bool readUnread(int row, std::mutex& guard) override;
    void readNow(int row) override { client::readings::readNow(sensors[row]); }
    void outdate(int row) override { sensors[row].m_bOutdated = true; }
    std::optional<status::DeviceStatus> presentStatus(int row) override;

private:
    void removeNonLinear();
    void fillRow(int row);
    std::size_t nameLimit() const;
    ThresholdReading readLive(int row);
    const char* statusAtStart(const ThresholdReading& reading);
    const char* statusWhenRead(const ThresholdReading& reading);
    int boundShown(const ThresholdReading& reading, int bound) const;
    int convertUnit(int unitType, int value) const;

    const ThresholdTraits& traits;
    SensorRows sensors;
    static constexpr unsigned short m_nChassisId = 0;
};

} // namespace client::groups

extern std::unique_ptr<client::readings::SensorDatabase> pVoltageProbeWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pCurrentProbeWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pTemperatureWrapper;
extern std::unique_ptr<client::readings::SensorDatabase> pCoolingDeviceWrapper;

struct voltageProbe : client::groups::ThresholdProbe {
    voltageProbe();
};
struct currentProbe : client::groups::ThresholdProbe {
    currentProbe();
};
struct temperatureProbe : client::groups::ThresholdProbe {
    temperatureProbe();
};
struct coolingDevice : client::groups::ThresholdProbe {
    coolingDevice();
};
