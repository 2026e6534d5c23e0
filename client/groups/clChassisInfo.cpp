#include "client/groups/clChassisInfo.hpp"

#include "client/query/Answers.hpp"
#include "client/query/Publication.hpp"
#include "client/query/QLInterface.hpp"
#include "client/readings/InventoryWords.hpp"
#include "common/Policy.hpp"
#include "ipmi/Hex.hpp"
#include "ipmi/SdrView.hpp"
#include "ipmi/SensorReading.hpp"

#include <cxxabi.h>

using namespace client::groups;
using namespace client::query;
using namespace client::words;
using client::readings::WordNumber;

CDatabase<CSystemWrapper> pArrayOfWrapper;

namespace {

constexpr char decodedFru[] = "/BMC/FRU[0]/RECORD/DECODED/";
constexpr char chassisQuery[] = "/SMBIOS/Type3";
constexpr char securityQuery[] = "/SMBIOS/Type24";
constexpr char securitySettings[] = "/HardwareSecuritySettings/";
constexpr char intrusionRecords[] = "/BMC/SDR/SENSOR_TYPE[5]";

/// Words of FRU inventory and firmware; one kind has two.
constexpr WordNumber containerWords[] = {
    {"Other", CONTAINER_TYPE_OTHER},
    {"Unknown", CONTAINER_TYPE_UNKNOWN},
    {"Desktop", CONATINER_TYPE_DESKTOP},
    {"Low Profile Desktop", CONTAINER_TYPE_LOW_PROFILE_DESKTOP},
    {"Pizza Box", CONTAINER_TYPE_PIZZA_BOX},
    {"Mini Tower", CONTAINER_TYPE_MINI_TOWER},
    {"Tower", CONTAINER_TYPE_TOWER},
    {"Portable", CONTAINER_TYPE_PORTABLE},
    {"Laptop", CONTAINER_TYPE_LAPTOP},
    {"Notebook", CONTAINER_TYPE_NOTEBOOK},
    {"Hand Held", CONTAINER_TYPE_HAND_HELD},
    {"Docking Station", CONTAINER_TYPE_DOCKING_STATION},
    {"All In One", CONTAINER_TYPE_All_IN_ONE},
    {"Sub Notebook", CONTAINER_TYPE_SUB_NOTE_BOOK},
    {"Space-saving", CONTAINER_TYPE_SPACE_SAVING},
    {"Lunch Box", CONTAINER_TYPE_LUNCH_BOX},
    {"Main Server Chassis", CONTAINER_TYPE_MAIN_SYSTEM_CHASSIS},
    {"Main System Chassis", CONTAINER_TYPE_MAIN_SYSTEM_CHASSIS},
    {"Expansion Chassis", CONTAINER_TYPE_EXPANSION_CHASSIS},
    {"Sub Chassis", CONTAINER_TYPE_SUB_CHASSIS},
    {"Bus Expansion Chassis", CONTAINER_TYPE_BUS_EXPANSION_CHASSIS},
    {"Peripheral Chassis", CONTAINER_TYPE_PERIPHERAL_CHASSIS},
    {"RAID Chassis", CONTAINER_TYPE_RAID_CHASSIS},
    {"Rack Mount Chassis", CONTAINER_TYPE_RACK_MOUNT_CHASSIS},
};

constexpr WordNumber settingWords[] = {
    {"Disabled", STATUS_DISABLED},
    {"Enabled", STATUS_ENABLED},
    {"Not Implemented", STATUS_NOT_IMPLEMENTED},
};

constexpr WordNumber securityWords[] = {{"None", 1}, {"Unknown", 2}, {"Safe", 3}};

/// Of boot and temperature alike.
constexpr WordNumber stateWords[] = {
    {"Unknown", CONTAINER_BOOT_STATE_UNKNOWN},
    {"Safe", CONTAINER_BOOT_STATE_OK},
    {"Warning", CONTAINER_BOOT_STATE_NON_CRITICAL},
    {"Critical", CONTAINER_BOOT_STATE_CRITICAL},
    {"Non-recoverable", CONTAINER_BOOT_STATE_NON_RECOVERABLE},
};

constexpr WordNumber lockWords[] = {
    {"Not Present", CONTAINER_LOCK_NOT_PRESENT},
    {"Present", CONTAINER_LOCK_PRESENT},
};

struct FruText {
    const char* path;
    const char* firmware; ///< what the firmware calls it, null for nothing
    CString CSystemContainer::*member;
};

constexpr FruText fruTexts[] = {
    {"CHASSISAREA/PART_NUMBER", nullptr, &CSystemContainer::m_cPartNumber},
    {"CHASSISAREA/SERIAL_NUMBER", "/SerialNo", &CSystemContainer::m_cSerialNumber},
    {"PRODUCTAREA/ASSET_TAG", "/AssetTagNo", &CSystemContainer::m_cAssetTag},
};

struct Setting {
    const char* name;
    SECURITY_STATUS CSystemSecurity::*member;
};

constexpr Setting settings[] = {
    {"PowerOnPassword", &CSystemSecurity::m_ePowerOnPassword},
    {"KeyboardPassword", &CSystemSecurity::m_eKeyboardPassword},
    {"AdministratorPassword", &CSystemSecurity::m_eAdministratorPassword},
    {"FrontPanelReset", &CSystemSecurity::m_eFrontPanelReset},
};

constexpr IntField<ChassisInfo> intFields[] = {
    {CHASSIS_KBDPWDSTATUS, &ChassisInfo::nKbdPwdStatus},     {CHASSIS_POPWDSTATUS, &ChassisInfo::nPOPwdStatus},
    {CHASSIS_ADMINPWDSTATUS, &ChassisInfo::nAdminPwdStatus}, {CHASSIS_FPRESETSTATUS, &ChassisInfo::nFPResetStatus},
    {CHASSIS_CONTAINERTYPE, &ChassisInfo::nContainerType},
};

constexpr TextField<ChassisInfo> textFields[] = {
    {CHASSIS_PARTNUMBER, &ChassisInfo::stPartNumber},
    {CHASSIS_SERIALNUMBER, &ChassisInfo::stSerialNumber},
    {CHASSIS_NAME, &ChassisInfo::stName},
    {CHASSIS_ASSETTAG, &ChassisInfo::stAssetTag},
};

/// All answers to `path`, none after a failure, which is traced behind the query's name.
ResultMap askAll(const std::string& path)
{
    return tryQuery(path, "on " + path + "/").value_or(ResultMap());
}

/// What `path` answers by itself, empty without an answer.
std::string askText(const std::string& path)
{
    const ResultMap answers = askAll(path);
    const std::string* const text = findAnswer(answers, path);
    return text ? *text : std::string();
}

template<std::size_t Size>
int numberOf(const WordNumber (&words)[Size], const std::string& word, int otherwise)
{
    const auto* const found = std::ranges::find(words, word, &WordNumber::word);
    return found == std::end(words) ? otherwise : found->number;
}

/// The value of `name` in the firmware's description of the enclosure.
template<std::size_t Size>
int readChassisWord(const WordNumber (&words)[Size], const char* name)
{
    const ResultMap answers = askAll(chassisQuery);
    const std::string* const word = findAnswer(answers, std::string(chassisQuery) + "/" + name);
    return word ? numberOf(words, *word, 0) : 0;
}

void loadFru()
{
    tryMapQuery({{"/BMC/FRU", {{"DEVICE_ID", "00"}, {"BASE_ADDRESS", "20"}}}}, "on /BMC/FRU/");
}

/// What the FRU inventory tells, or by the policy the firmware where that tells nothing.
std::string fruText(const char* path, const char* firmware)
{
    std::string text = askText(std::string(decodedFru) + path);
    if (text.empty() && firmware && common::policy().asksFirmwareForChassis)
        text = askText(std::string(chassisQuery) + firmware);
    return text;
}

void readContainer(CSystemContainer& container)
{
    loadFru();
    const std::string kind = fruText("CHASSISAREA/TYPE", "/ChassisType");
    container.m_eType = static_cast<CONTAINER_TYPE>(numberOf(containerWords, kind, CONTAINER_TYPE_UNKNOWN));
    for (const FruText& text : fruTexts)
        container.*text.member = CString(fruText(text.path, text.firmware).c_str());
    container.m_eLockState = static_cast<CONTAINER_LOCK_STATE>(readChassisWord(lockWords, "ChassisLock"));
    container.m_ePowerState = CONTAINER_POWER_STATE_ON; // the agent runs on it
}

void readSecurity(CSystemSecurity& security)
{
    const ResultMap answers = askAll(securityQuery);
    for (const Setting& setting : settings)
        if (const std::string* const word =
                findAnswer(answers, std::string(securityQuery) + securitySettings + setting.name))
            security.*setting.member = static_cast<SECURITY_STATUS>(numberOf(settingWords, *word, STATUS_UNKNOWN));
}

/// The state of an intrusion sensor that says that the enclosure is open, by its kind; null where no state does.
const unsigned* openStateOf(const ipmi::SdrView& sensor)
{
    static constexpr unsigned asserted = 1; // of a digital sensor (IPMI 2.0, table 42-2, type 03h)
    if (!sensor.isReadable())
        return nullptr;
    if (sensor.eventType() == ipmi::eventtype::sensorSpecific)
        return &ipmi::generalChassisIntrusion;
    return sensor.eventType() == ipmi::eventtype::digitalDiscrete ? &asserted : nullptr;
}

void copyText(RowText& out, const CString& text)
{
    text.GetString(out, sizeof out);
}

void fillRow(const CSystemWrapper& system, ChassisInfo& row)
{
    row.nContainerType = system.m_cContainer.m_eType;
    copyText(row.stPartNumber, system.m_cContainer.m_cPartNumber);
    copyText(row.stSerialNumber, system.m_cContainer.m_cSerialNumber);
    copyText(row.stAssetTag, system.m_cContainer.m_cAssetTag);
    row.nPOPwdStatus = system.m_cSecurity.m_ePowerOnPassword;
    row.nKbdPwdStatus = system.m_cSecurity.m_eKeyboardPassword;
    row.nAdminPwdStatus = system.m_cSecurity.m_eAdministratorPassword;
    row.nFPResetStatus = system.m_cSecurity.m_eFrontPanelReset;
}

} // namespace

int chassisInfo::init()
{
    if (const int result = allocTable(1); result != CLIENT_SUCCESS)
        return result;
    try {
        readContainer(m_system.m_cContainer);
        readSecurity(m_system.m_cSecurity);
        findIntrusionSensor();
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        trace("\nUnknown Error: ChasssisInfo:init\n");
    }
    fillRow(m_system, mElementArray[0]);
    if (!common::policy().fillsBehindRegistration)
        goLive();
    return CLIENT_SUCCESS;
}

void chassisInfo::goLive()
{
    pArrayOfWrapper.m_pT.assign(1, m_system);
}

/// The first that can be read.
void chassisInfo::findIntrusionSensor()
{
    for (const auto& [path, node] : askAll(intrusionRecords)) {
        if (node.mType != NODE_LEAF || node.mXNodeList.empty())
            continue;
        const ipmi::Bytes record = ipmi::parseBytes(node.mXNodeList.front());
        const ipmi::SdrView sensor(record);
        if (const unsigned* const state = openStateOf(sensor)) {
            m_intrusionQuery = "/BMC/SENSOR[" + std::to_string(sensor.number()) + "]/VALUE";
            m_openState = *state;
            want(m_intrusionQuery);
            return;
        }
    }
}

int chassisInfo::getIntInfo(_SMAttribute attribute, int row, long& out)
{
    const ChassisInfo* const chassis = getAddress(row);
    return chassis ? answerInt(intFields, *chassis, attribute, out) : CLIENT_ERROR_NO_ROW;
}

int chassisInfo::readStatus() const
{
    if (m_intrusionQuery.empty())
        return ENUM_STATUS_OK;
    const std::string text = askText(m_intrusionQuery);
    if (text.empty() && common::policy().expiresReadings)
        return ENUM_STATUS_UNKNOWN;
    const ipmi::Bytes answer = ipmi::parseBytes(text);
    const ipmi::SensorReading reading(answer);
    const bool isOpen = !reading.isUnavailable() && reading.isSet(m_openState);
    return isOpen ? ENUM_STATUS_CRITICAL : ENUM_STATUS_OK;
}

int chassisInfo::getIntData(_SMAttribute attribute, int row, long& out)
{
    if (!getAddress(row))
        return CLIENT_ERROR_NO_ROW;
    const CSystemContainer& container = pArrayOfWrapper.m_pT.front().m_cContainer;
    if (attribute == CHASSIS_STATUS)
        out = getNewHealthEnum(readStatus());
    else if (attribute == CHASSIS_SECURITYSTATE)
        out = readChassisWord(securityWords, "SecurityStatus");
    else if (attribute == CHASSIS_BOOTSTATE)
        out = getNewHealthEnum(readChassisWord(stateWords, "BootupState"));
    else if (attribute == CHASSIS_THERMALSTATE)
        out = getNewHealthEnum(readChassisWord(stateWords, "ThermalState"));
    else if (attribute == CHASSIS_POWERSTATE)
        out = container.m_ePowerState;
    else if (attribute == CHASSIS_LOCKSTATE)
        out = container.m_eLockState;
    else
        return CLIENT_ERROR_NOSUCHNAME;
    return CLIENT_SUCCESS;
}

int chassisInfo::getStrInfo(_SMAttribute attribute, int row, char*& out)
{
    const ChassisInfo* const chassis = getAddress(row);
    return chassis ? answerText(textFields, *chassis, attribute, out) : CLIENT_ERROR_NO_ROW;
}
