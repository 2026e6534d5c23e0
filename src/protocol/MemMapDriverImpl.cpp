#include "protocol/MemMapDriverImpl.hpp"

#include "common/ErrorMgr.hpp"
#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OS::Driver {

namespace {

constexpr const char* memoryDevice = "/dev/mem";
constexpr unsigned pageOffsetMask = 0xFFF;

/// The message has a place for the device's name.
[[noreturn]] void refuseDevice()
{
    const std::string form = ErrorManager::ErrorMgr::GetInstance()->Get(ERROR_OPEN_DEVICE);
    const std::string message = Util::replace_all(form, "%s", memoryDevice);
    HW_LOG(LOGGER::Category::First, "Error %d: %s", int{ERROR_OPEN_DEVICE}, message.c_str());
    throw ResultStatus(ERROR_OPEN_DEVICE, message, memoryDevice, COMMAND_GET);
}

} // namespace

UnmapDeleter::~UnmapDeleter()
{
    munmap(const_cast<unsigned char*>(pointer), length);
}

MemMapDriverImpl::MemMapDriverImpl()
{
    InitMemMapDriver();
}

MemMapDriverImpl::~MemMapDriverImpl()
{
    DeInitMemMapDriver();
}

int MemMapDriverImpl::InitMemMapDriver()
{
    descriptor = open(systemPath(memoryDevice).c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        refuseDevice();
    return descriptor;
}

/// A page behind the end of a file can be mapped, and reading it ends the process; the device has no end.
bool MemMapDriverImpl::endsBefore(std::size_t end) const
{
    struct stat state {};
    return fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode) && static_cast<std::size_t>(state.st_size) < end;
}

void MemMapDriverImpl::Map(unsigned address, unsigned length, std::unique_ptr<UnmapDeleter>& holder)
{
    const unsigned offset = address & pageOffsetMask;
    const std::size_t wanted = std::size_t{length} + offset;
    const off_t page = static_cast<off_t>(address - offset);
    void* const mapped = endsBefore(std::size_t{address} + length)
                             ? MAP_FAILED
                             : mmap(nullptr, wanted, PROT_READ, MAP_SHARED, descriptor, page);
    if (mapped == MAP_FAILED)
        throwError(ERROR_PHY_VIRT_MAPPING, memoryDevice, COMMAND_GET);
    holder = std::make_unique<UnmapDeleter>(static_cast<const unsigned char*>(mapped) + offset, wanted);
}

int MemMapDriverImpl::DeInitMemMapDriver()
{
    const int result = descriptor < 0 ? 0 : close(descriptor);
    descriptor = -1;
    return result;
}

} // namespace OS::Driver
