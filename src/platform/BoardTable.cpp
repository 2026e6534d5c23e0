#include "platform/BoardTable.hpp"

#include <algorithm>
#include <cstring>

namespace Platform {

namespace {

/// One row a board. Firmware of some boards fills the name up with "_", so these stand here twice.
constexpr BoardRow boards[] = {
    {"Alder-1", "ALDER_PLATFORM"},     {"Alder-1_", "ALDER_PLATFORM"},    {"Alder-2", "ALDER_PLATFORM2"},
    {"Alder-2_", "ALDER_PLATFORM2"},   {"Alder-3", "ALDER_PLATFORM3"},    {"Alder-3_", "ALDER_PLATFORM3"},
    {"Birch-1", "BIRCH_PLATFORM"},     {"Birch-2", "BIRCH_PLATFORM"},     {"Cedar-1", "CEDAR_PLATFORM"},
    {"Cedar-1_", "CEDAR_PLATFORM"},    {"Dogwood-1", "DOGWOOD_PLATFORM"}, {"Dogwood-2", "DOGWOOD_PLATFORM"},
    {"Elm-1", "ELM_PLATFORM"},         {"Elm-1_", "ELM_PLATFORM"},        {"Fir-1", "FIR_PLATFORM"},
    {"Fir-2", "FIR_PLATFORM"},         {"Juniper-1", "JUNIPER_PLATFORM"}, {"Juniper-2", "JUNIPER_PLATFORM"},
    {"Juniper-3", "JUNIPER_PLATFORM"}, {"Larch-1", "JUNIPER_PLATFORM"},   {"Larch-2", "JUNIPER_PLATFORM"},
    {"Larch-3", "JUNIPER_PLATFORM"},   {"Larch-4", "JUNIPER_PLATFORM"},   {"Larch-5", "JUNIPER_PLATFORM"},
    {"Lilac-1", "LILAC_PLATFORM"},     {"Lilac-1_", "LILAC_PLATFORM"},    {"Linden-1", "LINDEN_PLATFORM"},
    {"Linden-2", "LINDEN_PLATFORM"},   {"Maple-1", "MAPLE_PLATFORM"},     {"Maple-2", "MAPLE_PLATFORM"},
    {"Maple-2_", "MAPLE_PLATFORM"},    {"Nutmeg-1", "NUTMEG_PLATFORM"},   {"Rowan-1", "ROWAN_PLATFORM"},
    {"Rowan-2", "ROWAN_PLATFORM"},
};

constexpr SocketSensors ProcStatusSensorNumbersAlder = {0x90, 0x91, 0x92, 0x93};
constexpr SocketSensors ProcStatusSensorNumbersElm = {0x90, 0x91, 0xFF, 0xFF};
constexpr SocketSensors ProcStatusSensorNumbersDogwood = {0x0F, 0xFF, 0xFF, 0xFF};
constexpr SocketSensors ProcStatusSensorNumbersCedar = {0x10, 0xFF, 0xFF, 0xFF};
constexpr SocketSensors ProcStatusSensorNumbersFir = {0x60, 0x61, 0xFF, 0xFF};
constexpr SocketSensors ProcStatusSensorNumbersInvalid = {0xFF, 0xFF, 0xFF, 0xFF};

constexpr SocketSensors ProcThermSensorNumbersAlder = {0xC0, 0xC1, 0xC2, 0xC3};
constexpr SocketSensors ProcThermSensorNumbersElm = {0xC0, 0xC1, 0xFF, 0xFF};
constexpr SocketSensors ProcThermSensorNumbersDogwood = {0x10, 0xFF, 0xFF, 0xFF};
constexpr SocketSensors ProcThermSensorNumbersCedar = {0x11, 0xFF, 0xFF, 0xFF};
constexpr SocketSensors ProcThermSensorNumbersFir = {0x62, 0x63, 0xFF, 0xFF};
constexpr SocketSensors ProcThermSensorNumbersInvalid = {0xFF, 0xFF, 0xFF, 0xFF};

/// Platforms without a row, Birch among them, have no numbers that are known.
constexpr PlatformSensors sensors[] = {
    {"ALDER_PLATFORM", ProcStatusSensorNumbersAlder, ProcThermSensorNumbersAlder, 0xA0, 32},
    {"ALDER_PLATFORM2", ProcStatusSensorNumbersAlder, ProcThermSensorNumbersAlder, 0xA0, 32},
    {"ALDER_PLATFORM3", ProcStatusSensorNumbersAlder, ProcThermSensorNumbersAlder, 0xA0, 32},
    {"ELM_PLATFORM", ProcStatusSensorNumbersElm, ProcThermSensorNumbersElm, 0xA0, 16},
    {"DOGWOOD_PLATFORM", ProcStatusSensorNumbersDogwood, ProcThermSensorNumbersDogwood, 0x20, 4},
    {"CEDAR_PLATFORM", ProcStatusSensorNumbersCedar, ProcThermSensorNumbersCedar, 0x20, 4},
    {"FIR_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersFir, 0xE0, 12},
    {"LILAC_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersFir, 0xE0, 12},
    {"JUNIPER_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersFir, 0xE0, 12},
    {"LINDEN_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersInvalid, 0xE0, 16},
    {"ROWAN_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersInvalid, 0xE0, 16},
    {"MAPLE_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersInvalid, 0xE0, 16},
    {"NUTMEG_PLATFORM", ProcStatusSensorNumbersFir, ProcThermSensorNumbersInvalid, 0xE0, 16},
};

constexpr PlatformSensors noSensors = {"", ProcStatusSensorNumbersInvalid, ProcThermSensorNumbersInvalid, 0, 0};

} // namespace

std::span<const BoardRow> knownBoards()
{
    return boards;
}

const PlatformSensors& sensorsOfPlatform(const char* platform)
{
    const auto* const row = std::ranges::find_if(
        sensors, [platform](const PlatformSensors& each) { return std::strcmp(each.platform, platform) == 0; });
    return row == std::end(sensors) ? noSensors : *row;
}

} // namespace Platform
