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
            sdk.answers[path][path + "/ProcessorFamily"] = ScriptedBackend::leaf({"Xeon"});
        const std::string path = "/SMBIOS/MemoryArray[1]";
        sdk.answers["/SMBIOS/MemoryArray"][path] = branch();
        sdk.answer(path + "/TotalNoOfDevicePresent", "1");
        sdk.answers[path][path + "/Use"] = ScriptedBackend::leaf({"System memory"});
        for (const auto& [device, presence] :
             {std::pair{path + "/MemoryDevice[1]", "True"}, {path + "/MemoryDevice[2]", "False"}}) {
            sdk.answers[path + "/MemoryDevice"][device] = branch();
            sdk.answer(device + "/DevicePresent", presence);
            sdk.answers[device][device + "/Size"] = ScriptedBackend::leaf({"16384"});
        }
    }

    static _XNode branch() { return {.mType = NODE_NONLEAF, .mXNodeList = {}, .mOptionMap = {}}; }
};

TEST_F(Inventory, ProcessorsTakeTheNumbersOfTheirSensorsInOrder)
{
    const auto record = [](const char* sensor, const char* type) {
        return ScriptedBackend::leaf({std::string("1 0 51 2 20 20 0 ") + sensor + " 3 1 67 40 " + type + " 6F"});
    };
    sdk.answers["/BMC/SDR/RECORD_TYPE[2]"] = {{"/BMC/SDR/RECORD_TYPE[2]", branch()},
                                              {"/BMC/SDR[1]", record("34", "8")},
                                              {"/BMC/SDR[2]", record("9A", "7")},
                                              {"/BMC/SDR[3]", ScriptedBackend::leaf({"3 0 51"})}};
    for (const auto& [records, second] : {std::pair{1, 0x9A}, {2, 0x35}}) {
        if (records == 2)
            sdk.answers["/BMC/SDR/RECORD_TYPE[2]"]["/BMC/SDR[4]"] = record("35", "7");
        cache_map.clear();
        processorDevice group;
        group.init();
        EXPECT_EQ(intInfo(group, PROC_DEVICEID), 0x9A);
        EXPECT_EQ(intInfo(group, PROC_DEVICEID, 1), second);
    }
}

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
        sdk.answers[device][device + "/DeviceLocator"] = ScriptedBackend::leaf({locator});
        sdk.answers[device][device + "/BankLocator"] = ScriptedBackend::leaf({bank});
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
        sdk.answers[path][path + "/SocketDesignation"] = ScriptedBackend::leaf({"CPU"});
        sdk.answers[path][path + "/Upgrade"] = ScriptedBackend::leaf({"Socket SP5"});
        sdk.answers[path][path + "/CoreCount"] = ScriptedBackend::leaf({"96"});
        sdk.answers[path][path + "/ThreadCount"] = ScriptedBackend::leaf({"0"});
    }
    for (const auto& [number, bank, type] :
         {std::tuple{"[1]", "P0", "DDR5"}, {"[2]", "P1", "DDR5"}, {"[3]", "P1", "DDR5"}, {"[4]", "P0", "0X7f"}}) {
        const std::string device = array + number;
        sdk.answers[array][device] = branch();
        sdk.answer(device + "/DevicePresent", "True");
        sdk.answers[device][device + "/DeviceLocator"] = ScriptedBackend::leaf({"DIMM 0"});
        sdk.answers[device][device + "/BankLocator"] = ScriptedBackend::leaf({bank});
        sdk.answers[device][device + "/MemoryType"] = ScriptedBackend::leaf({type});
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

TEST_F(Inventory, MissingRowsAndForeignAttributesHaveTheirResults)
{
    const auto expectResults = [](auto& group, _SMAttribute number, _SMAttribute text, int noRow) {
        group.init();
        for (const int row : {-1, group.getCount()}) {
            EXPECT_EQ(intInfo(group, number, row), -noRow);
            EXPECT_EQ(strInfo(group, text, row), "! " + std::to_string(noRow));
        }
        EXPECT_EQ(intInfo(group, text), -9);
        EXPECT_EQ(strInfo(group, number), "! 9");
        EXPECT_EQ(intData(group, number), -4);
    };
    processorDevice processors;
    memoryArray arrays;
    memoryDevice devices;
    expectResults(processors, PROC_STATUS, PROC_DESCRIPTION, 22);
    expectResults(arrays, MEMORYARRAY_STATUS, MEMORYARRAY_TAG, 25);
    expectResults(devices, MEMORYDEVICE_SIZE, MEMORYDEVICE_TAG, 25);
}

} // namespace
