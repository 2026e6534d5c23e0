#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The host as its own operating system sees it. Fields are texts; what could not be read stays blank, lists stay
/// empty, and nothing is thrown. All of it is for other callers of the SDK: the agent answers for the hardware only.

struct _OSINFO {
    std::string HostName; ///< "(none)" for a host without a name
    std::string NodeName;
    std::string Release;
    std::string Version;
    std::string Machine;
    std::string SystemName;
};

/// Sizes in KiB, in decimal.
struct _MEMINFO {
    std::string TotalPhysical;
    std::string FreePhysical;
    std::string TotalSwap;
    std::string FreeSwap;
    std::string TotalVirtual;
    std::string FreeVirtual;
};

struct _NICINFO {
    std::string Name;
    std::string MacAddress;
    std::string State; ///< "UP" or "DOWN"
    std::string DefaultGateway;
    std::string BootProtocol; ///< as configured: "static", "dhcp", ...
    std::string FixedAddress; ///< "YES" when the protocol is "static", "NO" for any other
};

/// A mounted file system.
struct _DRIVEINFO {
    std::string Name;
    std::string MountPoint;
    std::string Size;        ///< KiB
    std::string Free;        ///< KiB that users can have
    std::string UsedPercent; ///< what is not free of the size
};

struct _PHYSICALDRIVEINFO {
    std::string Name;
    std::string Size; ///< in `SizeUnit`
    std::string SizeUnit;
    std::string Model;
    std::string SerialNumber;
    std::string Revision;
};

enum _PARTITIONTYPE {
    PARTITION_ANY = 3,        ///< the system reads its drives whatever their scheme
    PARTITION_UNREADABLE = 4, ///< error 1273 to who asks for the firmware's settings
};

void GetOSInfo(_OSINFO& info);

/// The distribution's name and release, blank on distributions without the release files that are known.
void GetOSDisplayString(std::string& display);

void GetMemInfo(_MEMINFO& info);

/// One entry for each network interface but the loopback, in the kernel's order.
void GetNICInfo(std::vector<_NICINFO>& interfaces);

/// Fills state, gateway and boot protocol. The name goes to no shell and to no path that it could lead astray.
void GetDriverInfo(const char* interface, std::vector<_NICINFO>::iterator nic);

/// Writes the hardware address, as in "00:1b:21:3c:4d:5e", to `out`, which has room for 18 bytes; an empty text if
/// there is none.
void GetMacAddress(const char* interface, char* out);

void GetDriveData(std::vector<_DRIVEINFO>& drives);

/// All drives of the host that can be partitioned.
void GetPhysicalDriveData(std::vector<_PHYSICALDRIVEINFO>& drives);

/// Fills what the drive says of itself; `device` is a path such as "/dev/sda".
void GetPhysicalDriveInfo(const char* device, _PHYSICALDRIVEINFO& info);

/// The same through an open descriptor, with SCSI inquiries (SPC-4, 6.6 and 7.8.18). False, with nothing filled, if the
/// drive does not answer them.
bool GetPhysicalDriveInfo_SGIO(int fd, _PHYSICALDRIVEINFO& info);

/// Always PARTITION_ANY.
void GetPartitionType(_PARTITIONTYPE& type);

/// The words between any characters of `separators`; runs of separators yield no empty words.
void split(std::string_view text, std::string_view separators, std::vector<std::string>& words);

/// Whether the file can be opened for reading; false for a null path.
bool DoesFileExist(const char* path);

/// Copies the variable's value, cut to what fits into `size` bytes with the NUL; false if it is not set.
bool GetEnvVariable(const char* name, char* out, int size);
