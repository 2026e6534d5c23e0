#pragma once

namespace client::status {

/// What a sensor says now: the number of its device as rows and events have it, and its HEALTH_STATUS.
struct DeviceStatus {
    int deviceId;
    int status;
    const char* side = ""; ///< of its bounds, "Upper " or "Lower ", on which a reading is
};

/// Where a group tells which of its rows are in trouble.
struct TroubleLists {
    virtual ~TroubleLists() = default;
    /// Notes a device by the number of its status; see eventHandler.
    virtual int insertElementByDeviceId(int deviceId, int status) = 0;
};

} // namespace client::status
