#pragma once

#include "protocol/SmbiosTypes.hpp"

namespace Protocol::SMBIOS {

/// The fields that `catalogue` knows, by structure type. Each catalogue holds what the one before held.
SMBCatalogue buildCatalogue(Catalogue catalogue);
/// Adds the sub-forms that `catalogue` knows to the structure types of `tables`.
void addSubTypes(SMBCatalogue& tables, Catalogue catalogue);

} // namespace Protocol::SMBIOS
