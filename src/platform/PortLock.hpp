#pragma once

#include "common/Descriptor.hpp"

namespace Platform {

/// Keeps the other processes of the SDK off the controller's port while one exchange is under way: a file below /run
/// that only root can lock. Needed only where no kernel driver stands between the processes and the port, and does
/// nothing where one does. Waits for the others for ten seconds and then goes on, as the SDK's named locks do; the same
/// if there is no place for the file. Never waits beyond the exchange's deadline.
class PortLock {
public:
    PortLock();

private:
    common::Descriptor file; ///< closing it gives the lock back
};

} // namespace Platform
