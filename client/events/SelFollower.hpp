#pragma once

#include "client/events/SelMark.hpp"

namespace client::events {

/// Follows the controller's event log so that each record is told once, as long as the log holds it: over clears, ids
/// that begin again, deleted records, and restarts of the controller and of the agent.
class SelFollower {
public:
    /// Reads on for about five seconds at most and routes what is new, in the order of the log; a log without news
    /// costs one exchange. The very first turn only takes the log's end for its mark. Nothing before the client's
    /// groups are there. 1 if more is waiting, else 0. ResultStatus when the log cannot be read. One thread alone.
    int turn();
    /// Whether the records of sensors are still being read: until then an event whose sensor is not known yet, and
    /// those behind it, are not told. The same thread.
    void waitForSensors(bool wait) { sensorsToCome = wait; }
    /// Moves the mark on the disk behind what has been told. Any other thread.
    void keep() { mark.keep(); }

private:
    enum class Step { goOn, atEnd, stuck };
    struct Page;

    static Page readPage(unsigned first, int most);
    static std::vector<std::string> newestRecords();
    std::string lastErasure() const;
    void begin();
    bool mayTell();
    bool mustWait(const std::string& record) const;
    bool readOn();
    Step step(int most);
    Step lookIntoEmptyLog();
    Step takeFresh(const Page& page, const std::vector<std::size_t>& fresh);
    void take(const Page& page, std::size_t place);
    void passOverUnreadable();
    bool takeUnknown(unsigned id);
    void noteTrouble();

    SelTrail trail; ///< of the records handled, told or not
    SelMark mark;
    unsigned long number = 0; ///< of the record handled last
    std::size_t back = 0;     ///< how far from the trail's end the log is found again
    int turnsInTrouble = 0;
    int turnsWithoutSensors = 0;
    bool hasBegun = false;
    bool isEmpty = false; ///< the log, when it was last read
    bool tellsOld = false;
    bool sensorsToCome = false;
};

/// The process's.
SelFollower& logFollower();

} // namespace client::events
