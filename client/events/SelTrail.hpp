#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace client::events {

/// The last records handled, each as the text of its bytes: by them the place in the log is found again.
class SelTrail {
public:
    static constexpr std::size_t longest = 16;

    void add(const std::string& record);
    void clear() { records.clear(); }
    /// The record `places` before the newest; null if the trail is not that long.
    const std::string* back(std::size_t places) const;
    bool holds(const std::string& record) const;

    /// When the log was last erased, by the controller's clock, as known with the newest record; empty if that was of
    /// no interest.
    std::string erased;

    /// As lines for a file; nothing from text that is something else.
    std::string text() const;
    static std::optional<SelTrail> parse(const std::string& text);

private:
    std::deque<std::string> records;
};

/// The id in a record's first two bytes.
unsigned idOf(const std::string& record);
/// Whether the record's bytes can only come once: it has a time of day. A record without a time, or one that a
/// controller wrote before its clock was set (IPMI 2.0, 37.1), may come again with the same id after the log was
/// cleared.
bool isUnique(const std::string& record);

/// What the log gave from an id on.
struct LogPage {
    std::vector<std::string> records; ///< none: the controller knows no record of that id, or the log is empty
    bool endsLog = true;              ///< no record follows the last one
};

/// What is to be made of a page.
struct News {
    enum Place { here, furtherBack, emptyLog } place;
    std::vector<std::size_t> fresh; ///< places in the page of the records that are new
};

/// What is new in the page that was read from the record `back` places before the trail's newest on, or from the log's
/// beginning if the trail is not that long.
///
/// The log only grows at its end. So if the trail's record stands where it stood, with all its bytes, everything behind
/// it is new but for what the trail holds. If it does not, it was deleted, the log has come round, or the log was
/// cleared; then the record handled before it may still stand, and so on. If none of the trail stands, the log was
/// cleared or has come round, and all that it holds is new. (Or somebody deleted just the newest sixteen one by one:
/// then the older ones are told twice. Where the log leaves open whether a record was told, twice is better than
/// never.) `wasErased` says that the controller erased something since: a record that is not unique proves nothing
/// then.
News whatIsNew(const SelTrail& trail, std::size_t back, const LogPage& page, bool wasErased);

} // namespace client::events
