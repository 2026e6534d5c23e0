#pragma once

#include "ipmi/SelView.hpp"

#include <optional>
#include <string>

namespace Module::BMCConfig {

/// One record of the log, with the id of the one behind it.
struct SelRecord {
    unsigned next = ipmi::lastSelId;
    ipmi::Bytes bytes; ///< at least a standard record's; an extended one is longer

    /// The record's fields; the view holds as long as the record.
    ipmi::SelView view() const { return ipmi::SelView(bytes); }
    /// Seconds since 1970; all ones, the unspecified time, for a record that has none.
    std::uint32_t seconds() const;
    ipmi::ByteView standard() const { return ipmi::ByteView(bytes).first(ipmi::sel::recordSize); }

    /// A record from blank-separated hexadecimal text, nothing if it holds anything else or fewer bytes than a record
    /// has.
    static std::optional<SelRecord> parse(const std::string& text);
};

/// "%02X%02X", the high byte first.
std::string selIdText(unsigned id);

/// Up to four hexadecimal digits as a record id, 0 for none; anything else throws ResultStatus 1089.
unsigned parseSelId(const std::string& text);

} // namespace Module::BMCConfig
