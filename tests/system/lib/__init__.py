"""What the system tests share: ipmitool's view of the sensors, and a virtual server."""
