#include "modules/bmc/catalogue/InfoAreas.hpp"
#include "modules/bmc/catalogue/Rows.hpp"

// The product identification of Get Device ID in its forms: bytes, text, number, and the word for the board family.

namespace Module::BMCConfig {

using namespace steps;

namespace infoProducts {

constexpr TextRow filters[] = {
    {"GET://BMC/INFO/PRODUCT_RAW", "10 11"},
    {"GET://BMC/INFO/PRODUCT_RAW_BYTE1", "10"},
    {"GET://BMC/INFO/PRODUCT_RAW_BYTE2", "11"},
};

constexpr ReadRow reads[] = {
    {.key = "GET://BMC/INFO/PRODUCT_RAW", .packet = "GET://BMC/INFO/DEVICE_ID", .separator = ":SPACE"},
    {.key = "GET://BMC/INFO/PRODUCT_RAW_BYTE1", .packet = "GET://BMC/INFO/DEVICE_ID"},
    {.key = "GET://BMC/INFO/PRODUCT_RAW_BYTE2", .packet = "GET://BMC/INFO/DEVICE_ID"},
};

/// The same of another controller: the subscript is its slave address.
struct ControllerRow {
    const char* key;
    const char* address;
    const char* filter;
};
constexpr ControllerRow controllers[] = {
    {"GET://BMC/INFO/PRODUCTID_RAW[]", "$PRODUCTID_RAW_NUMBER", "GET://BMC/INFO/PRODUCT_RAW"},
    {"GET://BMC/INFO/PRODUCTID_RAW_BYTE1[]", "$PRODUCTID_RAW_BYTE1_NUMBER", "GET://BMC/INFO/PRODUCT_RAW_BYTE1"},
    {"GET://BMC/INFO/PRODUCTID_RAW_BYTE2[]", "$PRODUCTID_RAW_BYTE2_NUMBER", "GET://BMC/INFO/PRODUCT_RAW_BYTE2"},
};

Script controllerScript(const ControllerRow& row)
{
    return script({
        Copy(row.address, "$DEVICE_ID_NUMBER"),
        requireAddress("$DEVICE_ID_NUMBER"),
        sendWithoutThrow("GET://BMC/DEVICE_ID"),
        If("$COMPLETION_CODE != 0", {Throw("ERROR_CONTROLLER_NOT_PRESENT")}),
        readField(row.filter, "$RESULT", "ERROR_CONTROLLER_NOT_PRESENT"),
        Join("$RESULT", ":SPACE", "$RESULT"),
        Return("$RESULT"),
    });
}

void addProductTables(Stores& stores)
{
    // By the product id's text: both bytes in plain hexadecimal, the low one first, so that 003Eh is "3E0".
    const WordTable words[] = {
        {
            .key = "GET://BMC/INFO/PRODUCT",
            .words = {{"FIR", "3E0 400 200"},
                      {"ALDER", "280 290 2C0 2B0 3B0"},
                      {"BIRCH", "71"},
                      {"CEDAR", "3D0"},
                      {"DOGWOOD", "3A0"},
                      {"LILAC", "480"},
                      {"LINDEN", "650"},
                      {"ROWAN", "630"},
                      {"JUNIPER", "420 430 440 450 460 470 490 4A0 4C0 4D0 4E0 4F0 500 510 540 550 560 570 590 5C0 5D0 "
                                  "520 530 580 5A0 5B0 5E0"},
                      {"MAPLE", "6F0 700 710 720 730 750 760 660 670 680 690 6A0 6E0 770"},
                      {"NUTMEG", "780"}},
        },
        // The controllers of type 2, reached by USB as well: 4311h, 4312h and 4315h. All others are type 1.
        {.key = "GET://BMC/INFO/TYPE", .words = {{"2", "1143 1243 1543"}}},
    };
    addTables(stores, words);
}

/// Reads the product id's bytes, or throws `error`.
Steps readProductBytes(const char* error)
{
    return script({
        send("GET://BMC/INFO/DEVICE_ID"),
        If("$COMPLETION_CODE != 0", {Throw(error)}),
        readField("GET://BMC/INFO/PRODUCT_RAW_BYTE1", "$PRODUCT_LS", error),
        readField("GET://BMC/INFO/PRODUCT_RAW_BYTE2", "$PRODUCT_MS", error),
    });
}

/// The id as one decimal number.
Script idScript()
{
    return script({
        readProductBytes("$COMPLETION_CODE"),
        Prepend("$PRODUCT_LS", "0", "2", "$PRODUCT_LS"),
        FormatString("$PRODUCT_MS", "$PRODUCT_LS", "$RESULT"),
        Map("$RESULT", "HEX2DEC", "$RESULT"),
        Return("$RESULT"),
    });
}

Script productIdScript()
{
    return script({
        readProductBytes("$COMPLETION_CODE"),
        FormatString("$PRODUCT_LS", "$PRODUCT_MS", "$RESULT"),
        Return("$RESULT"),
    });
}

/// Turns a product id's text in $RESULT into the family's word and ends the script.
Steps returnProductWord()
{
    return script({
        LookupTable("$RESULT", "GET://BMC/INFO/PRODUCT", "$RESULT"),
        If("$RESULT == ERROR", {returnText("UNKNOWN")}),
        Return("$RESULT"),
    });
}

/// The word for a product whose number, as ID gives it, the caller passes in as "/LOCAL_ID": records that were saved on
/// another machine name their product so. Without it, for this machine's.
Script localProductScript()
{
    return script({
        String_Length("$/LOCAL_ID", "$SIZE"),
        If("$SIZE == 0", {Template("GET://BMC/INFO/ID"), Copy("$RESULT", "$/LOCAL_ID")}),
        Map("$/LOCAL_ID", "DEC2HEX", "$PRODUCT"),
        Map("$PRODUCT", "MASK", "FF", "$PRODUCT_LS"),
        Map("$PRODUCT", "RIGHT_SHIFT", "8", "$PRODUCT_MS"),
        FormatString("$PRODUCT_LS", "$PRODUCT_MS", "$RESULT"),
        returnProductWord(),
    });
}

Script typeScript()
{
    return script({
        readProductBytes("ERROR_BMC_TYPE"),
        FormatString("$PRODUCT_LS", "$PRODUCT_MS", "$RESULT"),
        LookupTable("$RESULT", "GET://BMC/INFO/TYPE", "$RESULT"),
        If("$RESULT == ERROR", {returnText("1")}),
        Return("$RESULT"),
    });
}

/// Family and product id, "FIR_3E0": boards of a family differ by the id.
Script motherboardScript()
{
    return script({
        Template("GET://BMC/INFO/PRODUCT"),
        Copy("$RESULT", "$PRODUCT"),
        Template("GET://BMC/INFO/PRODUCTID"),
        FormatString("$PRODUCT", "_", "$RESULT", "$RESULT"),
        Return("$RESULT"),
    });
}

} // namespace infoProducts

void addProducts(Stores& stores)
{
    using namespace infoProducts;
    addFilters(stores, filters);
    addProductTables(stores);
    addReads(stores, reads);
    for (const ControllerRow& row : controllers)
        addTemplate(stores, row.key, controllerScript(row));
    addTemplate(stores, "GET://BMC/INFO/ID", idScript());
    addTemplate(stores, "GET://BMC/INFO/PRODUCTID", productIdScript());
    addTemplate(stores, "GET://BMC/INFO/PRODUCT", script({Template("GET://BMC/INFO/PRODUCTID"), returnProductWord()}));
    addTemplate(stores, "GET://BMC/INFO/LOCAL/PRODUCT", localProductScript());
    addTemplate(stores, "GET://BMC/INFO/TYPE", typeScript());
    addTemplate(stores, "GET://BMC/INFO/MOTHERBOARD", motherboardScript());
}

} // namespace Module::BMCConfig
