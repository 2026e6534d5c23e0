#pragma once

#include "common/XNode.hpp"
#include "protocol/SmbiosTable.hpp"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Protocol::SMBIOS {

/// The firmware's SMBIOS structures as named values. What it holds does not change after it was made, so any thread may
/// ask.
class ISMBIOSProtocol {
public:
    virtual ~ISMBIOSProtocol() = default;

    /// Adds what `query` stands for to `result`: a value's path adds a leaf with the value; a group's path adds a node
    /// for each member, a leaf for a value and a non-leaf with the member's paths for a group. An unknown path adds
    /// nothing.
    virtual void SMBiosSearch(const std::string& query, ResultMap& result) const = 0;
    /// Adds one non-leaf for `path` that names the paths right below it, without their values; nothing for an unknown
    /// path.
    virtual void SMBiosChildren(const std::string& path, ResultMap& result) const = 0;
};

/// Reads the SMBIOS table (DSP0134) once, when it is made. Paths: "/SMBIOS/Type17[2]/Size" for the second structure of
/// type 17, and without a subscript for the first of each type; "/SMBIOS/ProcessorInfo[1]" for the first processor that
/// is fitted; "/SMBIOS/MemoryArray[1]/MemoryDevice[2]" for the second slot of the first memory array. All are counted
/// from 1.
class SMBIOSProtocolImpl : public ISMBIOSProtocol {
public:
    /// The one instance over the firmware's table, made on first use. Throws as the constructor does; a failure is
    /// thrown to everybody for ten seconds before memory is searched again.
    static std::shared_ptr<const ISMBIOSProtocol> CreateInstance();
    /// Lets go of the instance, so that the next use reads the table anew.
    static void DeleteInstance();

    /// Reads the firmware's table, through "/dev/mem"; by the policy out of the kernel's copies, where it has them.
    /// Error 1013 without an entry point, 1024 when it does not sum to 0, 1007 and 1009 when memory cannot be reached.
    SMBIOSProtocolImpl();
    /// For other callers of the SDK, who have no firmware to ask: reads a saved image: an entry point anywhere in it,
    /// whose table address counts from the image's start. Error 1013 without an entry point or with a table outside the
    /// image, 1024 when it does not sum to 0.
    SMBIOSProtocolImpl(const unsigned char* image, unsigned length);
    SMBIOSProtocolImpl(const SMBIOSProtocolImpl&) = delete;
    SMBIOSProtocolImpl& operator=(const SMBIOSProtocolImpl&) = delete;

    void SMBiosSearch(const std::string& query, ResultMap& result) const override;
    void SMBiosChildren(const std::string& path, ResultMap& result) const override;

    // For other callers of the SDK: the agent asks by path only.

    std::string Version() const { return entryPoint.version(); }
    /// The catalogue that the version selects.
    const SMBCatalogue& Tables() const { return catalogue; }
    /// The structure of `handle`, the first if several bear it; null without one.
    const SMBRecordInfo* FindRecord(std::uint16_t handle) const;
    /// Start and length of the memory that the firmware keeps for itself, 0 if it does not tell.
    std::uint32_t BiosReservedAddress() const { return reservedAddress; }
    std::uint32_t BiosReservedSize() const { return reservedSize; }

private:
    /// What stands below a path that has more below it than one field's entries.
    struct Branch {
        const FieldValues* fields = nullptr; ///< of the structure that the path stands for
        FieldValues further;                 ///< values that are derived
        FieldValues asides;                  ///< values with a path of their own that the branch's answer leaves out
        std::vector<std::string> members;    ///< paths of further branches
    };

    /// A branch and its path, and the rest of a query below it.
    struct Place {
        const Branch* branch = nullptr;
        std::string_view path;
        std::string_view name;
    };

    /// Records of memory devices, by the handle of their array.
    using DevicesByArray = std::unordered_map<std::uint16_t, std::vector<std::size_t>>;

    void InitSMBiosTable();
    void GetSMBiosEntryPtr();
    void GetSMBiosEntryPtr(const unsigned char* image, unsigned length);
    bool takeKernelTables();
    void DefineSMBiosTable();
    void FillStaticInfoSMBIOSSpec_23() { useCatalogue(v2_3); }
    void FillStaticInfoSMBIOSSpec_24() { useCatalogue(v2_4); }
    void FillStaticInfoSMBIOSSpec_25() { useCatalogue(v2_5); }
    void FillStaticInfoSMBIOSSpec_26() { useCatalogue(v2_6); }
    void FillStaticInfoSMBIOSSpec_27() { useCatalogue(v2_7); }
    void FillStaticInfoSMBIOSSpec_37() { useCatalogue(v3_7); }
    void useCatalogue(Catalogue version);
    void DefineValidSubTypes();
    void ParseSMBiosTable();
    void FillSMBIOSDataTables();
    void FillSubTypeDataTables();
    void publishTypes();
    void FillMemoryArray();
    void FillPresentMemory(const std::string& array, const std::vector<std::size_t>& devices);
    DevicesByArray devicesByArrayHandle() const;
    void FillProcessorInfo();
    void InitBiosReservedMem();

    Branch& addBranch(const std::string& parent, const std::string& path);
    Branch& addStructure(const std::string& parent, const std::string& path, std::size_t record);
    std::uint32_t numberAt(const std::string& path) const;
    Place findPlace(const std::string& path) const;
    std::vector<std::size_t> recordsOfType(std::uint8_t type) const;

    std::vector<std::uint8_t> table; ///< a copy: the firmware may change its own under the walk
    EntryPoint entryPoint;
    Catalogue catalogueVersion = v2_3;
    SMBCatalogue catalogue;
    std::vector<SMBRecordInfo> records;
    std::unordered_map<std::uint16_t, std::size_t> recordsByHandle;
    std::unordered_map<std::uint8_t, std::vector<std::size_t>> recordsByType;
    std::vector<FieldValues> fieldsOfRecord; ///< paths below the structure's own, which several branches share
    std::unordered_map<std::string, Branch> branches;
    std::uint32_t reservedAddress = 0;
    std::uint32_t reservedSize = 0;
};

} // namespace Protocol::SMBIOS
