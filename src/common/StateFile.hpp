#pragma once

#include "common/Descriptor.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace common {

/// Where the agent keeps what it wants to know again after a restart.
inline constexpr char stateFolder[] = "/var/lib/hwagent";

enum class IfMissing { fail, make };

/// The folder, made with mode 0700 if it is missing and to be made. None, with errno, if it is a link, somebody else's
/// or writable for others.
Descriptor openOwnFolder(const char* folder, IfMissing ifMissing);

/// The contents of the file `name` in the folder, as writeStateFile left them. Nothing for a file that is absent, a
/// link, somebody else's, writable for others, above 4 MiB, or whose checksum does not fit.
std::optional<std::string> readStateFile(const std::string& name, const char* folder = stateFolder);

/// Puts `contents` and their checksum in the place of the file: all or nothing, also when the machine stops in it. The
/// folder is made with mode 0700 if it is missing, the file has 0600. False if that fails, or if the folder is not the
/// agent's own.
bool writeStateFile(const std::string& name, std::string_view contents, const char* folder = stateFolder);

} // namespace common
