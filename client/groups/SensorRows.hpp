#pragma once

#include "client/readings/SensorTypes.hpp"

#include <memory>

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
    CSensorWrapper& operator[](int row) { return all().m_pT[static_cast<std::size_t>(row)]; }

private:
    void keepPlaces();
    void nameSensors(const char* defaultName);

    std::unique_ptr<readings::SensorDatabase>& database;
    std::unique_ptr<readings::SensorDatabase> fresh; ///< until it goes live
    const readings::SensorDatabase* live = nullptr;
};

} // namespace client::groups
