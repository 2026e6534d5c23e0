#pragma once

#include "client/BaseContainer.hpp"

/// A table whose parts the client does not read yet: it has no rows.
template<class Row>
struct EmptyGroup : BaseContainer<Row> {
};

struct processorDevice : EmptyGroup<ProcessorInfo> {};
struct memoryArray : EmptyGroup<MemoryArrayInfo> {};
struct memoryDevice : EmptyGroup<MemoryDeviceInfo> {};
