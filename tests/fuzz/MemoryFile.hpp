#pragma once

#include "common/Descriptor.hpp"
#include "tests/fuzz/Input.hpp"

#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

/// A regular file that is never on a disk.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view contents) : file(memfd_create("input", MFD_CLOEXEC))
    {
        require(file && write(file.get(), contents.data(), contents.size()) == static_cast<ssize_t>(contents.size()));
    }

    std::string path() const { return "/proc/self/fd/" + std::to_string(file.get()); }

private:
    common::Descriptor file;
};
