#include "modules/bmc/subjects/Sdr.hpp"

#include "common/Logger.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/subjects/Cache.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <mutex>
#include <span>

// Reading the BMC's repository into the cache.

namespace Module::BMCConfig {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t pieceSize = 16; ///< below what every transport takes
constexpr std::size_t headerSize = ipmi::sdr::headerSize, recordLimit = 1024;
constexpr std::size_t nextIdItem = 1, dataItem = 3; ///< places in the answer, behind the completion code
constexpr int repeatLimit = 100;
constexpr unsigned lastRecord = 0xFFFF, recordIds = 0x10000;

/// Before a repeat a controller that may come round gets time, each time more; the pauses of one reading come to a
/// second at most.
constexpr std::chrono::nanoseconds pauseStep = 198us, longestPatience = 1s;

/// Of a controller that cannot give what the record's length promises, however often it is asked.
constexpr int lengthRefusals[] = {ipmi::completion::requestLengthInvalid, ipmi::completion::fieldLengthExceeded,
                                  ipmi::completion::parameterOutOfRange, ipmi::completion::tooManyBytesRequested};

/// Of a controller that may give another answer a moment later. An empty repository, say, has nothing to wait for.
constexpr int passingRefusals[] = {ipmi::completion::nodeBusy,        ipmi::completion::timeout,
                                   ipmi::completion::reservationLost, ipmi::completion::noResponse,
                                   ipmi::completion::sdrUpdating,     ipmi::completion::firmwareUpdating,
                                   ipmi::completion::initializing};

/// The reservation, and the symbols that say what to read, serve one reading at a time.
std::mutex reading;

bool succeeded(const std::vector<std::string>& items)
{
    return items.size() > 2 && items.front() == "0";
}

bool isRefusedBy(std::span<const int> codes, const std::vector<std::string>& items)
{
    return !items.empty() && std::ranges::find(codes, Util::string_to_long(items.front(), 10)) != codes.end();
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
    patience = longestPatience;
    bool more = reserve();
    for (unsigned id = 0; more && !asked[id];) {
        asked[id] = true;
        Record record;
        const Outcome outcome = readRecord(id, record);
        if (outcome == Outcome::givenUp) { // nothing goes to the cache: the next query reads anew
            result[query] = Symbol(NODE_NONLEAF, {});
            return;
        }
        if (outcome == Outcome::end)
            break;
        asked[record.id] = true; // the first record goes by the id 0 too; a walk that comes back to it has come round
        if (outcome == Outcome::whole) {
            names.push_back(sdrPath(names.size() + 1));
            setCache("GET:/" + names.back(), Symbol(" " + ipmi::hexBytes(ipmi::parseBytes(record.bytes))), lock);
        }
        id = record.next;
        more = id != lastRecord;
    }
    keepList(query, std::move(names), result, lock);
}

void Sdr::keepList(const std::string& query, std::vector<std::string> names, SymbolMap& result, bool lock)
{
    const Symbol list(NODE_NONLEAF, std::move(names));
    const Symbol count(std::to_string(list.size()));
    setCache(sdrStampKey, Symbol(), lock);
    setCache(sdrCountKey, count, lock);
    setCache(query, list, lock); // last: whoever finds the list may rely on all else
    result[sdrCountKey] = count;
    result[query] = list;
}

Sdr::Outcome Sdr::readRecord(unsigned id, Record& record)
{
    const Items header = fetch(id, 0, headerSize);
    if (!succeeded(header))
        return Outcome::givenUp;
    if (header.size() < dataItem + headerSize)
        return Outcome::end;
    record.bytes.assign(header.begin() + dataItem, header.begin() + dataItem + headerSize);
    record.id = toRecordId(record.bytes[ipmi::sdr::id], record.bytes[ipmi::sdr::id + 1]);
    record.next = toRecordId(header[nextIdItem], header[nextIdItem + 1]);
    if (id != 0 && record.id != id)
        return Outcome::end;
    const Outcome outcome = readBody(id, ipmi::parseByte(record.bytes[ipmi::sdr::length]), record.bytes);
    if (outcome == Outcome::unreadable)
        HW_LOG(LOGGER::Category::First, "SDR %04X is not as long as it says, and is left out", id);
    return outcome;
}

bool Sdr::reserve()
{
    Items items;
    ipmi("GET://BMC/SDR/RESERVE", items);
    return !items.empty() && items.front() == "0";
}

Sdr::Items Sdr::fetch(unsigned recordId, std::size_t offset, std::size_t length)
{
    SymbolTable& symbols = interpreter->symbolTable();
    symbols[$("/SDR/ADDRESS_LS")] = toHex(recordId);
    symbols[$("/SDR/ADDRESS_MS")] = toHex(recordId >> 8);
    symbols[$("/SDR/OFFSET")] = toHex(offset);
    symbols[$("/SDR/LEN")] = toHex(length);
    Items items;
    ipmi("GET://BMC/SDR/READ", items);
    for (int repeat = 1; repeat <= repeatLimit && !succeeded(items); ++repeat) {
        if (isRefusedBy(passingRefusals, items))
            pauseBefore(repeat);
        reserve();
        ipmi("GET://BMC/SDR/READ", items);
    }
    return items;
}

void Sdr::pauseBefore(int repeat)
{
    const std::chrono::nanoseconds pause = std::min(repeat * pauseStep, patience);
    patience -= pause;
    if (pause > 0ns)
        current<Clock>().sleepFor(pause);
}

Sdr::Outcome Sdr::readBody(unsigned recordId, std::size_t length, Items& bytes)
{
    const std::size_t wanted = headerSize + std::min(length, recordLimit - headerSize);
    while (bytes.size() < wanted) {
        const std::size_t piece = std::min(pieceSize, wanted - bytes.size());
        const Items items = fetch(recordId, bytes.size(), piece);
        if (!succeeded(items))
            return isRefusedBy(lengthRefusals, items) ? Outcome::unreadable : Outcome::givenUp;
        // A piece may come short: the next begins where it ends. An empty one ends the record.
        const std::size_t got = std::min(piece, items.size() - dataItem);
        if (got == 0)
            break;
        bytes.insert(bytes.end(), items.begin() + dataItem,
                     items.begin() + static_cast<std::ptrdiff_t>(dataItem + got));
    }
    return Outcome::whole;
}

void Sdr::setCache(const std::string& key, const Symbol& value, bool lock)
{
    HW_LOG(LOGGER::Category::Third, "Calling cHSet from %s @%d", __func__, __LINE__);
    Cache::instance().Set(key, value, exec, lock);
}

} // namespace Module::BMCConfig
