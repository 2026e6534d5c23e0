#pragma once

#include "client/status/StatusRules.hpp"
#include "client/words/CString.hpp"
#include "ipmi/Bytes.hpp"

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

using BOOL = int;

namespace client::readings {

/// Where a row's status comes from.
enum class Judged {
    byGroup,   ///< from what the group's own rules make of its columns
    byReading, ///< from the reading and its limits, whatever table the row is in
    byStates,  ///< from the states; there is no reading, and there are no bounds
};

} // namespace client::readings

/// What never changes of a sensor. "SDR byte" counts from 1, as the sensor data record formats of IPMI 2.0, 43.1 and
/// 43.2 do.
struct CSensorInfo {
    virtual ~CSensorInfo() = default;
    CSensorInfo() = default;
    CSensorInfo(const CSensorInfo&) = default;
    CSensorInfo& operator=(const CSensorInfo&) = default;

    unsigned short m_usReadThresholdMask = 0; ///< SDR byte 20
    int m_iNominalReading = 0;                ///< this and the next four stay 0
    int m_iNormalMaxReading = 0;
    int m_iNormalMinReading = 0;
    int m_iMaxReading = 0;
    int m_iMinReading = 0;
    int m_iResolution = 0;
    int m_iTolerance = 0;
    int m_iAccuracy = 0;
    int m_iIdNumber = 0;        ///< device id: sensor number, owner and LUN in one
    unsigned char m_ucType = 0; ///< SDR byte 13
    int m_iUnitType = 0;        ///< SDR byte 22
    unsigned char m_ucEntityId = 0;
    unsigned char m_ucEntityInstance = 0; ///< SDR byte 10
    BOOL m_bIsLinear = 0;                 ///< SDR byte 24, the linearization code: 0 is linear, against the name
    CString m_cDescription;
    unsigned short m_usChassisId = 0; ///< SDR byte 9, the entity id
    int m_ucLunNumber = 0;            ///< SDR byte 7
    int m_ucSensorNumber = 0;         ///< SDR byte 8
    int m_ucEventType = 0;            ///< SDR byte 14
    int m_ucOwnerId = 0;              ///< SDR byte 6
    BOOL m_bIsInverse = 0;
    client::readings::Judged m_eJudged = client::readings::Judged::byGroup;
};

/// What changes of a sensor; 0x7fffffff is "no value".
struct CSensorData {
    virtual ~CSensorData() = default;
    CSensorData() = default;
    CSensorData(const CSensorData&) = default;
    CSensorData& operator=(const CSensorData&) = default;

    int m_iValue = 0;
    int m_iUpperNonRecover = 0;
    int m_iUpperCritical = 0;
    int m_iUpperNonCritical = 0;
    int m_iLowerNonRecover = 0;
    int m_iLowerCritical = 0;
    int m_iLowerNonCritical = 0;
    CString m_cValueString;
    std::string m_sStates;                                        ///< the value in the SDK's own words
    double m_dReading = std::numeric_limits<double>::quiet_NaN(); ///< not rounded; NaN is "no value"
    client::status::Limits m_Limits;
    bool m_bAnswered = false; ///< the controller has told of the sensor, be it that it has no reading now
};

struct CSensorWrapper {
    virtual ~CSensorWrapper() = default;
    CSensorWrapper() = default;
    CSensorWrapper(const CSensorWrapper&) = default;
    CSensorWrapper& operator=(const CSensorWrapper&) = default;

    CSensorInfo m_cInfo;
    CSensorData m_cData;
    std::string m_sRecordPath; ///< among the controller's records
    /// The record while the sensor's bounds and figures have yet to be read from it; null once they are known.
    std::shared_ptr<const ipmi::Bytes> m_pUnread;
    int m_iReadAttempts = 0;                      ///< at those bounds and figures
    std::shared_ptr<const ipmi::Bytes> m_pRecord; ///< the record of a sensor with bounds
    bool m_bOutdated = false;                     ///< the bounds may have changed
};

/// The sensors of one group; an element's place is its row, once the group has removed what it does not show.
template<class T>
struct CDatabase {
    std::vector<T> m_pT;

    /// The count of elements.
    int m_tdLen() const { return static_cast<int>(m_pT.size()); }
};

namespace client::readings {

using SensorDatabase = CDatabase<CSensorWrapper>;

} // namespace client::readings
