#include "modules/bmc/catalogue/LanAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"
#include "modules/bmc/engine/Text.hpp"

// Authentication types (IPMI 2.0, table 23-4, parameters 1 and 2): for each privilege level a byte of what may be used.

namespace Module::BMCConfig {

namespace lanAuthentication {

constexpr char packet[] = "LAN[]/AUTHENTICATIONTYPE";

struct Level {
    const char* name;
    const char* branch; ///< with the single types below
    unsigned byte;      ///< of parameter 2
};

constexpr Level levels[] = {
    {"ADMIN", "LAN[]/AUTHENTICATIONTYPE/ADMIN", 3}, {"CALLBACK", "LAN[]/AUTHENTICATIONTYPE/CALLBACK", 0},
    {"OEM", "LAN[]/AUTHENTICATIONTYPE/OEMTYPE", 4}, {"OPERATOR", "LAN[]/AUTHENTICATIONTYPE/OPERATOR", 2},
    {"USER", "LAN[]/AUTHENTICATIONTYPE/USER", 1},
};

struct Type {
    const char* name;
    const char* table;
    unsigned bit;
};

constexpr Type types[] = {
    {"OEM", "LAN[]/AUTHENTICATIONTYPE/OEM", 0x20},   {"STRAIGHT", "LAN[]/AUTHENTICATIONTYPE/STRAIGHT", 0x10},
    {"MD5", "LAN[]/AUTHENTICATIONTYPE/MD5", 0x04},   {"MD2", "LAN[]/AUTHENTICATIONTYPE/MD2", 0x02},
    {"NONE", "LAN[]/AUTHENTICATIONTYPE/NONE", 0x01},
};

constexpr Record recordAt(const char* path)
{
    return lanRecord(path, packet, packet, 5);
}

void addTypeTables(Stores& stores)
{
    for (const Type& type : types) {
        const std::string bit = hexText(type.bit);
        addTable(stores, std::string("GET://BMC/") + type.table, {{"0", "DISABLE"}, {bit, "ENABLE"}});
        addTable(stores, std::string("SET://BMC/") + type.table, {{"DISABLE", "0"}, {"ENABLE", bit}});
    }
}

} // namespace lanAuthentication

void addLanAuthentication(Stores& stores)
{
    using namespace lanAuthentication;
    addTypeTables(stores);
    addParameterPackets(stores, lanParameters, packet, "02", "$RECORD");
    addParameterPackets(stores, lanParameters, "LAN[]/AUTHENTICATIONTYPE/SUPPORTED", "01", nullptr);
    constexpr BranchRow branches[] = {{"GET://BMC/LAN[]/AUTHENTICATIONTYPE", "ADMIN CALLBACK OEMTYPE OPERATOR USER"}};
    addBranches(stores, branches);

    for (const Level& level : levels) {
        std::vector<Field> bits;
        for (const Type& type : types)
            bits.push_back({.name = type.name,
                            .byte = level.byte,
                            .codec = Codec::word,
                            .mask = type.bit,
                            .table = type.table,
                            .inPlace = true});
        addFieldBranch(stores, recordAt(level.branch), bits);
        const Field whole[] = {{.name = level.name, .byte = level.byte}};
        addFields(stores, recordAt("LAN[]/AUTHENTICATION_TYPE"), whole);
    }
    Record supported = recordAt("LAN[]/AUTHENTICATION_TYPE");
    supported.get = "LAN[]/AUTHENTICATIONTYPE/SUPPORTED";
    constexpr Field byte[] = {{.name = "SUPPORTED", .access = Access::read}};
    addFields(stores, supported, byte);
}

} // namespace Module::BMCConfig
