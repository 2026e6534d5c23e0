#pragma once

#include "common/Seams.hpp"

#include <string>

namespace client::reader {

/// The one thread of the practical mode that talks with the controller: it fills the groups behind the registration,
/// reads sensors pass by pass, follows the event log in between, and notices a changed repository.
class Reader {
public:
    /// One turn: whatever is due, then a nap. In the nap the thread can be cancelled, as between two queries. No
    /// exception of the SDK leaves it.
    void turn();

private:
    using Moment = Clock::SteadyPoint;
    using Duration = std::chrono::nanoseconds;

    void fillWhenDue();
    void fillFromRepository();
    void haveNoRecords();
    void followRepository();
    void pollWhenDue();
    void readWhenDue();
    bool readFiguresFor(Duration readings);
    void endPass();
    void nap();
    void tellTransport();
    bool goOn();

    /// A slow controller gives a few records in that time, one of usual speed all.
    static constexpr Duration shortestPiece = std::chrono::seconds(3);

    bool firmwareRead = false;
    bool repositoryRead = false;
    bool repositoryGoesOn = false; ///< a part of it has been read
    bool readsAnew = false;        ///< earlier rows stand meanwhile
    bool inventoryRead = false;
    bool machineRead = false;                     ///< what does not need the records
    bool eventsCame = false;                      ///< since the last pass
    Duration piece = shortestPiece;               ///< so long the repository is read at a time
    Duration fillPause = std::chrono::seconds(5); ///< grows while there is no repository
    std::string toldTransport;                    ///< the way to the controller
    Moment nextFill{};
    Moment nextRepositoryLook{};
    Moment nextPoll{};
    Moment nextPass{};
    Moment passBegan{};
    bool passGoesOn = false; ///< after an interruption
};

} // namespace client::reader
