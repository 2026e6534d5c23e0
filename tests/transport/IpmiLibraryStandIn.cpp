#include "tests/transport/IpmiLibraryStandIn.hpp"

#include <cstring>

// No function objects of the standard library here: their unique symbols would keep the library from being unloaded.
extern "C" {

StandInRecord standInRecord;

std::uint16_t LIBIPMI_Create_IPMI20_Session(void*, const char* address, std::uint16_t port, std::uint64_t a,
                                            std::uint64_t b, std::uint64_t c, std::uint64_t d, std::uint64_t e,
                                            const std::uint8_t* byte, std::uint32_t f, std::uint32_t g, std::uint32_t h,
                                            std::uint64_t i, std::uint64_t j, std::uint32_t k)
{
    const std::uint64_t arguments[] = {port, a, b, c, d, e, *byte, f, g, h, i, j, k};
    std::memcpy(standInRecord.arguments, arguments, sizeof arguments);
    std::strncpy(standInRecord.address, address, sizeof standInRecord.address - 1);
    return standInRecord.sessions++ < standInRecord.failingSessions ? 1 : 0;
}

std::uint16_t LIBIPMI_CloseSession(void*)
{
    ++standInRecord.closed;
    return 0;
}

#ifndef STAND_IN_LACKS_SEND
std::uint16_t LIBIPMI_Send_RAW_IPMI2_0_Command(void*, std::uint64_t, std::uint8_t netFnLun, std::uint8_t,
                                               const std::uint8_t*, std::uint32_t length, std::uint8_t* response,
                                               std::uint32_t* responseLength, unsigned timeout)
{
    ++standInRecord.sends;
    standInRecord.netFnLun = netFnLun;
    standInRecord.requestLength = length;
    standInRecord.timeout = timeout;
    std::memcpy(response, standInRecord.answer, sizeof standInRecord.answer);
    *responseLength = standInRecord.answerLength;
    return standInRecord.sendResult;
}
#endif
}
