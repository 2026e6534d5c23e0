#pragma once

#include "ipmi/Bytes.hpp"

#include <string>
#include <string_view>

/// Bytes and their hexadecimal text, in which records and messages are kept and handed on.
namespace ipmi {

/// The low byte of a hexadecimal number, with or without "0x"; 0 for what is none.
std::uint8_t parseByte(const std::string& hex);
/// Two digits, upper case.
std::string hexByte(std::uint8_t byte);

/// The bytes of blank-separated text, each by parseByte.
Bytes parseBytes(std::string_view text);
/// The bytes of texts that are cut already.
Bytes parseBytes(std::span<const std::string> items);
/// Two digits a byte, upper case, with a blank between them.
std::string hexBytes(ByteView bytes);

} // namespace ipmi
