#include "modules/bmc/subjects/Sdr.hpp"

#include "common/Logger.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "common/Seams.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/engine/Text.hpp"
#include "modules/bmc/subjects/Cache.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <span>

// Reading the BMC's repository.

namespace Module::BMCConfig {

namespace {

using namespace std::chrono_literals;

/// As bytes to read, this stands for the whole record (33.12).
constexpr std::size_t wholeRecord = 0xFF;
/// What is tried, one after the other; every transport and controller takes the last.
constexpr std::size_t pieces[] = {wholeRecord, 64, 32, 16};
constexpr std::size_t largestPart = 1, smallestPiece = std::size(pieces) - 1;
constexpr std::size_t headerSize = ipmi::sdr::headerSize, recordLimit = 1024;
constexpr std::size_t nextIdItem = 1, dataItem = 3; ///< places in the answer, behind the completion code
constexpr int repeatLimit = 100;
/// Of one record in a repository that is read in pieces, each a while behind the one before.
constexpr int mostTries = 3;
constexpr unsigned lastRecord = 0xFFFF, recordIds = 0x10000;

/// Before a repeat a controller that may come round gets time, each time more; the pauses of one reading come to a
/// second at most.
constexpr std::chrono::nanoseconds pauseStep = 198us, longestPatience = 1s;

/// Of a controller that cannot give what the record's length promises, however often it is asked.
constexpr int lengthRefusals[] = {ipmi::completion::requestLengthInvalid, ipmi::completion::fieldLengthExceeded,
                                  ipmi::completion::parameterOutOfRange, ipmi::completion::tooManyBytesRequested};

/// Of a controller that does not give so much at once.
constexpr int pieceRefusals[] = {ipmi::completion::requestLengthInvalid, ipmi::completion::fieldLengthExceeded,
                                 ipmi::completion::parameterOutOfRange,  ipmi::completion::tooManyBytesRequested,
                                 ipmi::completion::invalidDataField,     ipmi::completion::unspecified};

/// Of a controller that may give another answer a moment later. An empty repository, say, has nothing to wait for.
constexpr int passingRefusals[] = {ipmi::completion::nodeBusy,        ipmi::completion::timeout,
                                   ipmi::completion::reservationLost, ipmi::completion::noResponse,
                                   ipmi::completion::sdrUpdating,     ipmi::completion::firmwareUpdating,
                                   ipmi::completion::initializing};

bool succeeded(const std::vector<std::string>& items)
{
    return items.size() > 2 && items.front() == "0";
}

bool isRefusedBy(std::span<const int> codes, const std::vector<std::string>& items)
{
    return !items.empty() && std::ranges::find(codes, codeOf(items)) != codes.end();
}

unsigned toRecordId(const std::string& low, const std::string& high)
{
    return ipmi::parseByte(low) | static_cast<unsigned>(ipmi::parseByte(high)) << 8;
}

} // namespace

void Sdr::read(const std::string& query, SymbolMap& result, bool lock)
{
    SdrWalk walk;
    walk.most = recordIds;
    walkOn(walk);
    keep(walk, query, result, lock);
}

void Sdr::walkOn(SdrWalk& walk, Clock::SteadyPoint until)
{
    patience = longestPatience;
    repeatsLeft = repeatLimit;
    piece = rememberedPiece();
    walk.asked.resize(recordIds);
    if (!reserve()) {
        walk.hasEnded = !waits(walk);
        walk.isWhole = !common::policy().keepsPartialRepository;
        return;
    }
    do
        step(walk);
    while (!walk.hasEnded && walk.failures == 0 && ::current<Clock>().steady() < until);
}

void Sdr::step(SdrWalk& walk)
{
    const bool keepsPart = common::policy().keepsPartialRepository;
    Record record;
    const Outcome outcome = tryRecord(walk.next, record, !walk.records.empty());
    const bool leadsOn = outcome != Outcome::givenUp || record.next != lastRecord;
    if (!leadsOn && waits(walk))
        return;
    walk.failures = 0;
    walk.isWhole = walk.isWhole && outcome != Outcome::givenUp;
    if (outcome == Outcome::whole)
        walk.records.push_back(" " + ipmi::hexBytes(ipmi::parseBytes(record.bytes)));
    // the first record goes by the id 0 too; a walk that comes back to it has come round
    walk.asked[walk.next] = walk.asked[record.id] = true;
    walk.next = record.next;
    walk.hasEnded = outcome == Outcome::end || (outcome == Outcome::givenUp && !keepsPart) || walk.next == lastRecord ||
                    walk.asked[walk.next] || walk.records.size() >= walk.most;
}

bool Sdr::waits(SdrWalk& walk)
{
    return walk.isInPieces && !walk.records.empty() && ++walk.failures < mostTries;
}

Sdr::Outcome Sdr::tryRecord(unsigned id, Record& record, bool others)
{
    try {
        return readRecord(id, record);
    } catch (const ResultStatus&) {
        if (!others || !common::policy().keepsPartialRepository)
            throw;
        return Outcome::givenUp;
    }
}

Sdr::Outcome Sdr::readRecord(unsigned id, Record& record)
{
    const Items start = fetchStart(id);
    if (!succeeded(start))
        return Outcome::givenUp;
    if (start.size() < dataItem + headerSize)
        return Outcome::end;
    record.bytes.assign(start.begin() + dataItem, start.end());
    record.id = toRecordId(record.bytes[ipmi::sdr::id], record.bytes[ipmi::sdr::id + 1]);
    record.next = toRecordId(start[nextIdItem], start[nextIdItem + 1]);
    if (id != 0 && record.id != id)
        return Outcome::end;
    const std::size_t length = ipmi::parseByte(record.bytes[ipmi::sdr::length]);
    const std::size_t asked = pieces[piece] == wholeRecord ? headerSize + length : headerSize;
    record.bytes.resize(std::min(record.bytes.size(), asked));
    const Outcome outcome = readBody(id, length, record.bytes);
    if (outcome == Outcome::unreadable)
        HW_LOG(LOGGER::Category::First, "SDR %04X is not as long as it says, and is left out", id);
    if (outcome == Outcome::whole)
        rememberPiece();
    return outcome;
}

Sdr::Items Sdr::fetchStart(unsigned recordId)
{
    const std::size_t before = piece;
    if (pieces[piece] == wholeRecord) {
        Items whole = fetchWhole(recordId);
        const bool tooShort = succeeded(whole) && whole.size() < dataItem + headerSize;
        if (!whole.empty() && !tooShort && !isRefusedBy(pieceRefusals, whole))
            return whole;
        ++piece;
    }
    Items header = fetch(recordId, 0, headerSize);
    if (!succeeded(header))
        piece = before;
    return header;
}

/// Nothing from a controller whose interface fails over its first whole record: smaller pieces may do.
Sdr::Items Sdr::fetchWhole(unsigned recordId)
{
    try {
        return fetch(recordId, 0, wholeRecord);
    } catch (const ResultStatus&) {
        if (Cache::instance().Get(sdrPieceKey, exec).size() > 0)
            throw;
        return {};
    }
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
    for (int repeat = 1; repeat <= repeatLimit && !succeeded(items) && isWorthARepeat(items); ++repeat) {
        if (isRefusedBy(passingRefusals, items))
            pauseBefore(repeat);
        reserve();
        ipmi("GET://BMC/SDR/READ", items);
    }
    return items;
}

/// A controller that is busy has been asked again on the road already.
bool Sdr::isWorthARepeat(const Items& answer)
{
    if (!common::policy().limitsSdrRepeats)
        return true;
    return isRefusedBy(passingRefusals, answer) && !ipmi::isBusy(codeOf(answer)) && repeatsLeft-- > 0;
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
    const std::size_t before = piece;
    const std::size_t wanted = headerSize + std::min(length, recordLimit - headerSize);
    while (bytes.size() < wanted) {
        const std::size_t size = std::min(pieces[std::max(piece, largestPart)], wanted - bytes.size());
        const Items items = fetch(recordId, bytes.size(), size);
        if (!succeeded(items) && isRefusedBy(pieceRefusals, items) && stepDown(size))
            continue;
        if (!succeeded(items)) {
            piece = before;
            return isRefusedBy(lengthRefusals, items) ? Outcome::unreadable : Outcome::givenUp;
        }
        // A piece may come short: the next begins where it ends. An empty one ends the record.
        const std::size_t got = std::min(size, items.size() - dataItem);
        if (got == 0)
            break;
        bytes.insert(bytes.end(), items.begin() + dataItem,
                     items.begin() + static_cast<std::ptrdiff_t>(dataItem + got));
    }
    return Outcome::whole;
}

bool Sdr::stepDown(std::size_t refused)
{
    const auto smaller = std::find_if(std::begin(pieces) + static_cast<std::ptrdiff_t>(piece), std::end(pieces),
                                      [=](std::size_t size) { return size < refused; });
    if (smaller == std::end(pieces))
        return false;
    piece = static_cast<std::size_t>(smaller - std::begin(pieces));
    return true;
}

std::size_t Sdr::rememberedPiece() const
{
    if (!common::policy().readsLargePieces)
        return smallestPiece;
    const Symbol known = Cache::instance().Get(sdrPieceKey, exec);
    return known.size() == 0 ? 0 : static_cast<std::size_t>(Util::string_to_long(known.text(), 10));
}

void Sdr::rememberPiece()
{
    if (common::policy().readsLargePieces && Cache::instance().Get(sdrPieceKey, exec).text() != std::to_string(piece))
        setCache(sdrPieceKey, Symbol(std::to_string(piece)), true);
}

} // namespace Module::BMCConfig
