#pragma once

#include <optional>
#include <string>

namespace hwquery {

/// Whether the value of a write is a secret, by its path.
bool isSecret(const std::string& path);

/// A secret from the first line of `file` ("-" is standard input); without one from the terminal, unseen and twice, or
/// from standard input if that is none. Nothing, which is told, if there is none or it was typed in two ways. From here
/// on the process leaves no core file.
std::optional<std::string> readSecret(const std::string& path, const std::string& file);

} // namespace hwquery
