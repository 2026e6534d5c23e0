#pragma once

#include "client/readings/SensorAcquisition.hpp"
#include "client/status/clDiscreteWords.hpp"

#include <memory>
#include <mutex>
#include <optional>

namespace client::groups {

/// The sensors behind one group object's rows. They are read aside and then put into the group's one database, from
/// which the rows are answered.
class SensorRows {
public:
    explicit SensorRows(std::unique_ptr<readings::SensorDatabase>& shown) : database(shown) {}
    /// Empties the database, unless a later object of the group has taken it.
    ~SensorRows();
    SensorRows(const SensorRows&) = delete;
    SensorRows& operator=(const SensorRows&) = delete;

    /// An empty set to read sensors into.
    readings::SensorDatabase& begin();
    /// The new set is whole, and its equal names are told apart; `defaultName` is that of a sensor without one. The set
    /// goes live at once, or, where rows change while the agent serves, gets its order and waits for goLive.
    void settle(const char* defaultName);
    void goLive();

    readings::SensorDatabase& all() { return fresh ? *fresh : *database; }
    /// Reads the bounds of the row's sensor, if they are unread or outdated, and changes it under `guard`; outdated
    /// ones stand until there are others. False if the controller's interface failed.
    bool readUnread(int row, long multiplier, std::mutex& guard);
    CSensorWrapper& operator[](int row) { return all().m_pT[static_cast<std::size_t>(row)]; }

private:
    void keepPlaces();
    void nameSensors(const char* defaultName);

    std::unique_ptr<readings::SensorDatabase>& database;
    std::unique_ptr<readings::SensorDatabase> fresh; ///< until it goes live
    const readings::SensorDatabase* live = nullptr;
};

/// What a sensor says by its reading or its states, where it is judged so: `words` are those of its group.
std::optional<status::Judgement> judge(const CSensorWrapper& sensor, const status::StatusWords& words);

} // namespace client::groups
