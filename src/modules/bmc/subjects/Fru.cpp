#include "modules/bmc/subjects/Fru.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/engine/Text.hpp"
#include "modules/bmc/subjects/Cache.hpp"
#include "transport/BmcMessage.hpp"

#include <algorithm>
#include <span>
#include <string_view>

namespace Module::BMCConfig {

namespace {

constexpr char loadQuery[] = "GET://BMC/FRU", deviceQuery[] = "GET://BMC/FRU[]";
constexpr std::string_view decodedBranch = "/RECORD/DECODED";
constexpr unsigned highestDevice = 0xFE; ///< FFh is reserved (IPMI 2.0, 34.1)

struct AreaName {
    std::string_view name;
    FruArea area;
};

constexpr AreaName areaNames[] = {
    {"CHASSISAREA", FruArea::Chassis},
    {"BOARDAREA", FruArea::Board},
    {"PRODUCTAREA", FruArea::Product},
};

/// In answer to a piece that is too large for the device or the way to it.
constexpr int requestTooLarge[] = {ipmi::completion::requestLengthInvalid, ipmi::completion::fieldLengthExceeded,
                                   ipmi::completion::parameterOutOfRange, ipmi::completion::tooManyBytesRequested};
/// What controllers say of a device that they do not have.
constexpr int absences[] = {ipmi::completion::notPresent, ipmi::completion::invalidDataField,
                            ipmi::completion::destinationUnavailable};

constexpr std::size_t wordAccessAt = 3;      ///< in the answer to Get FRU Inventory Area Info, code first
constexpr std::size_t unknownSize = 0x10000; ///< no offset reaches beyond
constexpr std::uint8_t wordAccess = 0x01;

ipmi::Bytes dataOf(const std::vector<std::string>& reply)
{
    return reply.empty() ? ipmi::Bytes{} : ipmi::parseBytes(std::span(reply).subspan(1));
}

std::string devicePath(unsigned device)
{
    return "/BMC/FRU[" + std::to_string(device) + "]";
}

/// The device of a subscript or parameter in hexadecimal; nothing for what is no device's number.
std::optional<unsigned> toDevice(const std::string& text)
{
    const long number = Util::string_to_long(text, 16);
    if (text.empty() || !test_for_hex(text) || number > highestDevice)
        return std::nullopt;
    return static_cast<unsigned>(number);
}

} // namespace

Fru::Fru(Interpreter* interpreter_, _BMC_EXEC exec_) : interpreter(interpreter_), exec(exec_) {}

void Fru::process(const std::string& query, SymbolMap& result)
{
    asked = query;
    const std::string plain = Interpreter::handleIndexes(query);
    if (plain == loadQuery)
        load(query, result);
    else if (plain.starts_with(deviceQuery))
        answerDevice(query, query.substr(query.find(']') + 1), result);
    else
        interpreter->set_without_value(result, query);
}

void Fru::load(const std::string& query, SymbolMap& result)
{
    const std::string given = parameter("DEVICE_ID");
    if (given.empty())
        return listMain(query, result);
    const std::optional<unsigned> device = toDevice(given);
    if (!device)
        refuse(ipmi::completion::notPresent);
    if (const std::string address = parameter("BASE_ADDRESS"); !address.empty())
        interpreter->symbolTable()[$("/BMC/BASE_ADDRESS")] = address;
    read(*device);
    answerBranch(query, {devicePath(*device)}, result);
}

void Fru::listMain(const std::string& query, SymbolMap& result)
{
    constexpr unsigned mainDevice = 0;
    std::vector<std::string> names;
    try {
        areasOf(mainDevice);
        names.push_back(devicePath(mainDevice));
    } catch (const ResultStatus&) { // a walk of the whole tree goes on without it
    }
    answerBranch(query, std::move(names), result);
}

void Fru::answerDevice(const std::string& query, const std::string& rest, SymbolMap& result)
{
    const std::optional<unsigned> device = toDevice(interpreter->getText("$FRU_NUMBER"));
    if (!device)
        refuse(ipmi::completion::notPresent);
    if (rest.empty())
        return answerBranch(query, {"RECORD"}, result);
    if (rest == "/RECORD")
        return answerBranch(query, {"DECODED"}, result);
    if (rest == decodedBranch)
        return answerBranch(query, {"CHASSISAREA", "BOARDAREA", "PRODUCTAREA"}, result);

    std::vector<std::string> names;
    if (rest.starts_with(decodedBranch))
        names = Util::split(rest.substr(decodedBranch.size()), "/");
    const auto row = names.empty() || names.size() > 2 ? std::end(areaNames)
                                                       : std::ranges::find(areaNames, names[0], &AreaName::name);
    const std::string field = names.size() == 2 ? names[1] : std::string();
    if (row == std::end(areaNames) ||
        !answerField(query, row->area, areasOf(*device)[static_cast<std::size_t>(row->area)], field, result))
        interpreter->set_without_value(result, query);
}

void Fru::answerBranch(const std::string& query, std::vector<std::string> names, SymbolMap& result)
{
    result[query] = interpreter->prepend(query, Symbol(NODE_NONLEAF, std::move(names)));
}

bool Fru::answerField(const std::string& query, FruArea kind, const Bytes& area, const std::string& field,
                      SymbolMap& result)
{
    const auto fields = decodeFruArea(kind, area);
    if (field.empty()) {
        std::vector<std::string> names;
        names.reserve(fields.size());
        for (const auto& [name, text] : fields)
            names.push_back(name);
        answerBranch(query, std::move(names), result);
        return true;
    }
    const auto found = std::ranges::find(fields, field, [](const auto& entry) { return entry.first; });
    if (found == fields.end() && !field.starts_with("CUSTOM_FIELD["))
        return false;
    const bool there = found != fields.end() && !found->second.empty();
    result[query] = there ? Symbol(found->second) : Symbol();
    return true;
}

Fru::Areas Fru::areasOf(unsigned device)
{
    const Symbol cached = Cache::instance().Get("GET:/" + devicePath(device), exec);
    if (cached.size() != fruAreaCount)
        return read(device);
    Areas areas;
    std::ranges::transform(cached.values, areas.begin(),
                           [](const std::string& text) { return ipmi::parseBytes(text); });
    return areas;
}

// Reading from the controller.

Fru::Areas Fru::read(unsigned device)
{
    interpreter->symbolTable()[$("/FRU/DEVICE_ID")] = toHex(device);
    const long target = Util::string_to_long(interpreter->getText("$/BMC/BASE_ADDRESS"), 16);
    pieceSize = GetDriverBufferSize(static_cast<std::uint8_t>(target));

    const Inventory inventory = readInventory();
    const auto offsets = fruAreaOffsets(readBytes(inventory, 0, fruHeaderSize));
    Areas areas;
    Symbol texts(NODE_LEAF, {});
    for (std::size_t area = 0; area < fruAreaCount; ++area) {
        areas[area] = readArea(inventory, offsets[area]);
        texts.values.push_back(ipmi::hexBytes(areas[area]));
    }
    constexpr bool lock = true;
    Cache::instance().Set("GET:/" + devicePath(device), texts, exec, lock);
    return areas;
}

Fru::Inventory Fru::readInventory()
{
    // The catalogue has no packet for it, for no script asks.
    constexpr std::uint8_t bmcLun = 0,
                           getInventoryAreaInfo[] = {ipmi::netfn::storage, bmcLun, ipmi::cmd::getFruInventoryAreaInfo};
    std::vector<std::string> reply;
    interpreter->execIPMICommand(interpreter->getText("$/BMC/BASE_ADDRESS") + " " +
                                     ipmi::hexBytes(getInventoryAreaInfo) + " " +
                                     interpreter->getText($("/FRU/DEVICE_ID")),
                                 reply);
    const int code = codeOf(reply);
    const Bytes data = dataOf(reply);
    if (code == ipmi::completion::invalidCommand || (code == 0 && data.size() < wordAccessAt))
        return {unknownSize, 1}; // the device can be read all the same; it says itself where it ends
    if (code != 0)
        refuse(code);
    const std::size_t size = std::size_t{ipmi::wordAt(data, 0)};
    return {size, data[wordAccessAt - 1] & wordAccess ? std::size_t{2} : std::size_t{1}};
}

Fru::Bytes Fru::readArea(const Inventory& inventory, std::size_t offset)
{
    if (offset == 0)
        return {};
    Bytes area = readBytes(inventory, offset, fruAreaUnit);
    const std::size_t length = fruAreaLength(area);
    if (area.size() == fruAreaUnit && length > fruAreaUnit) {
        const Bytes rest = readBytes(inventory, offset + fruAreaUnit, length - fruAreaUnit);
        area.insert(area.end(), rest.begin(), rest.end());
    }
    return area;
}

Fru::Bytes Fru::readBytes(const Inventory& inventory, std::size_t offset, std::size_t count)
{
    const std::size_t wanted = offset < inventory.size ? std::min(count, inventory.size - offset) : 0;
    Bytes bytes;
    for (std::size_t most = pieceSize; bytes.size() < wanted && most >= inventory.unit;) {
        const std::size_t ask = std::min(most, wanted - bytes.size());
        const Piece piece = readPiece(inventory, offset + bytes.size(), ask);
        if (std::ranges::find(requestTooLarge, piece.code) != std::end(requestTooLarge)) {
            most = ask / 2;
            continue;
        }
        if (piece.code != 0)
            refuse(piece.code);
        if (piece.bytes.empty())
            break;
        bytes.insert(bytes.end(), piece.bytes.begin(), piece.bytes.end());
        if (ask == most) // a size that proved good serves the next areas; one that fell at the end proves nothing
            pieceSize = most;
    }
    return bytes;
}

Fru::Piece Fru::readPiece(const Inventory& inventory, std::size_t offset, std::size_t count)
{
    const std::size_t unit = inventory.unit;
    SymbolTable& symbols = interpreter->symbolTable();
    symbols[$("/FRU/INVENTORY/OFFSET_LS")] = toHex(offset / unit);
    symbols[$("/FRU/INVENTORY/OFFSET_MS")] = toHex(offset / unit >> 8);
    symbols[$("/FRU/READ_COUNT")] = toHex(count / unit);
    SymbolMap local;
    interpreter->run(local, "GET://BMC/FRU/READ");
    // the script hands the reply on as text, completion code first
    const std::vector<std::string> reply = Util::split(local["GET://BMC/FRU/READ"].text(), " ");
    Bytes bytes = dataOf(reply);
    if (bytes.empty())
        return {codeOf(reply), {}};
    const std::size_t told = bytes.front() * unit;
    bytes.erase(bytes.begin());
    const std::size_t got = std::min({told, bytes.size(), count});
    bytes.resize(got - got % unit); // the next piece begins at a whole unit
    return {codeOf(reply), std::move(bytes)};
}

void Fru::refuse(int code) const
{
    const bool absent = std::ranges::find(absences, code) != std::end(absences);
    throwError(absent ? ERROR_FRU_DEVICE_ID_NOT_PRESENT : ERROR_READING_SYSTEM_FRU, asked, COMMAND_GET);
}

std::string Fru::parameter(const std::string& name)
{
    const std::string plain = interpreter->getText($(name));
    return plain.empty() ? interpreter->getText($("/FRU/" + name)) : plain;
}

} // namespace Module::BMCConfig
