#pragma once

#include "common/Seams.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/subjects/SdrFile.hpp"
#include "modules/bmc/subjects/SdrRepository.hpp"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// A reading of the repository, under way or come to its end.
struct SdrWalk {
    SdrTexts records;
    std::optional<std::string> mark; ///< the repository's state when it began (see SdrState.hpp), where that is asked
    std::string identity;            ///< the controller's, for the copy on the disk
    std::size_t most = 0;            ///< records after which a walk that has not come to an end is given up
    std::vector<bool> asked;         ///< record ids
    unsigned next = 0;               ///< record id; 0 is the first record's
    bool isInPieces = false;         ///< goes on later where a record cannot be read now
    bool isAside = false;            ///< an earlier repository stands until its end
    bool isCopy = false;             ///< the disk's
    bool isWhole = true;
    bool hasEnded = false;
    int failures = 0; ///< of the next record
};

/// Answers "GET://BMC/SDR..." and "SET://BMC/SDR/...". The BMC's repository is read once into the engine's cache, and
/// all lookups are made there. Results: a record is its bytes as hexadecimal text, a list the paths of records
/// ("/BMC/SDR[3]"), a decoded field decimal text; what is not there is an empty value. A repository that cannot be read
/// at the time leaves an empty list, and the next query reads it anew; a record that is shorter than it says is left
/// out. Errors of the message layer pass through as ResultStatus.
///
/// In the practical mode a record is read in one piece where the controller gives it, a repository that cannot be read
/// is left alone for a while, what could be read of it stands, and it is read anew when it changes (see Policy.hpp).
class Sdr : public Handler {
public:
    /// Records beyond this one are kept, but the list queries do not walk them.
    static constexpr std::size_t walkLimit = 1023;

    Sdr(Interpreter* interpreter, _BMC_EXEC exec);

    void process(const std::string& query, SymbolMap& result) override;
    /// The entry for other handlers, with the query's subscripts filled in.
    void router(const std::string& query, SymbolMap& result);
    void handle(const std::string& query, SymbolMap& result);
    /// Runs the template of `query`, with `parameters` as plain symbols.
    void run(const std::string& query, SymbolMap& result, const std::map<std::string, std::string>& parameters = {});
    /// Runs the template of `query` and cuts its result at blanks.
    void ipmi(const std::string& query, std::vector<std::string>& items);

    /// Reads the repository into the cache (IPMI 2.0, 33.12). `lock`: whether each cache write takes the cache's lock.
    void read(const std::string& query, SymbolMap& result, bool lock);
    void read_with_lock(const std::string& query, SymbolMap& result) { read(query, result, true); }

    /// Reads a repository that is to be read, or read anew, for about `time`, and the next call goes on from there.
    /// Lookups find what has been read so far, or the earlier repository until the end. Whether there is more to read;
    /// a record that cannot be read is tried in three calls. Errors of the message layer pass through as ResultStatus
    /// and end nothing that has begun to be read.
    bool readPiece(std::chrono::nanoseconds time);

    /// Appends the items of cached `record` that the filter names; `exclude` those that it does not name.
    void filter(const std::string& record, const std::string& filterName, std::vector<std::string>& out);
    void exclude(const std::string& record, const std::string& filterName, std::vector<std::string>& out);

    // Each leaves its answer in result[query].
    void decode(const std::string& query, SymbolMap& result);
    /// The SDR version of each record, in hexadecimal.
    void version(const std::string& query, SymbolMap& result);
    void record_type(const std::string& query, SymbolMap& result);
    void sensor_type(const std::string& query, SymbolMap& result);
    void entity_id(const std::string& query, SymbolMap& result);
    void entity_id_instance(const std::string& query, SymbolMap& result);
    /// Of several sensors of the number, the one of the BMC itself on LUN 0.
    void sensor_number(const std::string& query, SymbolMap& result);
    void sensor_number_owner(const std::string& query, SymbolMap& result);

private:
    using Items = std::vector<std::string>;
    using Condition = std::function<bool(const SdrRecord& record)>;

    /// The records, read from the BMC if the cache is empty; null if there are none.
    std::shared_ptr<const SdrRepository> fill();
    void answerCached(const std::string& query, const std::string& plain, const SdrRepository* repository,
                      SymbolMap& result);

    bool isToBeReadAnew(bool hasOne) const;
    /// A repository that is there stands when the reading fails.
    void readAnew(bool hasOne);
    /// What is to be read, or has been read already: the copy on the disk.
    SdrWalk begin();
    void finish(const SdrWalk& walk);
    /// To its end, or until the moment.
    void walkOn(SdrWalk& walk, Clock::SteadyPoint until = Clock::SteadyPoint::max());
    void readOn(bool hasOne, Clock::SteadyPoint until);
    static bool isStillThere(const SdrWalk& walk);

    struct Record {
        unsigned id = 0;
        unsigned next = 0xFFFF; ///< which is none
        Items bytes;
    };
    enum class Outcome { whole, unreadable, end, givenUp };

    /// One record.
    void step(SdrWalk& walk);
    /// Whether the walk is to wait for its next record instead of ending.
    static bool waits(SdrWalk& walk);
    bool reserve();
    /// `id` 0 is the first record's; another record in the answer's place ends the walk.
    Outcome readRecord(unsigned id, Record& record);
    /// readRecord; once there are `others` a failing interface costs this record only.
    Outcome tryRecord(unsigned id, Record& record, bool others);
    /// The record from its start: whole or as much as the controller gives at once, or its header.
    Items fetchStart(unsigned recordId);
    Items fetchWhole(unsigned recordId);
    /// Appends `length` bytes behind the header to `bytes`.
    Outcome readBody(unsigned recordId, std::size_t length, Items& bytes);
    /// The answer to Get SDR; it is no success after a hundred repeats.
    Items fetch(unsigned recordId, std::size_t offset, std::size_t length);
    bool isWorthARepeat(const Items& answer);
    void pauseBefore(int repeat);
    /// Goes on with pieces smaller than one that was refused; false if there are none.
    bool stepDown(std::size_t refused);
    std::size_t rememberedPiece() const;
    void rememberPiece();
    void keep(const SdrWalk& walk, const std::string& query, SymbolMap& result, bool lock);
    void keepRecords(const SdrTexts& records, const std::string& query, SymbolMap& result, bool lock);
    void leaveAlone(std::chrono::nanoseconds duration);
    void setCache(const std::string& key, const Symbol& value, bool lock);

    /// A subscript of the query, -1 if it was not given.
    int parameter(const std::string& name);
    /// The records for which `condition` holds, as paths.
    std::vector<std::string> find(const Condition& condition);
    void answerList(const std::string& query, std::vector<std::string> names, SymbolMap& result);
    void applyFilter(const Function& step, const std::string& key, const std::string& record,
                     std::vector<std::string>& out);

    Interpreter* interpreter;
    _BMC_EXEC exec;
    // Of the reading under way.
    std::chrono::nanoseconds patience{}; ///< what is left of it
    int repeatsLeft = 0;
    std::size_t piece = 0; ///< which of the sizes of pieces is in use
};

} // namespace Module::BMCConfig
