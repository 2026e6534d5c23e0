#include "ipmi/Hex.hpp"
#include "modules/bmc/subjects/SensorConversion.hpp"
#include "modules/bmc/subjects/SensorStates.hpp"
#include "modules/bmc/subjects/SensorUnits.hpp"
#include "tests/support/TextTable.hpp"

#include <cmath>

#include <gtest/gtest.h>

using Module::BMCConfig::CVTCUtilities;
using Module::BMCConfig::FindAndLoadNonTemperatureUnit;
using Module::BMCConfig::FindAndLoadTemperatureUnit;
using Module::BMCConfig::nameStates;
using Module::BMCConfig::unitTextSize;

namespace {

double convert(std::uint8_t linearisation, int m, int x, int b, int rExponent, int bExponent)
{
    double value = -1.0;
    CVTCUtilities::ConversionFormula(linearisation, m, x, b, rExponent, bExponent, &value);
    return value;
}

TEST(SensorConversion, ReadingsFollowTheDataFormat)
{
    const struct {
        std::uint8_t raw, format;
        int value;
    } cases[] = {{0xFF, 0, 255},  {0xFF, 1, 0},   {0xFF, 2, -1},  {0xFF, 3, -1},  {0x80, 1, -127},
                 {0x80, 2, -128}, {0x7F, 1, 127}, {0x7F, 2, 127}, {0xE1, 1, -30}, {0xE2, 2, -30}};
    for (const auto& item : cases) {
        int value = 0;
        CVTCUtilities::GetSignedData(item.raw, item.format, &value);
        EXPECT_EQ(value, item.value) << int(item.raw) << " in format " << int(item.format);
    }
}

// IPMI 2.0, 36.3: y = (M x + B 10^K1) 10^K2, here in another order of computation.
TEST(SensorConversion, LinearSensorsFollowTheFormulaOverAllExponents)
{
    for (const int m : {-512, -1, 0, 98, 511})
        for (const int b : {-512, 0, 125, 511})
            for (int r = -8; r < 8; ++r)
                for (int k = -8; k < 8; ++k)
                    for (const int x : {-128, -1, 0, 127, 255}) {
                        const double mx = m * x * std::pow(10, r), bx = b * std::pow(10, k + r);
                        ASSERT_NEAR(convert(0, m, x, b, r, k), mx + bx, (std::fabs(mx) + std::fabs(bx)) * 1e-14)
                            << m << " " << b << " " << r << " " << k << " " << x;
                    }
}

TEST(SensorConversion, OtherFormsTakeTheRawReading)
{
    using Row = std::tuple<std::uint8_t, int, double>;
    for (const auto& [form, x, value] :
         {Row{1, 1, 0}, Row{5, -2, 0.01}, Row{6, 10, 1024}, Row{11, 2, 0.125}, Row{11, 0, 0}, Row{12, 5, 0},
          Row{0x3F, 5, 0}, Row{7, 255, 0}, Row{7, 4, 1 / 6.2}, Row{7, 0, 1 / 5.3}, Row{7, 1, 1 / 5.3}})
        EXPECT_NEAR(convert(form, 3, x, 5, -1, 1), value, 1e-12) << int(form) << " of " << x;
    EXPECT_EQ(convert(7, 0, 9, 0, 0, 0), 0.0) << "no division by 0";
}

TEST(SensorConversion, ToleranceIsSignedAndOfLinearSensorsAlone)
{
    double tolerance = 0;
    CVTCUtilities::CalculateTolerance(3, 2, -1, 0, &tolerance);
    EXPECT_NEAR(tolerance, 1.2, 1e-12);
    CVTCUtilities::CalculateTolerance(0x23, 2, -1, 0, &tolerance);
    EXPECT_NEAR(tolerance, -14.0, 1e-12);
    CVTCUtilities::CalculateTolerance(3, 2, -1, 7, &tolerance);
    EXPECT_EQ(tolerance, 0.0);
}

TEST(SensorStates, NamesFollowTheReadingType)
{
    // reading type, sensor type, states; those above the names are left out, and thresholds have none
    constexpr char rows[] = R"(
01 01 FF 7F | UNKNOWN
03 02 03 00 | STATE_ASSERTED
03 02 00 00 | UNKNOWN
08 04 00 00 | DEVICE_REMOVED/DEVICE_ABSENT
08 04 02 00 | DEVICE_INSERTED/DEVICE_PRESENT
09 04 04 00 | UNKNOWN
6F 07 A0 02 | CONFIGURATION_ERROR, PROCESSOR_PRESENCE_DETECTED, THREMAL_PRESENCE_DETECTED
6F 29 F8 7F | UNKNOWN
70 0D 02 04 | DEVICE_FAULT, DEVICE_INSERTED
7E C7 FF 7F | UNKNOWN)";
    for (const auto& row : rowsOf(rows)) {
        const auto bytes = ipmi::parseBytes(row[0]);
        EXPECT_EQ(nameStates(bytes[0], bytes[1], bytes[2] | bytes[3] << 8), row[1]) << row[0];
    }
}

TEST(SensorUnits, ModifierAndPercentAreWrittenIntoTwentyBytes)
{
    char text[unitTextSize];
    EXPECT_EQ(FindAndLoadTemperatureUnit(3, 0, text), 0);
    EXPECT_EQ(FindAndLoadTemperatureUnit(1, 5, text), 0);
    EXPECT_EQ(FindAndLoadTemperatureUnit(2, 0, text), 1);
    EXPECT_STREQ(text, "Degrees Fahrenheit");
    constexpr char rows[] = R"(
04 00 00 | Volts
06 18 02 | Watts/Hour
06 18 04 | Watts*Hour
12 00 01 | RPM%
31 00 00 | Gilerts
5A 5A 02 | UncorrectableError/
03 00 C0 | Degrees Kelvin)";
    for (const auto& row : rowsOf(rows)) {
        const auto bytes = ipmi::parseBytes(row[0]);
        EXPECT_EQ(FindAndLoadNonTemperatureUnit(bytes[0], bytes[1], bytes[2], text), 1);
        EXPECT_EQ(text, row[1]);
    }
    EXPECT_EQ(FindAndLoadNonTemperatureUnit(91, 0, 0, text), 0);
}

} // namespace
