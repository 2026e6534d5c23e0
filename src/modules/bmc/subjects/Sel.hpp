#pragma once

#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/subjects/SelRecord.hpp"
#include "modules/bmc/subjects/SelTranslation.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// Answers "GET://BMC/SEL..." and "SET://BMC/SEL/CLEAR" (IPMI 2.0, 31). A raw record is its bytes in two-digit
/// hexadecimal; a list names "/BMC/SEL/RECORD[id]", a translated record its fields, and all of them stand in the result
/// beside the list. Parameters come by their path ("/SEL/RECORD_ID") or by their plain name ("RECORD_ID").
/// ResultStatus: 1089 for a record id that the BMC rejects, 1209 without a reservation, 1210 if the log cannot be
/// cleared, 1026 when a record cannot be read. A record that cannot be translated is answered all the same.
class Sel : public Handler {
public:
    /// A record that does not read is asked for again so often, unless the policy gives it up earlier.
    static constexpr int mostRepetitions = 1000;
    /// What the readers of translated records have room for, in bytes.
    static constexpr std::size_t longestDescription = 1023, longestSeverity = 19;

    Sel(Interpreter* interpreter, _BMC_EXEC exec);

    void process(const std::string& query, SymbolMap& result) override;
    /// The entry for other handlers, with the query's subscripts filled in.
    void router(const std::string& query, SymbolMap& result);
    void handle(const std::string& query, SymbolMap& result);
    /// Runs the template of `query`.
    void run(const std::string& query, SymbolMap& result);

    // Each leaves its answer in result[query].
    void reserve(const std::string& query, SymbolMap& result);
    void records(const std::string& query, SymbolMap& result);
    void record(const std::string& query, SymbolMap& result);
    void after_record(const std::string& query, SymbolMap& result);
    void last_record(const std::string& query, SymbolMap& result);
    /// One fact of the log, or all of them from one answer of the BMC.
    void info(const std::string& query, SymbolMap& result);

    /// From "/SEL/RECORD_ID" on, at most "/SEL/RANGE" records; or the records that the caller gives. With a
    /// "/SEL/LOCALE" that has a file of words, in that language, and each with the field "ENGLISH" behind the others:
    /// the English text, by which programs choose what to do.
    void TranslatedRecords(const std::string& query, SymbolMap& result);
    /// The record in "/SEL/RAW_SEL_RECORD", as text.
    void TranslateSingleRecord(const std::string& query, SymbolMap& result);
    /// The records in "/SEL/RAW_SEL_RECORD_0" and following, as many as "/SEL/RANGE" says. "/SEL/PRODUCT_ID" is the
    /// product that wrote them if it is not this machine's.
    void TranslateRawSELRecords(const std::string& query, SymbolMap& result);

    /// Month, day, year and time in UTC, or the words for a time that is none.
    static void DecodeTimeStamp(std::uint32_t seconds, std::string& out);
    /// The three-letter name of a Windows language id, "ENU" for unknown ones.
    static void GetLanguageStringFromLangId(int langId, std::string& out);

private:
    using Visit = std::function<void(const SelRecord& record)>;
    struct Fields;
    struct FieldRow;
    static const FieldRow fieldRows[];

    /// Reads record `id` with the template `read`; nothing if the BMC knows none of that id.
    std::optional<SelRecord> sel_record(unsigned id, const std::string& read);
    /// Walks the log from record `first` to its end, or for `range` records if that is not negative.
    void sel_records(unsigned first, long range, const std::string& read, const Visit& visit);
    /// The same with no other such walk at the same time.
    void sel_records_with_lock(unsigned first, long range, const std::string& read, const Visit& visit);
    bool takeReservation();
    void answerRecords(const std::string& query, unsigned first, bool withFirst, SymbolMap& result);
    void answerRecord(const std::string& query, unsigned id, const std::string& read, SymbolMap& result);

    /// Adds the fields of `record` as member `index` of the answer.
    void GetTranslatedRecord(const SelRecord& record, std::size_t index, SymbolMap& result);
    void InitializeHRS();
    Fields translateRecord(const SelRecord& record);
    Fields translated(const SelRecord& record, Translator* translator, const std::string& otherwise);
    static Fields readFields(const SelRecord& record);
    void translateByFile(const SelRecord& record, Translator& translator, Fields& fields);
    /// The name of the supply at a bit of a voltage fault, empty if the BMC does not tell.
    std::string GetVoltageFaultSensorName(int bit);
    void translateGiven(const std::string& query, const std::vector<std::string>& texts, SymbolMap& result);
    void translateAll(const std::string& query, const std::vector<SelRecord>& found, SymbolMap& result);

    unsigned subscriptId(const std::string& name);
    std::string parameter(const std::string& path);
    long parameterNumber(const std::string& path, long without);

    Interpreter* interpreter;
    _BMC_EXEC exec;
    std::string platform = "UNKNOWN";
    SelTranslation* translation; ///< the process's, or `own`
    std::unique_ptr<SelTranslation> own;
    bool prepared = false;
};

} // namespace Module::BMCConfig
