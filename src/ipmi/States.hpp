#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// What the states of discrete sensors are called and how grave they are (IPMI 2.0, tables 42-2 and 42-3): the one list
/// behind the words of readings, the traps and the tables. The texts of the event log agree with it.
namespace ipmi {

/// Untold: from the record nobody can say it.
enum class Gravity { untold, fine, nonCritical, critical, nonRecoverable };

/// What a state says while it lasts, where that is not the gravity of its beginning.
enum class Lasting {
    asGrave,
    fitted,   ///< the device is there; a sensor that can say so and does not has nothing to watch
    missing,  ///< the device is not there: that it goes is grave, that a place is empty is not
    harmless, ///< whatever it means, nothing is wrong
};

/// An offset of a family of sensors.
struct State {
    const char* word; ///< what a reading calls it; null where the standard has none
    Gravity gravity;
    Gravity ofEnd;
    Lasting lasting = Lasting::asGrave;
};

/// The states by offset; empty for families that nobody knows. `readingType`: event/reading type code; `sensorType`
/// counts for 6Fh, for the codes of makers, and where a generic type means more with it.
std::span<const State> statesOf(std::uint8_t readingType, std::uint8_t sensorType);

/// The state of that word; null without one.
const State* findState(std::span<const State> states, std::string_view word);

/// Whether `mask` (bit n for offset n) has the state that says that the device is there.
bool canSayFitted(std::span<const State> states, unsigned mask);

/// How grave the state is while it lasts; untold where only the group of the sensor may know it.
Gravity lastingGravity(const State& state);

} // namespace ipmi
