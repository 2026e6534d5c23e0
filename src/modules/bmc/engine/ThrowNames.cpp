#include "modules/bmc/engine/ThrowNames.hpp"

#include "common/ErrorName.hpp"

#include <algorithm>
#include <iterator>

namespace Module::BMCConfig {

namespace {

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

} // namespace

int throwCode(std::string_view name)
{
    if (const auto own = std::ranges::find(throwNames, name, &ThrowName::name); own != std::end(throwNames))
        return own->code;
    const auto rows = common::errorRows();
    const auto row = std::ranges::find(rows, name, &common::ErrorRow::name);
    return row != rows.end() && row->isThrown ? row->code : 0;
}

} // namespace Module::BMCConfig
