#pragma once

#include "transport/BmcMessage.hpp"

/// The road by a USB session of the closed library "libipmi.so", which is loaded on demand and may be absent.

/// Loads the library and opens a session, in up to 4 tries 3 s apart: 1, else 0 with the library closed again.
int UsbLibInitialize();
/// Closes the session and the library, if there is one.
void UsbLibDeinitialize();
/// One try to open the session; the library's result, 0 for success.
std::uint16_t UsbOpenSession();
/// One exchange. `data` must have room for 65534 bytes; `length` gets the number of data bytes. 0 done, 1 the library
/// failed (or named a length that its buffer cannot hold), 3 empty response.
int SendTimedUsbRequest(const _IMBPREQUESTDATA* request, unsigned timeout, std::uint8_t* data, int* length,
                        std::uint8_t* completionCode);
