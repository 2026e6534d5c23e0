// Prints what the host's own view says of this machine, for the comparison with /proc, ip and df.

#include "osinfo/OsInfo.hpp"

#include <cstdio>

int main()
{
    _MEMINFO memory;
    GetMemInfo(memory);
    std::printf("memory\t%s\t%s\n", memory.TotalPhysical.c_str(), memory.TotalSwap.c_str());
    std::vector<_NICINFO> interfaces;
    GetNICInfo(interfaces);
    for (const _NICINFO& nic : interfaces)
        std::printf("interface\t%s\t%s\t%s\n", nic.Name.c_str(), nic.MacAddress.c_str(), nic.State.c_str());
    std::vector<_DRIVEINFO> drives;
    GetDriveData(drives);
    for (const _DRIVEINFO& drive : drives)
        std::printf("drive\t%s\t%s\n", drive.MountPoint.c_str(), drive.Size.c_str());
}
