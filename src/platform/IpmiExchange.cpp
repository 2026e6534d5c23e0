#include "platform/IpmiExchange.hpp"

#include "common/CMySemLock.hpp"
#include "common/ErrorMgr.hpp"
#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"
#include "platform/PortLock.hpp"
#include "platform/SameAnswers.hpp"
#include "transport/BmcMessage.hpp"
#include "transport/Deadline.hpp"
#include "transport/Patience.hpp"
#include "transport/TransportState.hpp"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <span>

namespace Platform {

namespace {

constexpr char exchangeLock[] = "IPMI_EXEC_LOCK";
constexpr std::size_t tokensOfHeader = 4;
constexpr std::size_t mostRequestData = 65535;
/// Slave addresses up to this one are reserved (IPMB, I2C): nobody answers there.
constexpr long lastReservedAddress = 0x1F;

/// The transport's state and the buffer below have one user at a time, even while the named locks are switched off or
/// one was not got in time.
std::mutex exchangeGuard;
std::atomic<unsigned long long> begun;
std::uint8_t requestData[mostRequestData];

/// The request's bytes in `requestData`, wiped at the end of the scope: some requests carry passwords.
class RequestData {
public:
    explicit RequestData(std::span<const std::string> tokens) : count(tokens.size())
    {
        for (std::size_t at = 0; at < count; ++at)
            requestData[at] = ipmi::parseByte(tokens[at]);
    }
    ~RequestData() { explicit_bzero(requestData, count); }
    RequestData(const RequestData&) = delete;
    RequestData& operator=(const RequestData&) = delete;

    std::uint32_t size() const { return static_cast<std::uint32_t>(count); }

private:
    std::size_t count;
};

/// The detail is the request itself, which must not get into the log.
[[noreturn]] void refuse(unsigned short code, const std::vector<std::string>& tokens)
{
    const std::string message = ErrorManager::ErrorMgr::GetInstance()->Get(code);
    HW_LOG(LOGGER::Category::First, "Error %d: %s", int{code}, message.c_str());
    throw ResultStatus(code, message, Util::join(tokens, " "), COMMAND_SET);
}

[[noreturn]] void refuseWithoutInterface(const std::vector<std::string>& tokens)
{
    common::reportLimited(common::Gravity::warning, common::controllerKey,
                          "no BMC: the IPMI driver has no device, and nothing answers at a KCS port");
    refuse(ERROR_IPMI_DRIVER_INIT_FAILED, tokens);
}

BMC_REQUEST makeRequest(const std::vector<std::string>& tokens, const RequestData& data)
{
    return {.target = ipmi::parseByte(tokens[0]),
            .cmd = ipmi::parseByte(tokens[3]),
            .netFn = ipmi::parseByte(tokens[1]),
            .lun = ipmi::parseByte(tokens[2]),
            .length = data.size(),
            .data = requestData};
}

void listReply(const BMC_RESPONSE& response, std::uint32_t count, std::vector<std::string>& reply)
{
    reply.reserve(1U + count);
    reply.push_back(std::to_string(response.completionCode));
    for (const std::uint8_t byte : std::span(response.data, count))
        reply.push_back(Util::dec_to_hex_string(byte));
}

/// Counts whether the controller answers. One that has no time for as long as it is asked does not.
void noteOutcome(const BMC_REQUEST& request, const std::optional<std::uint32_t>& count, const BMC_RESPONSE& response)
{
    transport::TransportState& state = transport::transportState();
    if (request.target != ipmi::address::bmc)
        return state.satellites.note(request.target, count && !transport::isPassing(request, response.completionCode));
    const bool busyThroughout = ipmi::isBusy(response.completionCode) && transport::Deadline::passed();
    state.silence.note(count && !busyThroughout);
}

/// One exchange with the controller that `request` is for. A satellite that does not answer is spared, and said to be
/// out of reach: that is no failure of the interface.
std::optional<std::uint32_t> ask(const BMC_REQUEST& request, BMC_RESPONSE& response, int retries)
{
    const bool spared = common::policy().sparesSilentController && request.target != ipmi::address::bmc;
    std::optional<std::uint32_t> count;
    if (!spared || transport::transportState().satellites.admits(request.target)) {
        count = transport::sendRequest(request, response, retries);
        noteOutcome(request, count, response);
    }
    if (count || !spared)
        return count;
    response.completionCode = ipmi::completion::destinationUnavailable;
    return 0;
}

} // namespace

void exchangeIpmi(const std::vector<std::string>& tokens, const ExchangeOptions& options,
                  std::vector<std::string>& reply)
{
    reply.clear();
    if (!tokens.empty() && std::strtol(tokens[0].c_str(), nullptr, 16) <= lastReservedAddress) {
        reply.emplace_back("CC");
        return;
    }
    if (tokens.size() < tokensOfHeader || tokens.size() - tokensOfHeader > mostRequestData)
        refuse(ERROR_UNKNOWN, tokens);
    if (SameAnswers::recall(tokens, reply))
        return;

    HW_NAMED_LOCK(named, exchangeLock);
    const std::lock_guard hold(exchangeGuard);
    const transport::Deadline deadline;
    const PortLock port;
    if (!transport::transportState().silence.admits())
        refuse(ERROR_BMC_INTERFACE_ERROR, tokens);
    if (options.initialise && InitilizeIPMB_Interface() != 0)
        refuseWithoutInterface(tokens);
    ++begun;
    const RequestData data(std::span<const std::string>(tokens).subspan(tokensOfHeader));
    const BMC_REQUEST request = makeRequest(tokens, data);
    BMC_RESPONSE response;
    std::memset(&response, 0, sizeof response);
    const std::optional<std::uint32_t> count = ask(request, response, options.retries);
    if (!count)
        refuse(ERROR_BMC_INTERFACE_ERROR, tokens);
    listReply(response, *count, reply);
    SameAnswers::keep(tokens, reply);
}

unsigned long long exchangeCount()
{
    return begun;
}

bool selectInterface(int type)
{
    HW_NAMED_LOCK(named, exchangeLock);
    const std::lock_guard hold(exchangeGuard);
    return SelectIPMIInterface(type) == 1;
}

int reloadDriver()
{
    HW_NAMED_LOCK(named, exchangeLock);
    const std::lock_guard hold(exchangeGuard);
    return Reinitialize_OpenIPMI();
}

} // namespace Platform
