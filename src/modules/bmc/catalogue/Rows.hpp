#pragma once

#include "modules/bmc/engine/Stores.hpp"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

/// The forms in which the catalogue is written down: rows of blank-separated text, one entry a row, and the one loop
/// that adds them to the stores. A key that is added twice is a fault of the catalogue and throws std::logic_error.
namespace Module::BMCConfig {

/// A constant or filter, or a packet that is the caller's as a whole: its key and its values, separated by blanks.
struct TextRow {
    const char* key;
    const char* values;
};

/// A constant that is one of IPMI's numbers.
struct CodeConstant {
    const char* key;
    std::uint8_t code;
};

/// A request to a controller.
struct PacketRow {
    const char* key;
    const char* command;   ///< of the list of commands, which has its network function
    const char* data = ""; ///< bytes and symbols, separated by blanks
    const char* target = "$/BMC/BASE_ADDRESS";
    const char* lun = "00";
};

/// A branch of the tree: its key and its children, separated by blanks.
struct BranchRow {
    const char* key;
    const char* children;
};

/// A table: its key and its pairs, from what is looked up to what comes out.
struct TableRow {
    const char* key;
    std::vector<std::pair<const char*, const char*>> pairs;
};

/// A GET table and the SET table that is its inverse, from one list of {BMC's text, word}.
struct TablePair {
    const char* getKey;
    const char* setKey;
    std::vector<std::pair<const char*, const char*>> pairs;
};

/// A table in which many texts give few words: its key, and each word with its texts, separated by blanks.
struct WordTable {
    const char* key;
    std::vector<std::pair<const char*, const char*>> words;
};

/// A read of one field: sends the packet, and on completion code 0 takes the filter's fields, passes them through the
/// map function and the table where they are given, and returns them; throws the error otherwise.
struct ReadRow {
    const char* key;
    const char* error = "$COMPLETION_CODE"; ///< a name; by default the code's own
    const char* packet = nullptr;           ///< the key unless given
    const char* filter = nullptr;           ///< the key unless given
    const char* fields = nullptr;           ///< makes the filter of the key: "4 3 2 1"
    const char* map = nullptr;              ///< "HEX2DEC", or with an argument "MASK 7F"; several separated by ", "
    const char* table = nullptr;
    const char* separator = nullptr; ///< joins several fields to one text; without it they would read as children
    const char* absent = nullptr;    ///< answered, not thrown, where the BMC does not know the command
    bool isNumber = false;           ///< the fields, high byte first, are one decimal number
};

void addConstants(Stores& stores, std::span<const TextRow> rows);
void addConstants(Stores& stores, std::span<const CodeConstant> rows);
/// The constants of all network functions and commands.
void addCommands(Stores& stores);
void addPackets(Stores& stores, std::span<const TextRow> rows);
void addPackets(Stores& stores, std::span<const PacketRow> rows);
void addPacket(Stores& stores, const std::string& key, const std::string& command, const std::string& data);
void addFilters(Stores& stores, std::span<const TextRow> rows);
void addFilter(Stores& stores, const std::string& key, const std::string& fields);
void addTables(Stores& stores, std::span<const TableRow> rows);
void addTables(Stores& stores, std::span<const TablePair> rows);
void addTables(Stores& stores, std::span<const WordTable> rows);
/// One table that is made, not written down.
void addTable(Stores& stores, const std::string& key, Table table);
void addBranches(Stores& stores, std::span<const BranchRow> rows);
void addReads(Stores& stores, std::span<const ReadRow> rows);
void addTemplate(Stores& stores, const std::string& key, Script script);

} // namespace Module::BMCConfig
