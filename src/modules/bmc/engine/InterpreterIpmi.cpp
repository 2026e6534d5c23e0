#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Stopwatch.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/engine/Text.hpp"
#include "modules/bmc/engine/ThrowNames.hpp"
#include "platform/IpmiExchange.hpp"
#include "transport/BmcMessage.hpp"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <utility>

// Instructions that talk to the BMC.

namespace Module::BMCConfig {

namespace {

using Texts = std::vector<std::string>;

constexpr char completionCodeName[] = "$BMC_COMPLETION_CODE";
constexpr char replyBytesName[] = "$BMC_REPLY_BYTES"; ///< data bytes of the last reply
constexpr char noReply[] = "CC";

/// Slave addresses of the satellite controllers, which answer at once or not at all.
constexpr long satelliteAddresses[] = {ipmi::address::hotSwap, ipmi::address::secondHotSwap, ipmi::address::frontPanel};

/// Packets that carry a password say so in their names.
bool holdsSecret(const std::string& packet)
{
    return packet.find("PASSWORD") != std::string::npos;
}

bool isSatellite(const Texts& tokens)
{
    const long address = tokens.empty() ? 0 : std::strtol(tokens.front().c_str(), nullptr, 16);
    return std::find(std::begin(satelliteAddresses), std::end(satelliteAddresses), address) !=
           std::end(satelliteAddresses);
}

} // namespace

int Interpreter::Evaluate_IPMI(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const std::string packet = getText(operands[0]);
    std::string request;
    for (const std::string& operand : packets.get(packet).values)
        for (const std::string& token : value(operand).values) {
            if (!request.empty())
                request += ' ';
            request += token;
        }
    if (!memo) {
        store(operands[1], Symbol(exchange(packet, request)));
        return 0;
    }
    const std::string remembered = $("localhost@" + request);
    if (const Symbol* known = table.find(remembered)) {
        logRequest(packet, request);
        store(operands[1], *known);
        return 0;
    }
    Symbol reply(exchange(packet, request));
    table[remembered] = reply;
    store(operands[1], std::move(reply));
    return 0;
}

void Interpreter::logRequest(const std::string& packet, const std::string& request)
{
    HW_LOG(LOGGER::Category::First, "Query = %s", packet.c_str());
    if (!holdsSecret(packet))
        HW_LOG(LOGGER::Category::First, "\tIPMI Request = %s", request.c_str());
}

std::string Interpreter::exchange(const std::string& packet, const std::string& request)
{
    logRequest(packet, request);
    const common::Stopwatch watch;
    Texts reply;
    try {
        execIPMICommand(request, reply);
    } catch (const ResultStatus& status) {
        // the detail of a failed exchange is the request
        if (holdsSecret(packet))
            throwError(static_cast<unsigned short>(status.begin()->mErrorCode), packet, COMMAND_SET);
        throw;
    }
    std::string text = Util::upcase(Util::join(reply, " "));
    HW_LOG(LOGGER::Category::First, "\tIPMI Response = %s, %d msec", text.c_str(), watch.milliseconds());
    return text;
}

void Interpreter::execIPMICommand(const std::string& request, std::vector<std::string>& reply)
{
    const Texts tokens = Util::split(request, " ");
    if (noSatelliteRetries && isSatellite(tokens))
        retries = 0;
    const Platform::ExchangeOptions options{.retries = std::exchange(retries, defaultRetries),
                                            .initialise = !interfaceReady};
    Platform::exchangeIpmi(tokens, options, reply);
    if (reply.front() == noReply)
        return;
    interfaceReady = true;
    table[completionCodeName] = reply.front();
    table[replyBytesName] = std::to_string(reply.size() - 1);
}

void Interpreter::GetIPMI(const std::string& request, std::vector<std::string>& reply)
{
    execIPMICommand(request, reply);
}

bool Interpreter::SelectIPMIInterface(int interface)
{
    return Platform::selectInterface(interface);
}

int Interpreter::Reinit_OpenIPMI()
{
    return Platform::reloadDriver();
}

int Interpreter::Evaluate_IPMI_Without_Throw(const Function& function)
{
    if (!guarded([&] { Evaluate_IPMI(function); }))
        store(function.arguments.values[1], Symbol(noReply));
    return 0;
}

int Interpreter::Evaluate_IPMIResponse(const Function& function)
{
    const Texts& operands = function.arguments.values;
    const Texts fields = Util::split(value(operands[0]).text(), " ");
    const Texts& indexes = filters.get(getText(operands[1])).values;
    if (!fields.empty() && fields.front() == "0")
        store(operands[2], Symbol::ofList(pickFields(fields, indexes)));
    else
        store(operands[2], Symbol(completionName(fields.empty() ? std::string() : fields.front())));
    return 0;
}

} // namespace Module::BMCConfig
