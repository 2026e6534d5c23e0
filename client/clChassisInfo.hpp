#pragma once

#include "client/BaseContainer.hpp"

/// Container types of a chassis, as far as they have a use (SMBIOS, system enclosure).
enum CONTAINER_TYPE : int { CONTAINER_TYPE_OTHER = 1, CONTAINER_TYPE_UNKNOWN = 2 };

/// States of the security features of a chassis.
enum SECURITY_STATUS : int { STATUS_OTHER = 1, STATUS_UNKNOWN = 2 };

/// The enclosure: one row. It holds what is known without asking anybody: unknown kinds and empty texts.
class chassisInfo : public BaseContainer<ChassisInfo> {
public:
    chassisInfo() { m_nCount = 1; }

    int init() override;
    int getIntInfo(_SMAttribute attribute, int row, long& out) override;
    int getStrInfo(_SMAttribute attribute, int row, char*& out) override;
};
