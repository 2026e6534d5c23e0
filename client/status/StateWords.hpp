#pragma once

#include <string>

/// The MIB's text for a state word of the SDK; `word` itself when it has none of its own.
const char* MapQLStrToSNMPStr(const char* word);
/// Maps each word of a comma-separated list of at most 511 characters, and appends the texts to `out`.
void MapMultipleQLStrToSNMPStr(const char* list, std::string* out);
