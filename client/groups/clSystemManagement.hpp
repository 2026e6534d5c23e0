#pragma once

#include "client/groups/BaseContainer.hpp"
#include "common/ConfigFile.hpp"

#include <atomic>

namespace client::groups {

/// What is asked of another group.
using GroupCall = int (*)(_SMEntity group);

} // namespace client::groups

/// The agent itself: its configuration, and the one health status of the whole system. A single row.
class systemManagement : public BaseContainer<SystemInfo> {
public:
    systemManagement() { m_nCount = 1; }

    /// Reads the configuration file, and sends stderr to /dev/null unless the file enables debugging. 10 if there is
    /// no such file: then stderr stays, and every setting has its default.
    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;

    /// Rolls the statuses of the groups up: the worst of all rows, 2 at least.
    void setInitialStatus(client::groups::GroupCall statusOfGroup);
    /// Has every group hand its rows in trouble to the event handler.
    void seedAllHealthLists(client::groups::GroupCall seedGroup);

    int setHealthStatus(int status);
    int getHealthStatus() const { return m_nHealthStatus; }
    int isSetEnabled() const { return m_nSetsEnabled; }
    int isTrapEnabled() const { return m_nTrapsEnabled; }

    /// A lower-case copy in a block of 512 bytes for the caller to free; null if memory runs out.
    static char* toLower(const char* text);

    /// Rows of the tables of settings and attributes need to name these.
    std::atomic<int> m_nHealthStatus{ENUM_STATUS_HEALTHY}; ///< events change it, SNMP requests read it
    client::groups::RowText m_stPlatformDesc = {};
    int m_nPlatformId = 0;
    int m_nTrapsEnabled = 0;
    int m_nSetsEnabled = 0;
    int m_nDebugEnabled = 0;
    client::groups::RowText m_stManufacturer = {};
    client::groups::RowText m_stProductName = {};
    client::groups::RowText m_stProductVersion = {};
    client::groups::RowText m_stProductBuildNum = {};
    client::groups::RowText m_stProductDesc = {};
    client::groups::RowText m_stLocale = {}; ///< of what traps say; empty is English

private:
    void takeSetting(const common::ConfigEntry& entry);
};
