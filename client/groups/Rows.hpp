#pragma once

#include "client/words/Entities.hpp"

/// The rows of the groups: plain structures with texts of 512 bytes, each begun by the device id.

namespace client::groups {

using RowText = char[words::textBlockBytes];

/// A row of a group whose sensors are read live.
struct SensorRow {
    int nDeviceId;
    int nStatus;
    RowText stDescription;
};

/// A row of an analog sensor.
struct ThresholdRow {
    int nDeviceId;
    int nStatus;
    RowText stDescription;
    int nResolution;
    int nTolerance;
    int nAccuracy;
};

} // namespace client::groups

using SystemInfo = client::groups::SensorRow;
using PowerSupplyInfo = client::groups::SensorRow;
using PowerUnitInfo = client::groups::SensorRow;
using DiscreteVoltageInfo = client::groups::SensorRow;
using DiscreteCoolingInfo = client::groups::SensorRow;
using DriveSlotInfo = client::groups::SensorRow;
using miscSensorInfo = client::groups::SensorRow;
using discreteProcessorInfo = client::groups::SensorRow;
using discreteMemoryInfo = client::groups::SensorRow;

using VoltageInfo = client::groups::ThresholdRow;
using CurrentInfo = client::groups::ThresholdRow;
using TemperatureInfo = client::groups::ThresholdRow;
using CoolingDeviceInfo = client::groups::ThresholdRow;

struct CoolingUnitInfo {
    int nDeviceId;
    int nStatus;
    client::groups::RowText stDescription;
    client::groups::RowText stCaption;
};

struct ChassisInfo {
    int nDeviceId;
    int nStatus;
    int nKbdPwdStatus;
    int nPOPwdStatus;
    int nAdminPwdStatus;
    int nFPResetStatus;
    int nContainerType;
    client::groups::RowText stPartNumber;
    client::groups::RowText stSerialNumber;
    client::groups::RowText stName;
    client::groups::RowText stAssetTag;
    client::groups::RowText stDescription;
    client::groups::RowText stBootState;
    client::groups::RowText stSecurityState;
    client::groups::RowText stThermalState;
};

struct ProcessorInfo {
    int nDeviceId;
    client::groups::RowText stDescription;
    client::groups::RowText stStatusString;
    int nStatus;
    int nDeviceType;
    client::groups::RowText stPartNumber;
    client::groups::RowText stManufacturer;
    int nDeviceFamily;
    client::groups::RowText stVersionName;
    int nMaxSpeed;
    int nCurrentSpeed;
    int nClockSpeed;
    int nVoltage;
    int nUpgradeMethod;
    client::groups::RowText stSocketDesignation;
    client::groups::RowText stProcessorId;
};

struct MemoryArrayInfo {
    int nDeviceId;
    client::groups::RowText stDescription;
    client::groups::RowText stStatusString;
    int nStatus;
    int nLocation;
    int nMaxCapacity;
    int nNumOfDevice;
    int nErrorCorrection;
    int nHandle;
    int nIndex;
    int nUsageCode;
    client::groups::RowText stTag;
    int nUsedSlot;
};

struct MemoryDeviceInfo {
    int nDeviceId;
    client::groups::RowText stDescription;
    client::groups::RowText stStatusString;
    int nStatus;
    client::groups::RowText stTag;
    int nHandle;
    int nAssociatedArray;
    int nTotalWidth;
    int nDataWidth;
    int nSize;
    int nFormFactor;
    client::groups::RowText stLocator;
    client::groups::RowText stBankLabel;
    int nMemoryType;
    int nTypeDetail;
    int nSpeed;
    client::groups::RowText stManufacturer;
    client::groups::RowText stSerialNumber;
    client::groups::RowText stAssetTag;
    client::groups::RowText stPartNumber;
};
