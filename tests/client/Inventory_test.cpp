#include "client/groups/clInventory.hpp"

#include "common/Policy.hpp"
#include "tests/client/ClientFixture.hpp"

namespace {

/// A firmware table of two processors and a memory array with one module in two places.
class Inventory : public ClientFixture {
protected:
    Inventory()
    {
        sdk.answer("/SMBIOS/ProcessorInfo/TotalNoOfProcessorPresent", "2");
        for (const std::string path : {"/SMBIOS/ProcessorInfo[1]", "/SMBIOS/ProcessorInfo[2]"})
            put(path, "ProcessorFamily", "Xeon");
        const std::string path = "/SMBIOS/MemoryArray[1]";
        sdk.answers["/SMBIOS/MemoryArray"][path] = branch();
        sdk.answer(path + "/TotalNoOfDevicePresent", "1");
        put(path, "Use", "System memory");
        for (const auto& [device, presence] :
             {std::pair{path + "/MemoryDevice[1]", "True"}, {path + "/MemoryDevice[2]", "False"}}) {
            sdk.answers[path + "/MemoryDevice"][device] = branch();
            sdk.answer(device + "/DevicePresent", presence);
            put(device, "Size", "16384");
        }
    }

    /// `path` has a leaf of that name.
    void put(const std::string& path, const std::string& name, const std::string& value)
    {
        sdk.answers[path][path + "/" + name] = ScriptedBackend::leaf({value});
    }
    static _XNode branch() { return {.mType = NODE_NONLEAF, .mXNodeList = {}, .mOptionMap = {}}; }
};

TEST_F(Inventory, AnEventFindsTheProcessorThatItsSensorAloneWatches)
{
    const auto record = [](const char* owner, const char* lun, const char* sensor) {
        return ScriptedBackend::leaf(
            {std::string("1 0 51 2 20 ") + owner + " " + lun + " " + sensor + " 3 1 67 40 7 6F"});
    };
    ResultMap& records = sdk.answers["/BMC/SDR/RECORD_TYPE[2]"];
    records = {{"/BMC/SDR[1]", record("22", "31", "9A")}};
    processorDevice group;
    group.init();
    EXPECT_EQ(group.getIndex(0x019A2201), 0) << "it watches both";
    records["/BMC/SDR[2]"] = record("20", "0", "9A");
    records["/BMC/SDR[3]"] = record("20", "0", "9B");
    cache_map.clear();
    EXPECT_EQ(group.getIndex(0x019A2201), 1);
    EXPECT_EQ(group.getIndex(0x009A2000), 2) << "the same number on another controller";
    EXPECT_EQ(group.getIndex(0x009B2000), 0) << "there is no third processor";
}

TEST_F(Inventory, AnEventFindsTheOneModuleThatIsCalledAsItsSensor)
{
    const std::string path = "/SMBIOS/MemoryArray[1]/MemoryDevice[";
    for (const auto& [number, locator, bank] :
         {std::tuple{"1]", "DIMM_A1", "Bank 0"}, {"2]", "DIMM_B1", "Bank 0"}, {"3]", "DIMM_C1", "Node 1"}}) {
        const std::string device = path + number;
        sdk.answers["/SMBIOS/MemoryArray[1]/MemoryDevice"][device] = branch();
        sdk.answer(device + "/DevicePresent", "True");
        put(device, "DeviceLocator", locator);
        put(device, "BankLocator", bank);
    }
    memoryDevice group;
    group.init();
    ASSERT_EQ(group.getCount(), 3);
    EXPECT_EQ(group.findModule("Dimm B1"), 2);
    EXPECT_EQ(group.findModule("node1"), 3);
    EXPECT_EQ(group.findModule("BANK 0"), 0) << "two are called so";
    EXPECT_EQ(group.findModule("DIMM_B"), 0);
    EXPECT_EQ(group.findModule("--"), 0);
}

TEST_F(Inventory, NamesSayWhatHasNoColumnAndNoTwoAreAlike)
{
    const std::string socket = "/SMBIOS/ProcessorInfo[", array = "/SMBIOS/MemoryArray[1]/MemoryDevice";
    for (const std::string& path : {socket + "1]", socket + "2]"}) {
        put(path, "SocketDesignation", "CPU");
        put(path, "Upgrade", "Socket SP5");
        put(path, "CoreCount", "96");
        put(path, "ThreadCount", "0");
    }
    for (const auto& [number, bank, type] :
         {std::tuple{"[1]", "P0", "DDR5"}, {"[2]", "P1", "DDR5"}, {"[3]", "P1", "DDR5"}, {"[4]", "P0", "0X7f"}}) {
        const std::string device = array + number;
        sdk.answers[array][device] = branch();
        sdk.answer(device + "/DevicePresent", "True");
        put(device, "DeviceLocator", "DIMM 0");
        put(device, "BankLocator", bank);
        put(device, "MemoryType", type);
    }
    const auto names = [this] {
        cache_map.clear();
        processorDevice processors;
        memoryDevice modules;
        processors.init();
        modules.init();
        std::string list = strInfo(processors, PROC_DESCRIPTION);
        for (int row = 0; row < modules.getCount(); ++row)
            list += "; " + strInfo(modules, MEMORYDEVICE_DESCRIPTION, row);
        return list;
    };
    EXPECT_EQ(names(), "CPU; DIMM 0; DIMM 0; DIMM 0; DIMM 0");
    const common::ScopedPolicy telling(common::Policy{.describesInventory = true, .tellsRowsApart = true});
    EXPECT_EQ(names(), "CPU (Socket SP5, 96 cores, number 1); DIMM 0 (DDR5, P0); DIMM 0 (DDR5, P1, number 2); "
                       "DIMM 0 (DDR5, P1, number 3); DIMM 0");
}

} // namespace
