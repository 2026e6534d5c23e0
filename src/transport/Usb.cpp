#include "transport/Usb.hpp"

#include "common/Seams.hpp"
#include "transport/TransportState.hpp"

#include <algorithm>
#include <chrono>
#include <dlfcn.h>

using namespace transport;

namespace {

constexpr int sessionTries = 4;
constexpr std::chrono::seconds sessionPause{3};

// Arguments of the library that are zero here are passed as words, which fit whether it reads numbers or addresses.
using Word = std::uintptr_t;
using CreateSession = std::uint16_t (*)(void* session, const char* address, std::uint16_t port, Word, Word, Word, Word,
                                        Word, std::uint8_t* four, unsigned, unsigned, unsigned, Word, Word, unsigned);
using CloseSession = std::uint16_t (*)(void* session);
using SendRawCommand = std::uint16_t (*)(void* session, Word, std::uint8_t netFnLun, std::uint8_t cmd,
                                         const std::uint8_t* data, std::uint32_t dataLength, std::uint8_t* response,
                                         std::uint32_t* responseLength, unsigned timeout);

CreateSession LIBIPMI_Create_IPMI20_Session = nullptr;
CloseSession LIBIPMI_CloseSession = nullptr;
SendRawCommand LIBIPMI_Send_RAW_IPMI2_0_Command = nullptr;

std::uint8_t usbRespBuf[65535];

template<class Function>
bool lookUp(Function& function, const char* name)
{
    function = reinterpret_cast<Function>(dlsym(transportState().hUsbSession, name));
    return function != nullptr;
}

bool lookUpEntryPoints()
{
    return lookUp(LIBIPMI_Create_IPMI20_Session, "LIBIPMI_Create_IPMI20_Session") &&
           lookUp(LIBIPMI_CloseSession, "LIBIPMI_CloseSession") &&
           lookUp(LIBIPMI_Send_RAW_IPMI2_0_Command, "LIBIPMI_Send_RAW_IPMI2_0_Command");
}

bool openSessionWithTries()
{
    for (int i = 0; i < sessionTries; ++i) {
        if (i > 0)
            current<Clock>().sleepFor(sessionPause);
        if (UsbOpenSession() == 0)
            return true;
    }
    return false;
}

void closeLibrary()
{
    dlclose(transportState().hUsbSession);
    transportState().hUsbSession = nullptr;
}

} // namespace

int UsbLibInitialize()
{
    transportState().hUsbSession = dlopen("libipmi.so", RTLD_NOW);
    if (!transportState().hUsbSession)
        return 0;
    if (lookUpEntryPoints() && openSessionWithTries())
        return 1;
    closeLibrary();
    return 0;
}

void UsbLibDeinitialize()
{
    if (!transportState().hUsbSession)
        return;
    LIBIPMI_CloseSession(transportState().sessionHandle.data());
    closeLibrary();
}

std::uint16_t UsbOpenSession()
{
    std::uint8_t four = 4;
    return LIBIPMI_Create_IPMI20_Session(transportState().sessionHandle.data(), "127.0.0.1", 623, 0, 0, 0, 0, 0, &four,
                                         6, 0x54, 0x20, 0, 0, 2000);
}

int SendTimedUsbRequest(const _IMBPREQUESTDATA* request, unsigned timeout, std::uint8_t* data, int* length,
                        std::uint8_t* completionCode)
{
    std::uint32_t received = 0;
    const auto netFnLun = static_cast<std::uint8_t>(request->netFn << 2 | request->lun);
    const std::uint16_t result = LIBIPMI_Send_RAW_IPMI2_0_Command(
        transportState().sessionHandle.data(), 0, netFnLun, request->cmd, request->data,
        static_cast<std::uint32_t>(request->dataLength), usbRespBuf, &received, timeout);
    if (result != 0 || received > sizeof usbRespBuf)
        return 1;
    if (received == 0)
        return 3;
    *completionCode = usbRespBuf[0];
    *length = static_cast<int>(received - 1);
    std::copy_n(usbRespBuf + 1, received - 1, data);
    return 0;
}
