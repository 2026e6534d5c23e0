#pragma once

#include "client/words/Entities.hpp"

/// The rows of the groups: plain structures with texts of 512 bytes, each begun by the device id.

using RowText = char[textBlockBytes];

/// A row of a group whose sensors are read live.
struct SensorRow {
    int nDeviceId;
    int nStatus;
    RowText stDescription;
};

using SystemInfo = SensorRow;
using PowerSupplyInfo = SensorRow;
using PowerUnitInfo = SensorRow;
using DiscreteVoltageInfo = SensorRow;
using DiscreteCoolingInfo = SensorRow;
using DriveSlotInfo = SensorRow;
using miscSensorInfo = SensorRow;
using discreteProcessorInfo = SensorRow;
using discreteMemoryInfo = SensorRow;

/// A row of an analog sensor.
struct ThresholdRow {
    int nDeviceId;
    int nStatus;
    RowText stDescription;
    int nResolution;
    int nTolerance;
    int nAccuracy;
};

using VoltageInfo = ThresholdRow;
using CurrentInfo = ThresholdRow;
using TemperatureInfo = ThresholdRow;
using CoolingDeviceInfo = ThresholdRow;

struct CoolingUnitInfo {
    int nDeviceId;
    int nStatus;
    RowText stDescription;
    RowText stCaption;
};

struct ChassisInfo {
    int nDeviceId;
    int nStatus;
    int nKbdPwdStatus;
    int nPOPwdStatus;
    int nAdminPwdStatus;
    int nFPResetStatus;
    int nContainerType;
    RowText stPartNumber;
    RowText stSerialNumber;
    RowText stName;
    RowText stAssetTag;
    RowText stDescription;
    RowText stBootState;
    RowText stSecurityState;
    RowText stThermalState;
};

struct ProcessorInfo {
    int nDeviceId;
    RowText stDescription;
    RowText stStatusString;
    int nStatus;
    int nDeviceType;
    RowText stPartNumber;
    RowText stManufacturer;
    int nDeviceFamily;
    RowText stVersionName;
    int nMaxSpeed;
    int nCurrentSpeed;
    int nClockSpeed;
    int nVoltage;
    int nUpgradeMethod;
    RowText stSocketDesignation;
    RowText stProcessorId;
};

struct MemoryArrayInfo {
    int nDeviceId;
    RowText stDescription;
    RowText stStatusString;
    int nStatus;
    int nLocation;
    int nMaxCapacity;
    int nNumOfDevice;
    int nErrorCorrection;
    int nHandle;
    int nIndex;
    int nUsageCode;
    RowText stTag;
    int nUsedSlot;
};

struct MemoryDeviceInfo {
    int nDeviceId;
    RowText stDescription;
    RowText stStatusString;
    int nStatus;
    RowText stTag;
    int nHandle;
    int nAssociatedArray;
    int nTotalWidth;
    int nDataWidth;
    int nSize;
    int nFormFactor;
    RowText stLocator;
    RowText stBankLabel;
    int nMemoryType;
    int nTypeDetail;
    int nSpeed;
    RowText stManufacturer;
    RowText stSerialNumber;
    RowText stAssetTag;
    RowText stPartNumber;
};
