#pragma once

#include <cstdint>

/// The BMC's keyboard controller style interface over its two I/O ports (IPMI 2.0, section 9): one frame out, one frame
/// in. The thread needs I/O privilege (PortIo::acquire), and only one exchange may be under way in the process, because
/// the time-outs use SIGALRM.

/// Data port. The port above it is status on read and command on write.
inline constexpr std::uint16_t KCSAddress = 0x0CA2;

namespace transport {

inline constexpr std::uint16_t kcsStatusPort = KCSAddress + 1;

/// Status register.
inline constexpr std::uint8_t kcsObf = 0x01;    ///< a byte waits in the output register
inline constexpr std::uint8_t kcsIbf = 0x02;    ///< the BMC has not taken the last byte yet
inline constexpr std::uint8_t kcsSmsAtn = 0x04; ///< a message waits for the system software
inline constexpr std::uint8_t kcsStateMask = 0xC0;
inline constexpr std::uint8_t kcsIdleState = 0x00;
inline constexpr std::uint8_t kcsReadState = 0x40;
inline constexpr std::uint8_t kcsWriteState = 0x80;
inline constexpr std::uint8_t kcsErrorState = 0xC0;

/// Control codes; all but READ go to the command port.
inline constexpr std::uint8_t kcsGetStatusAbort = 0x60;
inline constexpr std::uint8_t kcsWriteStart = 0x61;
inline constexpr std::uint8_t kcsWriteEnd = 0x62;
inline constexpr std::uint8_t kcsRead = 0x68;

/// Results.
inline constexpr int kcsDone = 0;
inline constexpr int kcsBusy = 1; ///< KCSSendMessage only: busy before the start, or there is nothing to send
inline constexpr int kcsTimeout = 2;
inline constexpr int kcsWrongState = 3;
inline constexpr int kcsBufferFull = 4; ///< KCSReadBMCData only

} // namespace transport

/// Sends a frame of `length` bytes, at least 1. A wrong state is reported without recovery; the read side recovers.
/// With Policy::recoversFailedSends this one does too, and sends once more.
int KCSSendMessage(const unsigned char* frame, unsigned length);
/// Reads a frame into `buffer` and its length into `count`. A frame that fills the buffer exactly counts as too long. A
/// wrong state runs KCSBMCErrorHandler and gives kcsWrongState.
int KCSReadBMCData(unsigned char* buffer, unsigned size, unsigned* count);
/// Brings the state machine back to idle by GET_STATUS/ABORT: 0, kcsTimeout, or kcsWrongState after five failed tries.
int KCSBMCErrorHandler();

/// Spin until OBF rises or IBF falls: 0, or 1 after 15 s or at the exchange's deadline. SIGALRM's disposition is the
/// default afterwards, whatever it was before. Waits that sleep (Policy::sleepsInPortWaits) leave the signal alone.
/// `limit` only has to stay below 5000001.
int WaitTilObf(unsigned limit);
int WaitWhileIbf(unsigned limit);
/// Handler of SIGALRM during a wait.
void kcs_timeout(int signal);

/// The SMS_ATN bit of the status.
bool KCSMessageReady();

// For other callers; the agent itself calls nothing of what follows.

/// Whether anything answers at the two ports.
bool IsKCS();
/// For target 0x20 waits for OBF, for others for SMS_ATN: 0, or 1 on time-out, of which SetMsTimeout and
/// CheckMsTimeout, empty hooks that return 0, know none.
int CheckMessageReady(unsigned char target, unsigned timeoutMs);
int SetMsTimeout(unsigned* timer, unsigned timeoutMs);
int CheckMsTimeout(unsigned timer);
