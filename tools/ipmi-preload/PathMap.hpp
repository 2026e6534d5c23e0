#pragma once

#include <string>

namespace preload {

/// Absolute paths that are served from another place: a file that exists below the folder named by HWAGENT_PRELOAD_ROOT
/// stands for the file of that path. Everything else stays where it is.

/// `path` as the C library shall see it; `room` holds the text when it is another one.
const char* placePath(const char* path, std::string& room);

} // namespace preload
