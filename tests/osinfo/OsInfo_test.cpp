#include "osinfo/OsInfo.hpp"

#include "common/Util.hpp"
#include "osinfo/OsCalls.hpp"
#include "tests/support/FakePrograms.hpp"
#include "tests/support/TempRoot.hpp"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <net/if.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace {

/// A host with one interface that is up, and a SCSI drive behind every device.
struct FakeCalls : osinfo::OsCalls {
    int hostName(char* out, std::size_t size) override
    {
        std::strncpy(out, name.c_str(), size);
        return 0;
    }
    int kernelNames(utsname& names) override
    {
        std::strcpy(names.nodename, "node");
        std::strcpy(names.machine, "x86_64");
        return kernelResult;
    }
    common::Descriptor openSocket() override { return handOut(); }
    common::Descriptor openDevice(const char* path) override
    {
        opened.push_back(path);
        return handOut();
    }
    int control(int, unsigned long request, void* argument) override
    {
        if (request == SG_IO)
            return inquire(*static_cast<sg_io_hdr*>(argument));
        auto& answer = *static_cast<ifreq*>(argument);
        if (std::strcmp(answer.ifr_name, "eth1") != 0)
            return -1;
        if (request == SIOCGIFHWADDR)
            std::memcpy(answer.ifr_hwaddr.sa_data, "\x00\x1b\xa1\xff\x4d\x05", 6);
        else
            answer.ifr_flags = interfaceFlags;
        return 0;
    }
    common::Descriptor handOut() { return common::Descriptor(handedOut.emplace_back(dup(STDERR_FILENO))); }
    /// Whether all are closed again, of which there were `count`.
    bool allClosed(std::size_t count) const
    {
        return handedOut.size() == count &&
               std::ranges::all_of(handedOut, [](int fd) { return fcntl(fd, F_GETFD) == -1; });
    }

    int inquire(sg_io_hdr& header) const
    {
        const std::string& answer = header.cmdp[1] & 1 ? serialPage : standardPage;
        std::memcpy(header.dxferp, answer.data(), answer.size());
        header.resid = static_cast<int>(header.dxfer_len - answer.size());
        std::tie(header.status, header.driver_status, header.host_status, std::ignore) = outcome;
        return std::get<int>(outcome);
    }

    std::string name = "host";
    int kernelResult = 0;
    short interfaceFlags = IFF_UP;
    std::vector<std::string> opened;
    std::vector<int> handedOut;
    std::string standardPage = std::string("\0\0\6\2\x1f\0\0\0", 8) + "Lakeside" + "Drive 2000      " + "1.0 ";
    std::string serialPage = std::string("\0\x80\0\x08", 4) + " SN-4711";
    std::tuple<unsigned char, unsigned short, unsigned short, int> outcome; ///< of the drive, driver, host, call
};

/// Fields as one line.
std::string line(const std::vector<std::string>& fields)
{
    return Util::join(fields, "|");
}

class OsInfo : public testing::Test {
protected:
    TempRoot root;
    FakePrograms programs;
    ScopedSeam<CommandRunner> usePrograms{programs};
    FakeCalls calls;
    ScopedSeam<osinfo::OsCalls> useCalls{calls};
};

TEST_F(OsInfo, HostWithoutANameIsNoneAndTheSystemsIsTheFirstLineOfAKnownReleaseFile)
{
    _OSINFO info;
    GetOSInfo(info);
    EXPECT_EQ(line({info.HostName, info.NodeName, info.Machine}), "host|node|x86_64");
    calls.name = "";
    calls.kernelResult = -1;
    GetOSInfo(info);
    EXPECT_EQ(line({info.HostName, info.NodeName}), "(none)|");

    std::string display = "old";
    GetOSDisplayString(display);
    EXPECT_EQ(display, "");
    root.write("/etc/SuSE-release", "SUSE Server 11\nVERSION = 11\n");
    root.write("/etc/redhat-release", "Another release 9\nRed Hat\n");
    GetOSDisplayString(display);
    EXPECT_EQ(display, "SUSE Server 11");
    root.write("/etc/redhat-release", "Red Hat 9" + std::string(5000, 'x'));
    GetOSDisplayString(display);
    EXPECT_EQ(display, "Red Hat 9" + std::string(246, 'x'));
}

TEST_F(OsInfo, MemoryIsTakenByLabelAndOddLinesLeaveBlanks)
{
    root.write("/proc/meminfo", "MemTotal:       24684088 kB\nMemFree:\nSwapTotal: many kB\n" + std::string(5000, ':') +
                                    "\nHugeMemTotal: 1 kB\nSwapFree: 77 kB\nVmallocTotal:   34359738367 kB\n"
                                    "VmallocUsed:       15100 kB");
    _MEMINFO info;
    GetMemInfo(info);
    EXPECT_EQ(line({info.TotalPhysical, info.FreePhysical, info.TotalSwap, info.FreeSwap, info.TotalVirtual,
                    info.FreeVirtual}),
              "24684088|||77|34359738367|34359723267");
    root.write("/proc/meminfo", "VmallocTotal: 10 kB\nVmallocUsed: 11 kB\n");
    GetMemInfo(info);
    EXPECT_EQ(info.FreeVirtual, "0");
}

TEST_F(OsInfo, InterfacesHaveAddressStateGatewayAndBootProtocol)
{
    root.write("/proc/net/dev", "Inter-|   Receive |  Transmit\n face |bytes    packets\n    lo: 1 2\n  sit0: 0 0\n"
                                "  eth1:98 7\n eth10: 1 1\n  :\nbr-x\n");
    root.write("/etc/sysconfig/networking/devices/ifcfg-eth1", "#BOOTPROTO=none\nBOOTPROTO=\"static\" \n");
    root.write("/etc/sysconfig/networking/devices/ifcfg-eth10", "BOOTPROTO=dhcp\n");
    programs.prints["route"] = "Kernel IP routing table\nDestination Gateway Genmask Flags Metric Ref Use Iface\n"
                               "0.0.0.0 10.0.10.1 0.0.0.0 UG 0 0 0 eth10\n10.9.0.0 0.0.0.0 255.0.0.0 U 0 0 0 eth1\n"
                               "0.0.0.0 10.0.1.1 0.0.0.0 UG 0 0 0 eth1\nUG eth1\n";
    std::vector<_NICINFO> nics(3);
    GetNICInfo(nics);
    ASSERT_EQ(nics.size(), 2U);
    const auto textOf = [](const _NICINFO& nic) {
        return line({nic.Name, nic.MacAddress, nic.State, nic.DefaultGateway, nic.FixedAddress, nic.BootProtocol});
    };
    EXPECT_EQ(textOf(nics[0]), "eth1|00:1b:a1:ff:4d:05|UP|10.0.1.1|YES|static");
    EXPECT_EQ(textOf(nics[1]), "eth10|||10.0.10.1|NO|dhcp");
    EXPECT_TRUE(calls.allClosed(4)) << "sockets";
    calls.interfaceFlags = 0;
    GetDriverInfo("eth1", nics.begin());
    EXPECT_EQ(nics[0].State, "DOWN");
}

TEST_F(OsInfo, HostileInterfaceNamesReachNoShellAndNoOtherFile)
{
    const std::string hostile = "; touch /tmp/x", outside = "../../../secret";
    root.write("/etc/secret", "BOOTPROTO=static\n");
    root.write("/etc/sysconfig/networking/devices/ifcfg-", "BOOTPROTO=static\n");
    root.write("/proc/net/dev", hostile + ": 1 2\n" + outside + ": 3\n" + std::string(4000, 'e') + ":\n");
    std::vector<_NICINFO> nics;
    GetNICInfo(nics);
    ASSERT_EQ(nics.size(), 2U) << "a line that is cut has no colon";
    EXPECT_EQ(nics[0].Name, hostile);
    EXPECT_EQ(nics[1].BootProtocol, "");
    ASSERT_EQ(programs.asked.size(), 2U);
    for (const auto& argv : programs.asked)
        EXPECT_EQ(argv, (std::vector<std::string>{"env", "LC_ALL=C", "route", "-n"}));
}

TEST_F(OsInfo, FileSystemsAreReadAroundBlanksAndOddLines)
{
    programs.status = 1; // as of a df that could not reach one of them
    programs.prints["df"] = "df: /mnt/gone: Transport endpoint is not connected\n"
                            "Filesystem     1K-blocks     Used Available Use% Mounted on\n"
                            "/dev/sda1         1000      400       250  75% /\n"
                            "//server/my share 200 50 150 25% /mnt/my share\n"
                            "none - - - - /proc\n/dev/full 99999999999999999999 0 0 0% /far\n"
                            "/dev/mapper/short 12\n\n7 8 9 1% /nameless\nzero 0 0 0 0%\n" +
                            std::string(5000, '9') + "\n";
    std::vector<_DRIVEINFO> drives;
    GetDriveData(drives);
    ASSERT_EQ(drives.size(), 4U);
    const auto textOf = [](const _DRIVEINFO& drive) {
        return line({drive.Name, drive.MountPoint, drive.Size, drive.Free, drive.UsedPercent});
    };
    EXPECT_EQ(textOf(drives[0]), "/dev/sda1|/|1000|250|75.000000");
    EXPECT_EQ(textOf(drives[1]), "//server/my share|/mnt/my share|200|150|25.000000");
    EXPECT_EQ(textOf(drives[2]), "none|/proc|||");
    EXPECT_EQ(textOf(drives[3]), "zero||0|0|");
}

TEST_F(OsInfo, AbsentProgramsLeaveEmptyListsAndPlantedFilesAlone)
{
    const auto target = root.write("/etc/passwd", "/dev/sda1 1000 400 250 75% /\nDisk /dev/sda: 1 GB, 1 bytes\n");
    for (const char* planted : {"/tmp/disk.log", "/tmp/fdisk.log"}) {
        std::filesystem::create_directories(root.resolve("/tmp"));
        std::filesystem::create_symlink(target, root.resolve(planted));
    }
    std::vector<_DRIVEINFO> drives(1);
    std::vector<_PHYSICALDRIVEINFO> physical(1);
    _PARTITIONTYPE type{};
    GetDriveData(drives);
    GetPhysicalDriveData(physical);
    GetPartitionType(type);
    EXPECT_TRUE(drives.empty());
    EXPECT_TRUE(physical.empty());
    EXPECT_EQ(type, 3);
    EXPECT_EQ(std::filesystem::file_size(target), 58U) << "as it was written";
}

TEST_F(OsInfo, PhysicalDrivesAreThoseThatThePartitionListNames)
{
    programs.prints["fdisk"] = "Disk /dev/sda: 931.51 GiB, 1000204886016 bytes, 1953525168 sectors\n"
                               "Disk model: of 12 bytes: big\nSector size: 512 bytes / 512 bytes\nDisklabel type: gpt\n"
                               "Disk identifier: 0x0\nDisk /dev/sdb: 1.8 TiB, 5 bytes\nDisk /dev/sdc: 512 MB, 5 bytes\n"
                               "Disk /dev/sdd: 7 furlongs, 5 bytes\nDisk /dev/sde: 5 bytes\nDisk /dev/sdf\n"
                               "Disk /dev/sdg: 1e300 GB, 5 bytes\nDisk /dev/sdh: 32.0x GB, 5 bytes\n";
    std::vector<_PHYSICALDRIVEINFO> drives;
    GetPhysicalDriveData(drives);
    ASSERT_EQ(drives.size(), 7U);
    const char* const sizes[] = {"/dev/sda|931.5|GiB", "/dev/sdb|1.8|TiB", "/dev/sdc|0.500000|GB", "/dev/sdd||",
                                 "/dev/sde||"};
    for (std::size_t place = 0; place < std::size(sizes); ++place)
        EXPECT_EQ(line({drives[place].Name, drives[place].Size, drives[place].SizeUnit}), sizes[place]);
    EXPECT_EQ(drives[5].Size.size(), 303U) << "1e300 in full";
    EXPECT_EQ(drives[6].Size, "");
    EXPECT_EQ(line({drives[1].Model, drives[1].SerialNumber, drives[1].Revision}), "Lakeside Drive 2000|SN-4711|1.0");
    EXPECT_EQ(calls.opened.front(), root.resolve("/dev/sda"));
    EXPECT_TRUE(calls.allClosed(7));
}

TEST_F(OsInfo, InquiryMustHaveSucceededAndIsReadNoFurtherThanItReaches)
{
    using Outcome = decltype(calls.outcome);
    for (const auto& [outcome, works] : {std::pair{Outcome{0, 0, 0, 0}, true},
                                         {Outcome{0, 8, 0, 0}, true},
                                         {Outcome{2, 8, 0, 0}, false},
                                         {Outcome{0, 6, 0, 0}, false},
                                         {Outcome{0, 8, 3, 0}, false},
                                         {Outcome{0, 0, 0, -1}, false}}) {
        calls.outcome = outcome;
        _PHYSICALDRIVEINFO info;
        EXPECT_EQ(GetPhysicalDriveInfo_SGIO(3, info), works);
        EXPECT_EQ(info.Model, works ? "Lakeside Drive 2000" : "");
    }
    calls = FakeCalls();
    calls.standardPage.resize(33);
    calls.serialPage = std::string("\0\x80\0\xff", 4) + std::string(92, 'S');
    _PHYSICALDRIVEINFO info;
    EXPECT_TRUE(GetPhysicalDriveInfo_SGIO(3, info));
    EXPECT_EQ(info.Model, "Lakeside Drive 2000");
    EXPECT_EQ(info.Revision + info.SerialNumber, "");
}

TEST_F(OsInfo, HelpersAreBoundedAndTakeNull)
{
    EXPECT_FALSE(DoesFileExist(nullptr));
    EXPECT_FALSE(DoesFileExist("/etc/none"));
    EXPECT_TRUE(DoesFileExist(root.write("/etc/some", "").c_str() + root.resolve("").size()));
    setenv("HWAGENT_OSINFO_TEST", "abcdef", 1);
    char out[8] = "#######";
    EXPECT_TRUE(GetEnvVariable("HWAGENT_OSINFO_TEST", out, 4));
    EXPECT_EQ(std::string(out, 5), std::string("abc\0#", 5));
    EXPECT_FALSE(GetEnvVariable("HWAGENT_OSINFO_NONE", out, 4));
    EXPECT_TRUE(GetEnvVariable("HWAGENT_OSINFO_TEST", out, 0));
}

} // namespace
