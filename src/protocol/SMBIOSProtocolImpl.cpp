#include "protocol/SMBIOSProtocolImpl.hpp"

#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/ResultStatus.hpp"
#include "common/Stopwatch.hpp"
#include "protocol/SmbiosCatalogue.hpp"
#include "protocol/SmbiosRender.hpp"

#include <algorithm>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

namespace Protocol::SMBIOS {

namespace {

const std::string rootPath = "/SMBIOS";

constexpr std::chrono::seconds pauseAfterFailure{10};
constexpr const char* reportKey = "firmware tables";

/// The one instance, or why there is none.
struct Instance {
    std::mutex guard;
    std::shared_ptr<const ISMBIOSProtocol> reader;
    std::optional<ResultStatus> failure;
    common::Stopwatch sinceFailure;
};
Instance& theInstance()
{
    static Instance instance;
    return instance;
}

void tellFailure(const ResultStatus& status)
{
    const std::string why = status.size() > 0 ? status.begin()->mErrorString : std::string();
    common::reportLimited(common::Gravity::warning, reportKey,
                          "the firmware tells of no processors and memory: " + why);
}

/// A sub-form may read a field anew that the structure's plain form has read already.
void replaceOrAdd(FieldValues& fields, std::pair<std::string, std::string> value)
{
    const auto same = std::ranges::find(fields, value.first, &std::pair<std::string, std::string>::first);
    if (same != fields.end())
        same->second = std::move(value.second);
    else
        fields.push_back(std::move(value));
}

bool isProcessorPresent(const SMBRecordInfo& processor)
{
    constexpr std::size_t status = 0x18;
    constexpr std::uint64_t populatedBit = 0x40;
    return processor.number(status, 1) & populatedBit;
}

bool isMemoryPresent(const SMBRecordInfo& device)
{
    constexpr std::size_t size = 0x0C;
    return device.number(size, FIELD_WORD) != 0;
}

} // namespace

std::shared_ptr<const ISMBIOSProtocol> SMBIOSProtocolImpl::CreateInstance()
{
    Instance& one = theInstance();
    const std::lock_guard lock(one.guard);
    if (one.failure && one.sinceFailure.elapsed() < pauseAfterFailure)
        throw ResultStatus(*one.failure);
    one.failure.reset();
    try {
        if (!one.reader)
            one.reader = std::make_shared<const SMBIOSProtocolImpl>();
        common::reportEnded(reportKey);
    } catch (const ResultStatus& status) {
        one.failure = status;
        one.sinceFailure = {};
        tellFailure(status);
        throw;
    }
    return one.reader;
}

void SMBIOSProtocolImpl::DeleteInstance()
{
    Instance& one = theInstance();
    const std::lock_guard lock(one.guard);
    one.reader.reset();
    one.failure.reset();
}

SMBIOSProtocolImpl::SMBIOSProtocolImpl()
{
    GetSMBiosEntryPtr();
    InitSMBiosTable();
}

SMBIOSProtocolImpl::SMBIOSProtocolImpl(const unsigned char* image, unsigned length)
{
    GetSMBiosEntryPtr(image, length);
    InitSMBiosTable();
}

void SMBIOSProtocolImpl::InitSMBiosTable()
{
    DefineSMBiosTable();
    DefineValidSubTypes();
    ParseSMBiosTable();
    FillSMBIOSDataTables();
    FillSubTypeDataTables();
    publishTypes();
    FillMemoryArray();
    FillProcessorInfo();
    InitBiosReservedMem();
}

void SMBIOSProtocolImpl::DefineSMBiosTable()
{
    struct VersionRow {
        std::string_view version;
        void (SMBIOSProtocolImpl::*fill)();
    };
    static constexpr VersionRow versions[] = {
        {"2.5", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_25},
        {"2.6", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_26},
        {"2.4", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_24},
        {"2.3", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_23},
        {"2.7", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_27},
        {"2.8", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_27},
        {"3.0", &SMBIOSProtocolImpl::FillStaticInfoSMBIOSSpec_27},
    };
    constexpr std::pair<int, int> swapsUuid{2, 6}; // which goes by the catalogue
    if (common::policy().knowsNewerFirmware && std::pair<int, int>(entryPoint.major, entryPoint.minor) >= swapsUuid)
        return FillStaticInfoSMBIOSSpec_37();
    const auto row = std::ranges::find(versions, Version(), &VersionRow::version);
    if (row == std::end(versions))
        FillStaticInfoSMBIOSSpec_23();
    else
        (this->*row->fill)();
}

void SMBIOSProtocolImpl::useCatalogue(Catalogue version)
{
    catalogueVersion = version;
    catalogue = buildCatalogue(version);
}

void SMBIOSProtocolImpl::DefineValidSubTypes()
{
    addSubTypes(catalogue, catalogueVersion);
}

void SMBIOSProtocolImpl::ParseSMBiosTable()
{
    records = parseStructures(table, entryPoint.structureCount);
    for (std::size_t i = 0; i < records.size(); ++i) {
        recordsByHandle.try_emplace(records[i].handle, i);
        recordsByType[records[i].type].push_back(i);
    }
}

void SMBIOSProtocolImpl::FillSMBIOSDataTables()
{
    fieldsOfRecord.resize(records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        if (const auto known = catalogue.find(records[i].type); known != catalogue.end())
            for (const FieldInfo& field : known->second.fields)
                FillFieldInterpretation(field, records[i], catalogueVersion, fieldsOfRecord[i]);
}

void SMBIOSProtocolImpl::FillSubTypeDataTables()
{
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto known = catalogue.find(records[i].type);
        if (known == catalogue.end())
            continue;
        FieldValues further;
        for (const _SubTypeInformation& form : known->second.subTypes)
            if (form.describes(records[i]))
                FillFieldInterpretation(form.field, records[i], catalogueVersion, further);
        for (auto& value : further)
            replaceOrAdd(fieldsOfRecord[i], std::move(value));
    }
}

/// Puts every structure of the catalogue under its type, the first of a type also without a subscript. The subscripted
/// paths are members only where there are several.
void SMBIOSProtocolImpl::publishTypes()
{
    std::set<std::uint8_t> types;
    for (const SMBRecordInfo& record : records)
        if (catalogue.contains(record.type))
            types.insert(record.type);
    for (const std::uint8_t type : types) {
        const std::vector<std::size_t> indexes = recordsOfType(type);
        const std::string path = rootPath + "/Type" + std::to_string(type);
        addStructure(rootPath, path, indexes.front());
        for (std::size_t i = 0; i < indexes.size(); ++i)
            addStructure(indexes.size() > 1 ? path : std::string(), subscripted(path, i + 1), indexes[i]);
    }
}

void SMBIOSProtocolImpl::FillMemoryArray()
{
    const std::string path = rootPath + "/MemoryArray";
    const std::vector<std::size_t> arrays = recordsOfType(TYPE_MEMORY_ARRAY);
    if (records.empty())
        return;
    // An aside: who asks for the branch counts its nodes to learn the number of arrays.
    addBranch(rootPath, path).asides.emplace_back("TotalNoOfArray", std::to_string(arrays.size()));
    DevicesByArray devices = devicesByArrayHandle();
    for (std::size_t i = 0; i < arrays.size(); ++i) {
        const std::string array = subscripted(path, i + 1);
        addStructure(path, array, arrays[i]);
        // Taken out, so that a device has one place even in a table whose arrays share a handle.
        FillPresentMemory(array, std::exchange(devices[records[arrays[i]].handle], {}));
    }
}

SMBIOSProtocolImpl::DevicesByArray SMBIOSProtocolImpl::devicesByArrayHandle() const
{
    constexpr std::size_t arrayHandle = 0x04;
    DevicesByArray devices;
    for (const std::size_t index : recordsOfType(TYPE_MEMORY_DEVICE))
        if (records[index].holds(arrayHandle, FIELD_WORD))
            devices[static_cast<std::uint16_t>(records[index].number(arrayHandle, FIELD_WORD))].push_back(index);
    return devices;
}

void SMBIOSProtocolImpl::FillPresentMemory(const std::string& array, const std::vector<std::size_t>& devices)
{
    const std::string path = array + "/MemoryDevice";
    std::size_t count = 0;
    std::size_t present = 0;
    addBranch(array, path);
    for (const std::size_t index : devices) {
        const bool isPresent = isMemoryPresent(records[index]);
        present += isPresent;
        addStructure(path, subscripted(path, ++count), index)
            .further.emplace_back("DevicePresent", isPresent ? "True" : "False");
    }
    branches[array].further.emplace_back("TotalNoOfDevicePresent", std::to_string(present));
}

void SMBIOSProtocolImpl::FillProcessorInfo()
{
    const std::string path = rootPath + "/ProcessorInfo";
    if (records.empty())
        return;
    const std::vector<std::size_t> sockets = recordsOfType(TYPE_PROCESSOR);
    std::size_t present = 0;
    Branch& branch = addBranch(rootPath, path);
    for (const std::size_t index : sockets)
        if (isProcessorPresent(records[index]))
            addStructure(path, subscripted(path, ++present), index);
    branch.further = {{"TotalNoOfProcessor", std::to_string(sockets.size())},
                      {"TotalNoOfProcessorPresent", std::to_string(present)}};
}

void SMBIOSProtocolImpl::InitBiosReservedMem()
{
    const std::string path = rootPath + "/Type" + std::to_string(TYPE_BIOS_RESERVED_MEMORY);
    reservedAddress = numberAt(path + "/Address");
    reservedSize = numberAt(path + "/Size");
}

/// An empty `parent` leaves the branch out of every listing.
SMBIOSProtocolImpl::Branch& SMBIOSProtocolImpl::addBranch(const std::string& parent, const std::string& path)
{
    if (!parent.empty())
        branches[parent].members.push_back(path);
    return branches[path];
}

SMBIOSProtocolImpl::Branch& SMBIOSProtocolImpl::addStructure(const std::string& parent, const std::string& path,
                                                             std::size_t record)
{
    Branch& branch = addBranch(parent, path);
    branch.fields = &fieldsOfRecord[record];
    return branch;
}

std::uint32_t SMBIOSProtocolImpl::numberAt(const std::string& path) const
{
    ResultMap found;
    SMBiosSearch(path, found);
    return found.empty() ? 0 : static_cast<std::uint32_t>(std::stoul(found[path].mXNodeList.front()));
}

std::vector<std::size_t> SMBIOSProtocolImpl::recordsOfType(std::uint8_t type) const
{
    const auto found = recordsByType.find(type);
    return found == recordsByType.end() ? std::vector<std::size_t>() : found->second;
}

const SMBRecordInfo* SMBIOSProtocolImpl::FindRecord(std::uint16_t handle) const
{
    const auto found = recordsByHandle.find(handle);
    return found == recordsByHandle.end() ? nullptr : &records[found->second];
}

} // namespace Protocol::SMBIOS
