#include "modules/bmc/catalogue/ConfigClasses.hpp"
#include "modules/bmc/catalogue/Fields.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// What the machine starts from next (IPMI 2.0, 28.12 and 28.13): the boot flags, and before them the word that they
// wait for the next start, whoever brings it about.

namespace Module::BMCConfig {

using namespace steps;

namespace bootConfig {

/// Two names without the slash of the others.
constexpr TextRow constants[] = {
    {"$IPMI/PARAMETER_SELECTOR_BOOT_OPTION", "05"},
    {"$IPMI/PARAMETER_SELECTOR_BOOT_RESTART_OPTION", "03"},
};

constexpr PacketRow packets[] = {
    {"GET://BMC/BOOT/OPTION", "GET_SYSTEM_BOOT_OPTIONS", "$IPMI/PARAMETER_SELECTOR_BOOT_OPTION 00 00"},
    {"SET://BMC/BOOT/PERSISTANTOPTION", "SET_SYSTEM_BOOT_OPTIONS",
     "$IPMI/PARAMETER_SELECTOR_BOOT_OPTION $FLAGS $PERSISTANTOPTION 00 00 00"},
    // bit 3: the flags are kept although no chassis control follows within 60 s
    {"SET://BMC/BOOT/RESTART", "SET_SYSTEM_BOOT_OPTIONS", "$IPMI/PARAMETER_SELECTOR_BOOT_RESTART_OPTION 08"},
    {"SET://BMC/BOOT/TRANSIENTOPTION", "SET_SYSTEM_BOOT_OPTIONS",
     "$IPMI/PARAMETER_SELECTOR_BOOT_OPTION $FLAGS $TRANSIENTOPTION 00 00 00"},
};

/// Flags that are not valid stand for no wish at all.
constexpr Record flags = {
    .path = "BOOT", .get = "BOOT/OPTION", .size = 5, .first = 3, .absentCode = "128", .kind = "0 80 80"};
constexpr Field device[] = {{.name = "OPTION", .byte = 1, .codec = Codec::word, .mask = 0x3C, .table = "BOOT/OPTION"}};

/// `bits`: valid, and for every start or for the next. Whether it is an EFI start stays as it is.
Script writeOption(const std::string& name, const char* bits)
{
    const std::string value = "$" + name;
    return script({
        encode(value, device[0]),
        sendAndCheck("GET://BMC/BOOT/OPTION"),
        readField("GET://BMC/BOOT/FLAGS", "$FLAGS", "$COMPLETION_CODE"),
        Map("$FLAGS", "MASK", "20", "$FLAGS"),
        Map("$FLAGS", "BIT_OR", bits, "$FLAGS"),
        send("SET://BMC/BOOT/RESTART"),
        If("$COMPLETION_CODE != 0 AND $BMC_COMPLETION_CODE != 128", {Throw("$COMPLETION_CODE")}),
        sendOrThrow("SET://BMC/BOOT/" + name, "$COMPLETION_CODE"),
    });
}

} // namespace bootConfig

BootConfig::BootConfig(Stores& stores)
{
    using namespace bootConfig;
    const TablePair words[] = {
        {"GET://BMC/BOOT/OPTION",
         "SET://BMC/BOOT/OPTION",
         {{"0", "NONE"},
          {"1", "PXE"},
          {"2", "HDD"},
          {"3", "HDD_SAFE_MODE"},
          {"4", "DIAGNOSTIC"},
          {"5", "CD"},
          {"6", "BIOS_SETUP"},
          {"7", "REMOTE_FLOPPY"},
          {"8", "REMOTE_CD"},
          {"9", "REMOTE_MEDIA"},
          {"B", "REMOTE_HDD"},
          {"F", "FLOPPY"}}},
    };
    addTables(stores, words);
    addConstants(stores, constants);
    addPackets(stores, packets);
    addFilter(stores, "GET://BMC/BOOT/FLAGS", "3");
    addFields(stores, flags, device);
    addTemplate(stores, "SET://BMC/BOOT/PERSISTANTOPTION", writeOption("PERSISTANTOPTION", "C0"));
    addTemplate(stores, "SET://BMC/BOOT/TRANSIENTOPTION", writeOption("TRANSIENTOPTION", "80"));
}

} // namespace Module::BMCConfig
