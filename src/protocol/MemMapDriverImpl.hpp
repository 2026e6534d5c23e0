#pragma once

#include <cstddef>
#include <memory>

namespace OS::Driver {

/// One mapping of physical memory, and how it goes.
struct UnmapDeleter {
    UnmapDeleter(const unsigned char* mapped, std::size_t size) : length(size), pointer(mapped) {}
    /// Hands the stored pointer to munmap. Behind a mapping whose address was not page-aligned the kernel refuses
    /// that, and the pages stay mapped; readers make few mappings.
    ~UnmapDeleter();
    UnmapDeleter(const UnmapDeleter&) = delete;
    UnmapDeleter& operator=(const UnmapDeleter&) = delete;

    std::size_t length;           ///< bytes asked for, and the page offset in front of them
    const unsigned char* pointer; ///< the byte of the address that was asked for
};

/// Read-only windows onto physical memory, through "/dev/mem". Callers hold the lock "GLOBAL_MEMORY_MAPPING".
class MemMapDriverImpl {
public:
    /// Opens the device; error 1007 when that fails.
    MemMapDriverImpl();
    ~MemMapDriverImpl();
    MemMapDriverImpl(const MemMapDriverImpl&) = delete;
    MemMapDriverImpl& operator=(const MemMapDriverImpl&) = delete;

    /// Opens "/dev/mem" and returns its descriptor; error 1007.
    int InitMemMapDriver();
    /// Maps `length` bytes at physical `address` and gives the mapping to `holder`, which lets go of the one before.
    /// Error 1009 when the kernel refuses, or when an image file stands in for the device and ends before the window.
    void Map(unsigned address, unsigned length, std::unique_ptr<UnmapDeleter>& holder);
    /// Closes the device; the result of close(2).
    int DeInitMemMapDriver();

private:
    bool endsBefore(std::size_t end) const;

    int descriptor = -1;
};

} // namespace OS::Driver
