#pragma once

#include "client/groups/BaseContainer.hpp"
#include "client/readings/SystemWrapper.hpp"

#include <string>

/// The enclosure: one row, of what the FRU inventory and the firmware's tables tell. What cannot be read stays unknown,
/// empty or zero.
class chassisInfo : public BaseContainer<ChassisInfo> {
public:
    chassisInfo() { m_nCount = 1; }

    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    /// Reads the intrusion sensor and the states at boot live.
    int getIntData(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;
    void goLive() override;

private:
    void findIntrusionSensor();
    int readStatus() const;

    CSystemWrapper m_system;
    std::string m_intrusionQuery; ///< empty without an intrusion sensor
    unsigned m_openState = 0;     ///< its state that says that the enclosure is open
};
