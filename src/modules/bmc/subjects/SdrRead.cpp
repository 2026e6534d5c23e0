#include "modules/bmc/subjects/Sdr.hpp"

#include "common/Logger.hpp"
#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/subjects/Cache.hpp"

#include <algorithm>
#include <mutex>

// Reading the BMC's repository into the cache.

namespace Module::BMCConfig {

namespace {

constexpr std::size_t pieceSize = 16; ///< below what every transport takes
constexpr std::size_t headerSize = ipmi::sdr::headerSize, recordLimit = 1024;
constexpr std::size_t nextIdItem = 1, dataItem = 3; ///< places in the answer, behind the completion code
constexpr int repeatLimit = 100;
constexpr unsigned lastRecord = 0xFFFF, recordIds = 0x10000;

/// The reservation, and the symbols that say what to read, serve one reading at a time.
std::mutex reading;

bool succeeded(const std::vector<std::string>& items)
{
    return items.size() > 2 && items.front() == "0";
}

unsigned toRecordId(const std::string& low, const std::string& high)
{
    return ipmi::parseByte(low) | static_cast<unsigned>(ipmi::parseByte(high)) << 8;
}

std::string toHex(std::size_t value)
{
    return ipmi::hexByte(static_cast<std::uint8_t>(value));
}

} // namespace

std::shared_ptr<const SdrRepository> Sdr::fill()
{
    if (auto repository = SdrRepository::current(exec))
        return repository;
    const std::lock_guard hold(reading);
    if (auto repository = SdrRepository::current(exec)) // another thread has read it meanwhile
        return repository;
    SymbolMap local;
    read_with_lock(sdrListKey, local);
    return SdrRepository::current(exec);
}

void Sdr::read(const std::string& query, SymbolMap& result, bool lock)
{
    std::vector<std::string> names;
    std::vector<bool> asked(recordIds);
    bool more = reserve();
    for (unsigned id = 0; more && !asked[id];) {
        asked[id] = true;
        const auto header = fetch(id, 0, headerSize);
        if (!header || header->size() < dataItem + headerSize)
            break;
        Items bytes(header->begin() + dataItem, header->begin() + dataItem + headerSize);
        if (id == 0) // the first record goes by the id 0 too; a walk that comes back to it has come round
            asked[toRecordId(bytes[0], bytes[1])] = true;
        const auto body = readBody(id, ipmi::parseByte(bytes[ipmi::sdr::length]));
        if (!body)
            break;
        bytes.insert(bytes.end(), body->begin(), body->end());
        names.push_back(sdrPath(names.size() + 1));
        setCache("GET:/" + names.back(), Symbol(" " + ipmi::hexBytes(ipmi::parseBytes(bytes))), lock);
        id = toRecordId((*header)[nextIdItem], (*header)[nextIdItem + 1]);
        more = id != lastRecord;
    }
    const Symbol list(NODE_NONLEAF, std::move(names));
    const Symbol count(std::to_string(list.size()));
    setCache(sdrStampKey, Symbol(), lock);
    setCache(sdrCountKey, count, lock);
    setCache(query, list, lock); // last: whoever finds the list may rely on all else
    result[sdrCountKey] = count;
    result[query] = list;
}

bool Sdr::reserve()
{
    Items items;
    ipmi("GET://BMC/SDR/RESERVE", items);
    return !items.empty() && items.front() == "0";
}

std::optional<Sdr::Items> Sdr::fetch(unsigned recordId, std::size_t offset, std::size_t length)
{
    SymbolTable& symbols = interpreter->symbolTable();
    symbols[$("/SDR/ADDRESS_LS")] = toHex(recordId);
    symbols[$("/SDR/ADDRESS_MS")] = toHex(recordId >> 8);
    symbols[$("/SDR/OFFSET")] = toHex(offset);
    symbols[$("/SDR/LEN")] = toHex(length);
    Items items;
    ipmi("GET://BMC/SDR/READ", items);
    for (int repeat = 0; !succeeded(items); ++repeat) {
        if (repeat == repeatLimit)
            return std::nullopt;
        reserve();
        ipmi("GET://BMC/SDR/READ", items);
    }
    return items;
}

std::optional<Sdr::Items> Sdr::readBody(unsigned recordId, std::size_t length)
{
    const std::size_t wanted = std::min(length, recordLimit - headerSize);
    Items body;
    while (body.size() < wanted) {
        const std::size_t piece = std::min(pieceSize, wanted - body.size());
        const auto items = fetch(recordId, headerSize + body.size(), piece);
        if (!items)
            return std::nullopt;
        // A piece may come short: the next begins where it ends. An empty one ends the record.
        const std::size_t got = std::min(piece, items->size() - dataItem);
        if (got == 0)
            break;
        body.insert(body.end(), items->begin() + dataItem,
                    items->begin() + static_cast<std::ptrdiff_t>(dataItem + got));
    }
    return body;
}

void Sdr::setCache(const std::string& key, const Symbol& value, bool lock)
{
    HW_LOG(LOGGER::Category::Third, "Calling cHSet from %s @%d", __func__, __LINE__);
    Cache::instance().Set(key, value, exec, lock);
}

} // namespace Module::BMCConfig
