#pragma once

#include "client/events/SelWrapper.hpp"
#include "client/traps/EventData.hpp"

#include <memory>

namespace client::events {

/// Hands a copy of the record to the classifier of its sensor type. A classifier that fails costs this record only.
void routeEvent(const EVENT_DATA_STRUCT& record);

} // namespace client::events

/// Takes what a classifier found out.
class CEventInterface {
public:
    virtual ~CEventInterface() = default;
    virtual int HandleEvent(CEventWrapper& wrapper, int eventGroup) = 0;
};

class SNMP_EventInterface : public CEventInterface {
public:
    /// Waits until the client's groups are filled, then has the clone of the group make a trap. 0, at once, for a group
    /// without a clone; else 1.
    int HandleEvent(CEventWrapper& wrapper, int eventGroup) override;
};

/// Owns the receiver of an event.
class CObjectSmartPointer {
public:
    explicit CObjectSmartPointer(std::unique_ptr<CEventInterface> receiver) : owned(std::move(receiver)) {}
    CEventInterface* operator->() const { return owned.get(); }

private:
    std::unique_ptr<CEventInterface> owned;
};
