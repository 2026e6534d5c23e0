#include "client/clInventory.hpp"

#include "tests/client/ClientFixture.hpp"

#include <cstdlib>

namespace {

using Leaves = std::map<std::string, std::string>;

/// A firmware table of two processors and two memory arrays, the first of which is empty.
class Inventory : public ClientFixture {
protected:
    Inventory()
    {
        sdk.answer("/SMBIOS/ProcessorInfo/TotalNoOfProcessorPresent", "2");
        answerAll("/SMBIOS/ProcessorInfo[1]", {{"ProcessorManufacturer", "Lakeside"},
                                               {"ProcessorId", "0Xab"},
                                               {"ProcessorVersion", "K8"},
                                               {"PartNumber", "LK8"},
                                               {"SocketDesignation", "Socket 0"},
                                               {"VoltageCapability", "1200 mV"},
                                               {"ClockFrequency", "100"},
                                               {"MaxSpeed", "3600"},
                                               {"CurrentSpeed", "2100"},
                                               {"Upgrade", "Socket LGA771"},
                                               {"ProcessorType", "Central processor"},
                                               {"ProcessorFamily", "Xeon"}});
        answerAll("/SMBIOS/ProcessorInfo[2]", {{"SocketDesignation", "Socket 1"},
                                               {"VoltageCapability", "Unknown"},
                                               {"Upgrade", "Socket LGA2011"},
                                               {"ProcessorType", "unknown"},
                                               {"ProcessorFamily", "Zen"},
                                               {"ProcessorFamily_Raw", "107"}});
        sdk.answers["/SMBIOS/MemoryArray"] = {{"/SMBIOS/MemoryArray[1]", branch()},
                                              {"/SMBIOS/MemoryArray[2]", branch()}};
        addArray(1, {"False", "False"});
        addArray(2, {"True", "False", "True"});
    }

    static _XNode branch() { return {.mType = NODE_NONLEAF, .mXNodeList = {}, .mOptionMap = {}}; }

    void answerAll(const std::string& prefix, const Leaves& values)
    {
        for (const auto& [suffix, value] : values)
            sdk.answers[prefix][prefix + "/" + suffix] = ScriptedBackend::leaf({value});
    }

    void addArray(int number, const std::vector<std::string>& presences)
    {
        const std::string path = "/SMBIOS/MemoryArray[" + std::to_string(number) + "]";
        sdk.answer(path + "/TotalNoOfDevicePresent", "2");
        answerAll(path, {{"Use", "System memory"},
                         {"MemoryErrorCorrection", "Multi-bit ECC"},
                         {"Location", "System board or motherboard"},
                         {"MemoryErrorInfoHandle", "65534"},
                         {"NumMemoryDevices", std::to_string(presences.size())},
                         {"MaxCapacity", "4294967296"},
                         {"TotalNoOfDevicePresent", "2"}});
        int place = 0;
        for (const std::string& presence : presences) {
            const std::string device = path + "/MemoryDevice[" + std::to_string(++place) + "]";
            sdk.answers[path + "/MemoryDevice"][device] = branch();
            sdk.answer(device + "/DevicePresent", presence);
            answerAll(device, {{"DeviceLocator", "Slot " + std::to_string(place)},
                               {"BankLocator", "Bank"},
                               {"Size", "16384"},
                               {"TotalWidth", "72"},
                               {"DataWidth", "64"},
                               {"Speed", "1600"},
                               {"FormFactor", "RowOfChips"},
                               {"MemoryType", place == 1 ? "DDR4" : "DDR5"},
                               {"TypeDetail/Fast-paged", "Supported"},
                               {"TypeDetail/Synchronous", "Not Supported"},
                               {"TypeDetail/Non-volatile", "Supported"},
                               {place == 1 ? "TypeDetails/EDO" : "TypeDetail/EDO", "Supported"}});
        }
    }

    static long number(BaseAccessor& group, _SMAttribute attribute, int row)
    {
        long out = -1;
        EXPECT_EQ(group.getIntInfo(attribute, row, out), 0) << attribute;
        return out;
    }
    static std::string text(BaseAccessor& group, _SMAttribute attribute, int row)
    {
        char* out = nullptr;
        EXPECT_EQ(group.getStrInfo(attribute, row, out), 0) << attribute;
        const std::string copy = out ? out : "none";
        std::free(out);
        return copy;
    }
};

TEST_F(Inventory, ProcessorsShowTheFirmwaresWordsAsNumbersAndAreHealthy)
{
    processorDevice group;
    ASSERT_EQ(group.init(), 0);
    ASSERT_EQ(group.getCount(), 2);
    for (const auto& [attribute, value] : {std::pair{PROC_DESCRIPTION, "Socket 0"},
                                           {PROC_SOCKETDESIGNATION, "Socket 0"},
                                           {PROC_STATUSSTRING, "Healthy"},
                                           {PROC_PARTNUMBER, "LK8"},
                                           {PROC_MANUFACTURERNAME, "Lakeside"},
                                           {PROC_VERSIONNAME, "K8"},
                                           {PROC_PROCESSORID, "0Xab"}})
        EXPECT_EQ(text(group, attribute, 0), value) << attribute;
    for (const auto& [attribute, first, second] : {std::tuple{PROC_STATUS, 2, 2},
                                                   {PROC_TYPE, 3, 0},
                                                   {PROC_FAMILY, 179, 107},
                                                   {PROC_MAXSPEED, 3600, 0},
                                                   {PROC_CURRENTSPEED, 2100, 0},
                                                   {PROC_EXTCLOCKSPEED, 100, 0},
                                                   {PROC_VOLTAGE, 1200, 0},
                                                   {PROC_UPGRADEMETHOD, 20, 1}}) {
        EXPECT_EQ(number(group, attribute, 0), first) << attribute;
        EXPECT_EQ(number(group, attribute, 1), second) << attribute;
    }
    EXPECT_EQ(text(group, PROC_MANUFACTURERNAME, 1), "") << "nothing stays of the processor before it";
    EXPECT_EQ(group.getGroupStatus(), 2);
}

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
        EXPECT_EQ(number(group, PROC_DEVICEID, 0), 0x9A);
        EXPECT_EQ(number(group, PROC_DEVICEID, 1), second);
    }
}

TEST_F(Inventory, OnlyArraysWithModulesAndPlacesWithOneHaveRows)
{
    memoryArray arrays;
    memoryDevice devices;
    ASSERT_EQ(arrays.init(), 0);
    ASSERT_EQ(devices.init(), 0);
    ASSERT_EQ(arrays.getCount(), 1);
    ASSERT_EQ(devices.getCount(), 2);
    for (const auto& [attribute, value] : {std::pair{MEMORYARRAY_DEVICEID, 2},
                                           {MEMORYARRAY_LOCATION, 3},
                                           {MEMORYARRAY_MAXCAPACITY, 0x7FFFFFFE},
                                           {MEMORYARRAY_NUMOFDEVICE, 3},
                                           {MEMORYARRAY_ERRORCORRECTION, 6},
                                           {MEMORYARRAY_HANDLE, 65534},
                                           {MEMORYARRAY_USAGECODE, 3},
                                           {MEMORYARRAY_USEDSLOT, 2},
                                           {MEMORYARRAY_STATUS, 2}})
        EXPECT_EQ(number(arrays, attribute, 0), value) << attribute;
    for (const auto& [attribute, first, second] : {std::tuple{MEMORYDEVICE_ASSOCIATEDARRAY, 2, 2},
                                                   {MEMORYDEVICE_SIZE, 16384, 16384},
                                                   {MEMORYDEVICE_TOTALWIDTH, 72, 72},
                                                   {MEMORYDEVICE_DATAWIDTH, 64, 64},
                                                   {MEMORYDEVICE_SPEED, 1600, 1600},
                                                   {MEMORYDEVICE_FORMFACTOR, 11, 11},
                                                   {MEMORYDEVICE_MEMORYTYPE, 22, 1},
                                                   {MEMORYDEVICE_TYPEDETAIL, 8 + 512 + 4096, 8 + 4096},
                                                   {MEMORYDEVICE_DEVICEID, 1, 2}}) {
        EXPECT_EQ(number(devices, attribute, 0), first) << attribute;
        EXPECT_EQ(number(devices, attribute, 1), second) << attribute;
    }
    EXPECT_EQ(text(devices, MEMORYDEVICE_LOCATOR, 1), "Slot 3");
    EXPECT_EQ(text(devices, MEMORYDEVICE_BANKLABEL, 1), "Bank");
}

TEST_F(Inventory, AFailureKeepsWhatWasFoundBeforeIt)
{
    sdk.answers.erase("/SMBIOS/MemoryArray[2]/MemoryDevice[3]/DevicePresent");
    memoryDevice devices;
    ASSERT_EQ(devices.init(), 0);
    EXPECT_EQ(devices.getCount(), 1);
}

TEST_F(Inventory, MissingRowsAndForeignAttributesHaveTheirResults)
{
    struct Case {
        std::unique_ptr<BaseAccessor> group;
        _SMAttribute number, text;
        int noRow;
    };
    Case cases[] = {{std::make_unique<processorDevice>(), PROC_STATUS, PROC_DESCRIPTION, 22},
                    {std::make_unique<memoryArray>(), MEMORYARRAY_STATUS, MEMORYARRAY_TAG, 25},
                    {std::make_unique<memoryDevice>(), MEMORYDEVICE_SIZE, MEMORYDEVICE_TAG, 25}};
    sdk.answers["/BMC/SDR/RECORD_TYPE[2]"] = {};
    static_cast<processorDevice&>(*cases[0].group).init();
    static_cast<memoryArray&>(*cases[1].group).init();
    static_cast<memoryDevice&>(*cases[2].group).init();
    for (const Case& each : cases) {
        long out = 0;
        char* block = nullptr;
        for (const int row : {-1, each.group->getCount()}) {
            EXPECT_EQ(each.group->getIntInfo(each.number, row, out), each.noRow);
            EXPECT_EQ(each.group->getStrInfo(each.text, row, block), each.noRow);
        }
        EXPECT_EQ(each.group->getIntInfo(each.text, 0, out), 9);
        EXPECT_EQ(each.group->getStrInfo(each.number, 0, block), 9);
        EXPECT_EQ(each.group->getIntData(each.number, 0, out), 4);
    }
}

TEST_F(Inventory, WithoutFirmwareTablesThereAreNoRows)
{
    sdk.answers.clear();
    processorDevice processors;
    memoryArray arrays;
    memoryDevice devices;
    EXPECT_EQ(processors.init() + arrays.init() + devices.init(), 0);
    EXPECT_EQ(processors.getCount() + arrays.getCount() + devices.getCount(), 0);
    EXPECT_EQ(devices.getGroupStatus(), 0);
}

} // namespace
