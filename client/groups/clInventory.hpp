#pragma once

#include "client/groups/BaseContainer.hpp"
#include "client/readings/InventoryAcquisition.hpp"

/// What is fitted: processors, memory arrays, memory modules. Rows are filled once, from the firmware's tables, and
/// answered from memory. A machine without such tables has no rows.

/// The results of an unknown row that a processor has; all other groups have CLIENT_ERROR_NO_ROW.
inline constexpr int PROCESSOR_ERROR_NO_ROW = 22;

class processorDevice : public BaseContainer<ProcessorInfo> {
public:
    /// Every row is healthy from the start: only events change that.
    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;
    /// Finds a row by its sensor's packed id, too: that is what an event of the sensor has. 0 where one sensor watches
    /// several processors.
    int getIndex(int deviceId) override;

private:
    void fillRow(int processor, ProcessorInfo& row);

    SMBIOS_PROCESSOR_INFO m_processorInfo = {};
};

class memoryArray : public BaseContainer<MemoryArrayInfo> {
public:
    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;

private:
    void fillRow(int array, MemoryArrayInfo& row);

    SMBIOS_MEMORY_ARRAY_INFO m_arrayInfo = {};
};

/// Rows in the order of arrays, then places; an empty place has no row.
class memoryDevice : public BaseContainer<MemoryDeviceInfo> {
public:
    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;

    /// One-based row of the one module whose locator or bank is called as the sensor, but for case and for what is
    /// neither letter nor digit; 0 where there is none or more than one.
    int findModule(const std::string& sensorName);

private:
    void fillRow(int array, int device, MemoryDeviceInfo& row);

    SMBIOS_MEMORY_DEVICE_INFO m_deviceInfo = {};
};
