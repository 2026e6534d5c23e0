#include "modules/bmc/subjects/Sel.hpp"

#include "common/ErrorName.hpp"
#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "modules/bmc/engine/Text.hpp"

#include <algorithm>
#include <mutex>

// Reading records from the BMC.

namespace Module::BMCConfig {

namespace {

constexpr char readQuery[] = "GET://BMC/SEL/RECORD", extendedQuery[] = "GET://BMC/SEL/EXTENDED_RECORD";
constexpr char noRecords[] = "No SEL Records Found!";
constexpr std::size_t nextIdItem = 1, dataItem = 3; ///< places in the answer, behind the completion code
constexpr std::size_t selIds = 0x10000;
constexpr int fewFailures = 3; ///< where the policy gives a record up; a lost reservation is none

/// Completion codes (IPMI 2.0, table 5-2) in the decimal text of replies. A BMC that knows no record of an id says so
/// by the first of the three, or finds fault with the request.
constexpr const char* success = "0";
constexpr const char* reservationLost = "197";
constexpr const char* rejections[] = {"203", "201", "204"};

using Items = std::vector<std::string>;

Items itemsOf(const Symbol& reply)
{
    return Util::split(reply.text(), " ");
}

bool rejects(const Items& items)
{
    return !items.empty() && std::ranges::find(rejections, items.front()) != std::end(rejections);
}

/// The record in a successful answer, nothing if it is shorter than a record.
std::optional<SelRecord> recordIn(const Items& items)
{
    if (items.size() < dataItem + ipmi::sel::recordSize || items.front() != success)
        return std::nullopt;
    SelRecord record;
    const ipmi::Bytes bytes = ipmi::parseBytes(items);
    record.next = ipmi::wordAt(bytes, nextIdItem);
    record.bytes.assign(bytes.begin() + dataItem, bytes.end());
    return record;
}

[[noreturn]] void giveUp(unsigned id, const Items& lastAnswer)
{
    if (!lastAnswer.empty() && lastAnswer.front() == success)
        throw ResultStatus(ERROR_BMC_INTERFACE_ERROR, "SEL Read Error", selIdText(id), COMMAND_GET);
    throwError(ERROR_BMC_INTERFACE_ERROR, "SEL record " + selIdText(id), COMMAND_GET);
}

} // namespace

std::optional<SelRecord> Sel::sel_record(unsigned id, const std::string& read)
{
    SymbolTable& symbols = interpreter->symbolTable();
    symbols["$/SEL/GET_SEL_ENTRY_LS"] = toHex(id);
    symbols["$/SEL/GET_SEL_ENTRY_MS"] = toHex(id >> 8);
    const int mostFailures = common::policy().givesUpUnreadRecords ? fewFailures : mostRepetitions + 1;
    Items items;
    for (int repeat = 0, failures = 0; repeat <= mostRepetitions && failures < mostFailures; ++repeat) {
        SymbolMap local;
        run(read, local);
        items = itemsOf(local[read]);
        if (std::optional<SelRecord> record = recordIn(items))
            return record;
        if (rejects(items))
            return std::nullopt;
        if (!items.empty() && items.front() == reservationLost)
            takeReservation();
        else
            ++failures;
    }
    giveUp(id, items);
}

void Sel::sel_records(unsigned first, long range, const std::string& read, const Visit& visit)
{
    SymbolMap local;
    run("GET://BMC/SEL", local);
    std::vector<bool> asked(selIds);
    unsigned id = first;
    for (long count = 0; count != range && !asked[id]; ++count) {
        asked[id] = true;
        const std::optional<SelRecord> record = sel_record(id, read);
        if (!record) {
            // No first or last record is an empty log, and one that ends too early was cleared under way.
            if (count == 0 && id != ipmi::firstSelId && id != ipmi::lastSelId)
                throwError(ERROR_INVALID_DATAVAL, "SEL record " + selIdText(id), COMMAND_GET);
            return;
        }
        asked[record->view().id()] = asked[record->view().id()] || id == ipmi::firstSelId; // it goes by both ids
        visit(*record);
        if (id == ipmi::lastSelId || record->next == ipmi::lastSelId || record->next == ipmi::firstSelId)
            return;
        id = record->next;
    }
}

void Sel::sel_records_with_lock(unsigned first, long range, const std::string& read, const Visit& visit)
{
    static std::mutex walking;
    const std::lock_guard hold(walking);
    sel_records(first, range, read, visit);
}

/// False if the BMC gives no reservation.
bool Sel::takeReservation()
{
    const std::string query = "GET://BMC/SEL/RESERVE";
    SymbolMap local;
    run(query, local);
    const Items items = itemsOf(local[query]);
    if (items.size() < dataItem || items.front() != success)
        return false;
    interpreter->symbolTable()["$/SEL/RESERVATION_LS"] = items[nextIdItem];
    interpreter->symbolTable()["$/SEL/RESERVATION_MS"] = items[nextIdItem + 1];
    return true;
}

void Sel::reserve(const std::string& query, SymbolMap& result)
{
    if (!takeReservation())
        throwError(ERROR_SEL_RESERVE, "Reserve Sel Repository", COMMAND_GET);
    const unsigned low = ipmi::parseByte(interpreter->getText("$/SEL/RESERVATION_LS"));
    const unsigned high = ipmi::parseByte(interpreter->getText("$/SEL/RESERVATION_MS"));
    result[query] = selIdText(low | high << 8);
}

void Sel::records(const std::string& query, SymbolMap& result)
{
    answerRecords(query, ipmi::firstSelId, true, result);
}

void Sel::after_record(const std::string& query, SymbolMap& result)
{
    answerRecords(query, subscriptId("AFTER_RECORD"), false, result);
}

void Sel::answerRecords(const std::string& query, unsigned first, bool withFirst, SymbolMap& result)
{
    constexpr long toTheEnd = -1;
    Symbol names(NODE_NONLEAF, {});
    bool wanted = withFirst;
    sel_records_with_lock(first, toTheEnd, readQuery, [&](const SelRecord& record) {
        if (std::exchange(wanted, true)) {
            names.values.push_back("/BMC/SEL/RECORD[" + std::to_string(record.view().id()) + "]");
            result["GET:/" + names.values.back()] = ipmi::hexBytes(record.standard());
        }
    });
    result[query] = names;
}

void Sel::record(const std::string& query, SymbolMap& result)
{
    const std::string plain = Interpreter::handleIndexes(query);
    const bool extended = plain.starts_with(extendedQuery);
    const unsigned id = !plain.ends_with("[]") ? parseSelId(parameter("/SEL/RECORD_ID"))
                        : extended             ? subscriptId("EXTENDED_RECORD")
                                               : subscriptId("RECORD");
    answerRecord(query, id, extended ? extendedQuery : readQuery, result);
}

void Sel::last_record(const std::string& query, SymbolMap& result)
{
    answerRecord(query, ipmi::lastSelId, readQuery, result);
}

void Sel::answerRecord(const std::string& query, unsigned id, const std::string& read, SymbolMap& result)
{
    constexpr long one = 1;
    result[query] = noRecords;
    sel_records(id, one, read, [&](const SelRecord& record) {
        result[query] = ipmi::hexBytes(read == extendedQuery ? ipmi::ByteView(record.bytes) : record.standard());
    });
}

/// A subscript of digits is decimal to the caller and hexadecimal here; one with letters stands as it was given.
unsigned Sel::subscriptId(const std::string& name)
{
    const std::string number = parameter(name + "_NUMBER");
    return parseSelId(number.empty() ? parameter(name) : number);
}

std::string Sel::parameter(const std::string& path)
{
    const std::string text = interpreter->getText($(path));
    return text.empty() ? interpreter->getText($(path.substr(path.rfind('/') + 1))) : text;
}

long Sel::parameterNumber(const std::string& path, long without)
{
    const std::string text = parameter(path);
    return text.empty() ? without : Util::string_to_long(text, 10);
}

} // namespace Module::BMCConfig
