#pragma once

#include "common/Util.hpp"
#include "modules/bmc/catalogue/Catalogue.hpp"
#include "modules/bmc/catalogue/Guide.hpp"
#include "modules/bmc/engine/Opcodes.hpp"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

/// The whole catalogue read as data. Each test collects its findings, so that one run shows them all.
namespace catalogue_data {

using namespace Module::BMCConfig;

using Names = std::set<std::string>;
using Findings = std::set<std::string>;

inline const Stores& stores()
{
    static const std::shared_ptr<const Stores> all = catalogue(wholeCatalogue, true);
    return *all;
}

/// What the code of the subjects sets before it runs a script, or uses of the catalogue by itself.
inline const Names ofHandlers = {
    "$/FRU/DEVICE_ID",
    "$/FRU/INVENTORY/OFFSET_LS",
    "$/FRU/INVENTORY/OFFSET_MS",
    "$/FRU/READ_COUNT",
    "$/SDR/ADDRESS_LS",
    "$/SDR/ADDRESS_MS",
    "$/SDR/LEN",
    "$/SDR/OFFSET",
    "$/SEL/GET_SEL_ENTRY_LS",
    "$/SEL/GET_SEL_ENTRY_MS",
    "GET://BMC/SDR_RECORD",
    "GET://BMC/SENSOR_LUN",
    "GET://BMC/SENSOR_OWNER",
    "GET://BMC/SENSOR_TYPE_INDEX_RECORD_THREE",
    "GET://BMC/SENSOR_TYPE_RECORD",
    "GET://BMC/FRU",
    "GET://BMC/SDR",
};

inline Names parametersOf(const std::string& key)
{
    Names names = {"$FORCE"};
    for (const std::string& name : parameterNames(key))
        names.insert("$" + name);
    return names;
}

inline bool isSymbol(const std::string& text)
{
    return text.size() > 1 && text.front() == '$' && text.find('$', 1) == std::string::npos;
}

inline std::string withoutSubscripts(std::string query)
{
    for (std::size_t at = 0; (at = query.find('[', at)) != std::string::npos; ++at)
        if (query.compare(at, 2, "[@") != 0)
            query.erase(at + 1, query.find(']', at) - at - 1);
    return query;
}

/// What one step reads and writes, by the conventions of its operands.
struct Effect {
    std::vector<std::string> reads, writes;
};

inline Effect effectOf(const Function& step)
{
    const std::vector<std::string>& operands = step.arguments.values;
    if (operands.empty())
        return {};
    const std::vector<std::string> butLast(operands.begin(), operands.end() - 1);
    switch (static_cast<Opcode>(step.opcode)) {
    case Opcode::If:
    case Opcode::While:
    case Opcode::Assign:
    case Opcode::Return:
    case Opcode::Throw:
    case Opcode::Sleep:
    case Opcode::Print:
        return {operands, {}};
    case Opcode::For:
        return {{operands[1], operands[2]}, {"$" + operands[0]}};
    case Opcode::Assert:
        return {butLast, {}};
    case Opcode::Template:
    case Opcode::Template_with_Catch:
        return {operands, {"$RESULT"}};
    case Opcode::IPMI:
    case Opcode::IPMI_Without_Throw: {
        Effect effect{butLast, {operands.back(), "$BMC_COMPLETION_CODE"}};
        if (const auto packet = stores().packets.find(operands[0]); packet != stores().packets.end())
            effect.reads.insert(effect.reads.end(), packet->second.values.begin(), packet->second.values.end());
        return effect;
    }
    default:
        return {butLast, {operands.back()}};
    }
}

inline const std::set<Opcode> sends = {Opcode::IPMI, Opcode::IPMI_Without_Throw};
inline const std::set<Opcode> picks = {Opcode::IPMIResponse, Opcode::Filter, Opcode::Exclude};
inline const std::set<Opcode> calls = {Opcode::Template, Opcode::Template_with_Catch, Opcode::Poll};

inline bool isCall(const Function& step)
{
    return calls.contains(static_cast<Opcode>(step.opcode));
}

inline void forEachStep(const std::function<void(const std::string& key, const Function& step)>& visit)
{
    for (const auto& [key, program] : stores().templates)
        for (const Function& step : *program)
            visit(key, step);
}

/// Every symbol that a step or a packet reads.
inline Names symbolsRead()
{
    Names read;
    for (const auto& [key, packet] : stores().packets)
        read.insert(packet.values.begin(), packet.values.end());
    forEachStep([&](const std::string&, const Function& step) {
        const Effect effect = effectOf(step);
        read.insert(effect.reads.begin(), effect.reads.end());
    });
    std::erase_if(read, std::not_fn(isSymbol));
    return read;
}

inline bool isConstant(const std::string& name)
{
    return stores().symbols.contains(name);
}

} // namespace catalogue_data
