#pragma once

#include "client/BaseContainer.hpp"

/// A table whose sensors or parts the client does not read yet: it has no rows.
template<class Row>
struct EmptyGroup : BaseContainer<Row> {
};

struct powerSupply : EmptyGroup<PowerSupplyInfo> {};
struct powerUnit : EmptyGroup<PowerUnitInfo> {};
struct discreteVoltage : EmptyGroup<DiscreteVoltageInfo> {};
struct coolingUnit : EmptyGroup<CoolingUnitInfo> {};
struct discreteCooling : EmptyGroup<DiscreteCoolingInfo> {};
struct driveSlot : EmptyGroup<DriveSlotInfo> {};
struct miscSensor : EmptyGroup<miscSensorInfo> {};
struct discreteProcessor : EmptyGroup<discreteProcessorInfo> {};
struct discreteMemory : EmptyGroup<discreteMemoryInfo> {};
struct processorDevice : EmptyGroup<ProcessorInfo> {};
struct memoryArray : EmptyGroup<MemoryArrayInfo> {};
struct memoryDevice : EmptyGroup<MemoryDeviceInfo> {};
