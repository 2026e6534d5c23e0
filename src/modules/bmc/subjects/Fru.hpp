#pragma once

#include "ipmi/Bytes.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/subjects/FruAreas.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Module::BMCConfig {

/// Answers "GET://BMC/FRU..." (IPMI 2.0, 34). "GET://BMC/FRU" reads the device of the parameters DEVICE_ID and
/// BASE_ADDRESS (hexadecimal; the BMC's own address unless given) into the engine's cache, and answers with its path
/// "/BMC/FRU[n]", under which RECORD/DECODED/{CHASSISAREA, BOARDAREA, PRODUCTAREA} holds the texts of the fields;
/// without parameters it lists device 0. The paths below answer from the last reading, and read a device that has none
/// yet. A field that is not there, or not sound, is an empty value. ResultStatus: 1258 for a device that the controller
/// does not have, 1119 if it cannot be read; errors of the message layer pass through. An inventory that can be read
/// but makes no sense is no error.
class Fru : public Handler {
public:
    Fru(Interpreter* interpreter, _BMC_EXEC exec);

    void process(const std::string& query, SymbolMap& result) override;

private:
    using Bytes = ipmi::Bytes;
    using Areas = std::array<Bytes, fruAreaCount>;

    /// What a controller says of a device (IPMI 2.0, 34.1).
    struct Inventory {
        std::size_t size;
        std::size_t unit; ///< bytes that one count of an offset or a length stands for
    };
    struct Piece {
        int code; ///< completion code, -1 for no answer
        Bytes bytes;
    };

    void load(const std::string& query, SymbolMap& result);
    /// The form without parameters: device 0 of the BMC, or nothing if it cannot be read.
    void listMain(const std::string& query, SymbolMap& result);
    void answerDevice(const std::string& query, const std::string& rest, SymbolMap& result);
    void answerBranch(const std::string& query, std::vector<std::string> names, SymbolMap& result);
    /// A field of `area`, or the branch of all of them if `field` is empty. False for a field that no area has.
    bool answerField(const std::string& query, FruArea kind, const Bytes& area, const std::string& field,
                     SymbolMap& result);

    /// The areas of `device` from the cache, or from the BMC if it was not read yet.
    Areas areasOf(unsigned device);
    Areas read(unsigned device);
    Inventory readInventory();
    /// Bytes from `offset` on, as many of `count` as there are.
    Bytes readBytes(const Inventory& inventory, std::size_t offset, std::size_t count);
    Piece readPiece(const Inventory& inventory, std::size_t offset, std::size_t count);
    Bytes readArea(const Inventory& inventory, std::size_t offset);
    [[noreturn]] void refuse(int code) const;

    std::string parameter(const std::string& name);

    Interpreter* interpreter;
    _BMC_EXEC exec;
    std::string asked;         ///< the query, for errors
    std::size_t pieceSize = 0; ///< bytes that the device is asked for at once
};

} // namespace Module::BMCConfig
