#pragma once

#include <span>

/// Codes of every failure the SDK reports. They travel unchanged to the caller; nothing renumbers them.
enum _ERROR_NAME : int {
#define HW_ERROR(name, code, text) name = code,
#define HW_THROWN(name, code, text) name = code,
#include "common/Errors.def"
#undef HW_ERROR
#undef HW_THROWN
};

namespace common {

/// One failure of the list.
struct ErrorRow {
    _ERROR_NAME code;
    const char* name;
    const char* text; ///< empty: there is no message
    bool isThrown;    ///< scripts know the name
};

/// All failures, in the order of their codes.
std::span<const ErrorRow> errorRows();

} // namespace common
