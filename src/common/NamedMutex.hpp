#pragma once

#include <mutex>
#include <string_view>

namespace common {

/// The mutex of this process that goes by `name`, made at its first use and there to the process's end. Nobody outside
/// the process can hold it.
std::mutex& namedMutex(std::string_view name);

} // namespace common
