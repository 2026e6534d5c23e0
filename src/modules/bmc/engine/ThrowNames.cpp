#include "modules/bmc/engine/ThrowNames.hpp"

#include "common/ErrorName.hpp"
#include "ipmi/Codes.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <algorithm>
#include <iterator>

namespace Module::BMCConfig {

namespace {

namespace completion = ipmi::completion;

struct ThrowName {
    std::string_view name;
    int code;
};

/// Names of the scripts' own; all others are names of the list of errors.
constexpr ThrowName throwNames[] = {
    {"ERROR_ALREADY_IN_TRANSFER_MODE", ERROR_BMC_ALREADY_IN_PLDB_TRANSFER_MODE},
    {"ERROR_CR_CONFIGURATION_SET", ERROR_COLD_REDUNDANCY_SET_FAILED},

    // Completion codes by name; the codes do not follow the order of the completion codes.
    {"RESPONSE_ERROR_RESOURCE_UNAVAILABLE", IPMI_ERROR_RESOURCE_UNAVAILABLE},
    {"RESPONSE_ERROR_INVALID_COMMAND", IPMI_ERROR_INVALID_COMMAND},
    {"RESPONSE_ERROR_INVALID_COMMAND_FOR_GIVEN_LUN", IPMI_ERROR_INVALID_COMMAND_FOR_GIVEN_LUN},
    {"RESPONSE_ERROR_TIME_OUT", IPMI_ERROR_TIME_OUT},
    {"RESPONSE_ERROR_OUT_OF_SPACE", IPMI_ERROR_OUT_OF_SPACE},
    {"RESPONSE_ERROR_INVALID_RESERVATION_ID", IPMI_ERROR_INVALID_RESERVATION_ID},
    {"RESPONSE_ERROR_REQUESTED_SENSOR_DATA_NOT_PRESENT", IPMI_ERROR_REQUESTED_SENSOR_DATA_NOT_PRESENT},
    {"RESPONSE_ERROR_REQUEST_DATA_TRUNCATED", IPMI_ERROR_REQUEST_DATA_TRUNCATED},
    {"RESPONSE_ERROR_REQUEST_DATA_LENGTH_INVALID", IPMI_ERROR_REQUEST_DATA_LENGTH_INVALID},
    {"RESPONSE_ERROR_REQUEST_DATA_FIELD_LENGTH_EXCEEDED", IPMI_ERROR_REQUEST_DATA_FIELD_LENGTH_EXCEEDED},
    {"RESPONSE_ERROR_PARAMETER_OUT_OF_RANGE", IPMI_ERROR_PARAMETER_OUT_OF_RANGE},
    {"RESPONSE_ERROR_NO_OF_REQUESTED_BYTES", IPMI_ERROR_NO_OF_REQUESTED_BYTES},
    {"RESPONSE_ERROR_INVALID_DATA_FIELD_IN_REQUEST", IPMI_ERROR_INVALID_DATA_FIELD_IN_REQUEST},
    {"RESPONSE_ERROR_ILLEGAL_COMMAND", IPMI_ERROR_ILLEGAL_COMMAND},
};

/// The name of a completion code, which stands as decimal text in a reply's field 0.
struct CompletionName {
    std::uint8_t code;
    const char* name;
};

constexpr CompletionName completionNames[] = {
    {completion::nodeBusy, "RESPONSE_ERROR_RESOURCE_UNAVAILABLE"},
    {completion::invalidCommand, "RESPONSE_ERROR_INVALID_COMMAND"},
    {completion::invalidForLun, "RESPONSE_ERROR_INVALID_COMMAND_FOR_GIVEN_LUN"},
    {completion::timeout, "RESPONSE_ERROR_TIME_OUT"},
    {completion::outOfSpace, "RESPONSE_ERROR_OUT_OF_SPACE"},
    {completion::reservationLost, "RESPONSE_ERROR_INVALID_RESERVATION_ID"},
    {completion::requestTruncated, "RESPONSE_ERROR_REQUEST_DATA_TRUNCATED"},
    {completion::requestLengthInvalid, "RESPONSE_ERROR_REQUEST_DATA_LENGTH_INVALID"},
    {completion::fieldLengthExceeded, "RESPONSE_ERROR_REQUEST_DATA_FIELD_LENGTH_EXCEEDED"},
    {completion::parameterOutOfRange, "RESPONSE_ERROR_PARAMETER_OUT_OF_RANGE"},
    {completion::tooManyBytesRequested, "RESPONSE_ERROR_NO_OF_REQUESTED_BYTES"},
    {completion::notPresent, "RESPONSE_ERROR_REQUESTED_SENSOR_DATA_NOT_PRESENT"},
    {completion::invalidDataField, "RESPONSE_ERROR_INVALID_DATA_FIELD_IN_REQUEST"},
};

} // namespace

std::string completionName(const std::string& code)
{
    constexpr std::size_t digits = 3;
    if (code.size() == digits && test_for_integer(code)) {
        const long number = toDecimal(code);
        const auto row = std::ranges::find(completionNames, number, &CompletionName::code);
        if (row != std::end(completionNames))
            return row->name;
        if (number >= completion::illegalForType && number <= completion::subFunctionDisabled)
            return "RESPONSE_ERROR_ILLEGAL_COMMAND";
    }
    return "IPMI_RESPONSE_ERROR";
}

int throwCode(std::string_view name)
{
    if (const auto own = std::ranges::find(throwNames, name, &ThrowName::name); own != std::end(throwNames))
        return own->code;
    const auto rows = common::errorRows();
    const auto row = std::ranges::find(rows, name, &common::ErrorRow::name);
    return row != rows.end() && row->isThrown ? row->code : 0;
}

} // namespace Module::BMCConfig
