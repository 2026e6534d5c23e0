#pragma once

#include <string>

namespace client::readings {

/// The board's model by the firmware's tables, empty if it cannot be had.
std::string readBoardModel();

} // namespace client::readings
