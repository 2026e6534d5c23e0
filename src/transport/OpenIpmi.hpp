#pragma once

#include "transport/BmcMessage.hpp"

/// The road by the kernel's IPMI driver and its device node.

/// Opens "/dev/ipmi0", else "/dev/ipmidev/0", into `openIPMIfd`: 0, or -1 after one line on standard output.
int init_openipmi();
/// The way back, under the same conditions: loads the modules, waits 5 s and opens the device. 0 or -1, which leaves
/// the driver marked as present with a bad descriptor.
int reinit_openipmi();

/// One exchange by the driver, bridged by it when the target is not 0x20. An answer to another msgid is thrown away. 0
/// or an error number of the message layer; `response` is written only with 0. Requests over 272 bytes, the driver's
/// largest message, give ipmiMessageSize. An empty answer gives the length 0xFFFFFFFF and no data.
int OpenIPMIProcessMessage(const BMC_MESSAGE* request, BMC_MESSAGE* response, long msgid);
namespace transport {

/// OpenIPMIProcessMessage with msgid 1, and again up to msgid 50 while the response's code is 0xFF. The last result.
/// Where answers are checked (Policy::checksDriverAnswers) each message has a number of its own, only an answer with
/// its number, network function and command counts, and others are dropped without a pause.
int exchangeByDriver(const BMC_MESSAGE* request, BMC_MESSAGE* response);

/// Opens the driver's device into `openIPMIfd`; false and a negative number there if none opens.
bool openDevice();
/// Whether a device that was not there, or went away, may be looked for now: at most once a second, and only where the
/// policy wants it (Policy::reopensDevice). A true answer is the second's one.
bool mayLookAgain();

} // namespace transport

/// exchangeByDriver for another target, which it writes into the request. `channel` follows from the target.
int OpenIPMIProcessSendMessage(BMC_MESSAGE* request, BMC_MESSAGE* response, std::uint8_t channel, std::uint8_t target);

// For other callers; the agent itself calls nothing of what follows.

/// While the driver and USB are both in use: closes the device and unloads the driver's modules. The result of the last
/// rmmod; 0 when there was nothing to do.
int deinit_openipmi();
/// Whether "/proc/modules" lists ipmi_si, ipmi_devintf and ipmi_msghandler. Reports only.
bool DetectOpenIPMIModules();
