#pragma once

#include "common/Seams.hpp"

#include <string>
#include <vector>

namespace common {

/// What this process last knew of something: which way leads to the controller, which event came last.
struct Fact {
    std::string name, text;
    Clock::SteadyPoint noted;
};

inline constexpr char processFact[] = "process";       ///< its id
inline constexpr char transportFact[] = "transport";   ///< the way to the controller
inline constexpr char controllerFact[] = "controller"; ///< whether it answers, once it did not
inline constexpr char recordsFact[] = "records";       ///< of sensors
inline constexpr char refreshFact[] = "refresh";       ///< the last one
inline constexpr char eventFact[] = "event";           ///< the last one handled, or the place in the log before it
inline constexpr char trapFact[] = "trap";             ///< the last one handed to the master agent

/// Notes the text of a fact in the place of what it was. For who asks how the process is; whoever learns something
/// notes it, and nobody is asked for it then. Any thread; waits for nobody.
void noteFact(const std::string& name, const std::string& text);

/// All facts, by name.
std::vector<Fact> facts();

/// As at the start of the process. For tests.
void forgetFacts();

} // namespace common
