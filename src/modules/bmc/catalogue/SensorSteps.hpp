#pragma once

#include "modules/bmc/catalogue/Steps.hpp"
#include "modules/bmc/engine/Stores.hpp"

/// Runs of steps that the sensor scripts share.
namespace Module::BMCConfig::steps {

/// One of the two forms of a sensor's query.
struct Form {
    const char* key;
    bool hasOwner; ///< owner and LUN stand in the query; otherwise it is the BMC's own sensor
};

inline constexpr Form byNumber = {"GET://BMC/SENSOR[]", false};
inline constexpr Form byOwner = {"GET://BMC/SENSOR[]/OWNER[]/LUN[]", true};

/// Ends the script with an empty result.
Steps returnNothing();
/// Checks the sensor number and fills the operands of the sensor packets.
Steps addressSensor(const Form& form);
/// Runs `refusal` for the owners that the Fir boards do not let be read.
Steps refuseOnFir(const Form& form, const Steps& refusal);
/// Leaves the sensor's record in $RECORD; without one runs `absent`, which ends the script.
Steps findRecord(const Form& form, const Steps& absent);

/// Sends `packet` and ends the script with "SUCCESS" or "FAILURE".
Steps sendForWord(const std::string& packet);

/// The sensor's name from its record, which may hold it in any of the four codings.
Script readName(const Form& form);
/// The tables of readName.
void addNames(Stores& stores);
/// The scripts of events and of discrete states.
void addEvents(Stores& stores);

} // namespace Module::BMCConfig::steps
