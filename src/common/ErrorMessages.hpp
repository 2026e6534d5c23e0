#pragma once

#include "common/ErrorName.hpp"

#include <span>

namespace ErrorManager {

/// A code and its message. A later row for the same code replaces the earlier one.
struct ErrorMessage {
    _ERROR_NAME code;
    const char* message;
};

/// All rows, in the order they are entered. The row of ERROR_UNKNOWN is not among them: it bears its own number and is
/// made when the table is built.
std::span<const ErrorMessage> errorMessages();

} // namespace ErrorManager
