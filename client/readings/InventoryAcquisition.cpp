#include "client/readings/InventoryAcquisition.hpp"

#include "client/query/Answers.hpp"
#include "client/query/QLInterface.hpp"
#include "client/readings/InventoryWords.hpp"
#include "client/words/Numbers.hpp"
#include "client/words/Text.hpp"
#include "client/words/Trace.hpp"
#include "common/ResultStatus.hpp"

#include <algorithm>
#include <cstdlib>
#include <span>

using namespace client::query;
using namespace client::readings;
using namespace client::words;

namespace {

constexpr char supported[] = "Supported";
constexpr char present[] = "True";
/// Number that every word table has for what is none of the others.
constexpr int otherNumber = 1;

template<class Info>
struct TextField {
    const char* suffix;
    InventoryText Info::*member;
};

template<class Info>
struct NumberField {
    const char* suffix;
    int Info::*member;
};

/// A word whose number is `otherwise` when the table has none.
template<class Info>
struct WordField {
    const char* suffix;
    int Info::*member;
    std::span<const WordNumber> words;
    int otherwise;
};

using Processor = SMBIOS_PROCESSOR_INFO;
using Array = SMBIOS_MEMORY_ARRAY_INFO;
using Device = SMBIOS_MEMORY_DEVICE_INFO;

constexpr TextField<Processor> processorTexts[] = {
    {"/ProcessorManufacturer", &Processor::manufacturer},
    {"/ProcessorId", &Processor::processorId},
    {"/ProcessorVersion", &Processor::version},
    {"/PartNumber", &Processor::partNumber},
    {"/SocketDesignation", &Processor::socketDesignation},
};
constexpr NumberField<Processor> processorNumbers[] = {
    {"/VoltageCapability", &Processor::voltage},  {"/ClockFrequency", &Processor::externalClock},
    {"/MaxSpeed", &Processor::maxSpeed},          {"/CurrentSpeed", &Processor::currentSpeed},
    {"/ProcessorFamily_Raw", &Processor::family}, {"/CoreCount", &Processor::cores},
    {"/ThreadCount", &Processor::threads},
};

/// A family that the table has no word for keeps the code that was read before it.
constexpr int keep = -1;

constexpr WordField<Processor> processorWords[] = {
    {"/Upgrade", &Processor::upgrade, processorUpgradeWords, otherNumber},
    {"/ProcessorType", &Processor::type_, processorTypeWords, keep},
    {"/ProcessorFamily", &Processor::family, processorFamilyWords, keep},
};

constexpr NumberField<Array> arrayNumbers[] = {
    {"/MemoryErrorInfoHandle", &Array::errorInfoHandle},
    {"/NumMemoryDevices", &Array::numDevices},
    {"/MaxCapacity", &Array::maxCapacity},
    {"/TotalNoOfDevicePresent", &Array::devicesPresent},
};
constexpr WordField<Array> arrayWords[] = {
    {"/Use", &Array::use, arrayUseWords, otherNumber},
    {"/MemoryErrorCorrection", &Array::errorCorrection, errorCorrectionWords, otherNumber},
    {"/Location", &Array::location, arrayLocationWords, keep},
};

constexpr TextField<Device> deviceTexts[] = {
    {"/BankLocator", &Device::bankLocator},     {"/Manufacturer", &Device::manufacturer},
    {"/SerialNo", &Device::serialNumber},       {"/AssetTag", &Device::assetTag},
    {"/DeviceLocator", &Device::deviceLocator}, {"/PartNumber", &Device::partNumber},
    {"/MemoryTechnology", &Device::technology},
};
constexpr NumberField<Device> deviceNumbers[] = {
    {"/TotalWidth", &Device::totalWidth},
    {"/DataWidth", &Device::dataWidth},
    {"/Size", &Device::size},
    {"/Speed", &Device::speed},
};
constexpr WordField<Device> deviceWords[] = {
    {"/FormFactor", &Device::formFactor, formFactorWords, MDF_OTHER},
    {"/MemoryType", &Device::memoryType, memoryTypeWords, MDT_OTHER},
};

void traceEntriesOfInventory(const ResultStatus& failure)
{
    for (const RStatus& entry : failure) {
        trace("Operation: %d", entry.mCommand);
        trace("on :%s", entry.mXQuery.c_str());
        trace("\n failed. %d", entry.mErrorCode);
        trace(": %s", entry.mErrorString.c_str());
    }
}

/// A code that has no word in the firmware's catalogue either is bytes.
void addNote(InventoryText& notes, const std::string& word)
{
    if (!word.starts_with("0X"))
        copyText(notes, notes[0] ? std::string(notes) + ", " + word : word);
}

/// All answers to `query`, none after a failure.
ResultMap askAll(const std::string& query)
{
    return tryQuery(query, "", traceEntriesOfInventory).value_or(ResultMap());
}

/// Answers below one path.
class Answers {
public:
    explicit Answers(const std::string& path) : prefix(path), answers(askAll(path)) {}

    const std::string* find(std::string_view suffix) const { return findAnswer(answers, prefix + std::string(suffix)); }

    template<class Info>
    void read(std::span<const TextField<Info>> fields, Info& info) const
    {
        for (const TextField<Info>& field : fields)
            if (const std::string* const text = find(field.suffix))
                copyText(info.*field.member, *text);
    }

    /// A number ends where its unit begins.
    template<class Info>
    void read(std::span<const NumberField<Info>> fields, Info& info) const
    {
        for (const NumberField<Info>& field : fields)
            if (const std::string* const number = find(field.suffix))
                info.*field.member = clampToValue(std::strtol(number->c_str(), nullptr, 10));
    }

    template<class Info>
    void read(std::span<const WordField<Info>> fields, Info& info) const
    {
        for (const WordField<Info>& field : fields)
            if (const std::string* const word = find(field.suffix))
                store(field, *word, info);
    }

private:
    template<class Info>
    static void store(const WordField<Info>& field, const std::string& word, Info& info)
    {
        const auto found = std::ranges::find(field.words, word, &WordNumber::word);
        if (found != field.words.end()) {
            info.*field.member = found->number;
        } else if (field.otherwise != keep) {
            info.*field.member = field.otherwise;
            addNote(info.unnamed, word);
        }
    }

    std::string prefix;
    ResultMap answers;
};

std::string arrayPath(int array)
{
    return "/SMBIOS/MemoryArray[" + std::to_string(array) + "]";
}

std::string devicePath(int array, int device)
{
    return arrayPath(array) + "/MemoryDevice[" + std::to_string(device) + "]";
}

int readCount(const std::string& query, int* count)
{
    ExecuteGetQuery(query.c_str(), count);
    return 0;
}

std::optional<ResultMap> askForFitted(const std::string& query)
{
    return tryQuery(query, "\n error in getingf the memory details\n");
}

/// Lists the places that hold a module. False after a failure; the places found before that stay on the list.
bool listPresentDevices(MemoryArrayDetails& details)
{
    const auto places = askForFitted(arrayPath(details.array) + "/MemoryDevice");
    for (int device = 1; places && static_cast<std::size_t>(device) <= places->size(); ++device) {
        const std::string query = devicePath(details.array, device) + "/DevicePresent";
        const auto answers = askForFitted(query);
        if (!answers)
            return false;
        const std::string* const answer = findAnswer(*answers, query);
        if (answer && *answer == present)
            details.devices.push_back(device);
    }
    return places.has_value();
}

/// False after a failure.
bool addArray(int array, std::vector<MemoryArrayDetails>& out)
{
    if (!askForFitted(arrayPath(array) + "/TotalNoOfDevicePresent"))
        return false;
    out.push_back({array, {}});
    return listPresentDevices(out.back());
}

} // namespace

void ExecuteGetQuery(const char* query, int* out)
{
    *out = 0;
    const ResultMap answers = askAll(query);
    if (const std::string* const number = findAnswer(answers, query))
        *out = clampToValue(std::strtol(number->c_str(), nullptr, 10));
}

void ExecuteProcessorInfoQuery(const std::string& prefix, SMBIOS_PROCESSOR_INFO& info)
{
    const Answers answers(prefix);
    info = {};
    answers.read<Processor>(processorTexts, info);
    answers.read<Processor>(processorNumbers, info);
    answers.read<Processor>(processorWords, info);
}

void ExecuteMemoryInfoQuery(const std::string& prefix, SMBIOS_MEMORY_ARRAY_INFO& info)
{
    const Answers answers(prefix);
    info = {};
    answers.read<Array>(arrayNumbers, info);
    answers.read<Array>(arrayWords, info);
}

void ExecuteMemoryDeviceInfoQuery(const std::string& prefix, SMBIOS_MEMORY_DEVICE_INFO& info)
{
    const Answers answers(prefix);
    info = {};
    answers.read<Device>(deviceTexts, info);
    answers.read<Device>(deviceNumbers, info);
    answers.read<Device>(deviceWords, info);
    for (const WordNumber& flag : typeDetailBits)
        if (const std::string* const state = answers.find(flag.word); state && *state == supported)
            info.typeDetail |= flag.number;
}

int getNumberOfProcessorPresent(int* count)
{
    return readCount("/SMBIOS/ProcessorInfo/TotalNoOfProcessorPresent", count);
}

int getNumberOfProcessor(int* count)
{
    return readCount("/SMBIOS/ProcessorInfo/TotalNoOfProcessor", count);
}

int getNumberOfPhysicalMemoryArray(int* count)
{
    return readCount("/SMBIOS/MemoryArray/TotalNoOfArray", count);
}

int getNumberOfMemoryDevicePresent(int array, int* count)
{
    return readCount(arrayPath(array) + "/TotalNoOfDevicePresent", count);
}

int getNumberOfMemoryDevice(int array, int* count)
{
    return readCount(arrayPath(array) + "/NumMemoryDevices", count);
}

int getProcessorPresentInfo(int processor, SMBIOS_PROCESSOR_INFO& info)
{
    ExecuteProcessorInfoQuery("/SMBIOS/ProcessorInfo[" + std::to_string(processor) + "]", info);
    return 0;
}

int getPhyMemDevArrayInfo(int array, SMBIOS_MEMORY_ARRAY_INFO& info)
{
    ExecuteMemoryInfoQuery(arrayPath(array), info);
    return 0;
}

int getMemoryDeviceInfo(int array, int device, SMBIOS_MEMORY_DEVICE_INFO& info)
{
    ExecuteMemoryDeviceInfoQuery(devicePath(array, device), info);
    return 0;
}

void GetMemoryArrayDetails(std::vector<MemoryArrayDetails>& out)
{
    trace("\nExecuting Get Memory Array Details \n");
    const auto arrays = askForFitted("/SMBIOS/MemoryArray");
    for (int array = 1; arrays && static_cast<std::size_t>(array) <= arrays->size(); ++array)
        if (!addArray(array, out))
            break;
    std::erase_if(out, [](const MemoryArrayDetails& details) { return details.devices.empty(); });
}
