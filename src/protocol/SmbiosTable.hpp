#pragma once

#include "protocol/SmbiosTypes.hpp"

#include <optional>

namespace Protocol::SMBIOS {

/// Usual length of the longer entry point, that of 32 bits (DSP0134, 5.2.1).
constexpr std::size_t entryPointLength = 0x1F;

/// The two forms of entry point, "_SM_" and "_SM3_" (DSP0134, 5.2).
enum class EntryForm : std::uint8_t { bits32, bits64 };

/// What an entry point says.
struct EntryPoint {
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint32_t tableLength = 0; ///< of the longer form: at most
    std::uint64_t tableAddress = 0;
    std::size_t structureCount = 0; ///< of the longer form, which does not count: more than any table has

    /// "2.7".
    std::string version() const;
};

/// The bytes from the first anchor on, looked for at every `step` bytes of `memory`; nothing without one.
std::optional<Bytes> findAnchor(Bytes memory, std::size_t step, EntryForm form);
/// Decodes the entry point in front of `bytes`. Nothing when it is too short to hold its fields, is not wholly within
/// `bytes`, or does not sum to 0.
std::optional<EntryPoint> decodeEntryPoint(Bytes bytes, EntryForm form);

/// The structures of `table`, at most `count`, up to the one of type 127 or the first that cannot be whole: shorter
/// than its header, or reaching past the end. Strings are cut to 255 characters; strings without an end close the
/// table. The records refer to the bytes of `table`.
std::vector<SMBRecordInfo> parseStructures(Bytes table, std::size_t count);

} // namespace Protocol::SMBIOS
