#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// A repository's records as text, each two-digit hexadecimal with a blank in front of each byte.
using SdrTexts = std::vector<std::string>;

/// The copy of the repository that an earlier run left on the disk, if it is of the controller `identity` in the state
/// `mark` (see SdrState.hpp); nothing for any other and for one that is not as it was written.
std::optional<SdrTexts> loadRepository(const std::string& identity, const std::string& mark);

/// Leaves such a copy in the place of an older one. A disk that refuses it costs the next start some time only.
void saveRepository(const std::string& identity, const std::string& mark, const SdrTexts& records);

} // namespace Module::BMCConfig
