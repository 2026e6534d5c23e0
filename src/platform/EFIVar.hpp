#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Platform {

/// One variable of the UEFI firmware (UEFI 2.10, 8.2), as the operating system shows it.
class EFIVar {
public:
    /// `guid` in the text form of the standard, in capitals or not. `bufferBytes`: the most that is read.
    EFIVar(std::string variable, const std::string& guid, std::size_t bufferBytes);

    /// The variable's data, without its attributes; empty if there is none, it cannot be read or it does not fit.
    std::vector<std::uint8_t> GetVariable() const;

private:
    std::string name; ///< "Variable-guid", as the kernel calls it
    std::size_t buffer;
};

} // namespace Platform
