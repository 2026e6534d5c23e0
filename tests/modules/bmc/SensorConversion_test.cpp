#include "modules/bmc/subjects/SensorConversion.hpp"
#include "modules/bmc/subjects/SensorStates.hpp"
#include "modules/bmc/subjects/SensorUnits.hpp"

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
    const struct {
        std::uint8_t form;
        int x;
        double value;
    } cases[] = {{1, 1, 0},
                 {5, -2, 0.01},
                 {6, 10, 1024},
                 {11, 2, 0.125},
                 {11, 0, 0},
                 {12, 5, 0},
                 {0x3F, 5, 0},
                 {7, 255, 0},
                 {7, 4, 1 / ((3 * 4 + 50) * 0.1)},
                 {7, 0, 1 / ((3 * 1 + 50) * 0.1)},
                 {7, 1, 1 / ((3 * 1 + 50) * 0.1)}};
    for (const auto& item : cases)
        EXPECT_NEAR(convert(item.form, 3, item.x, 5, -1, 1), item.value, 1e-12) << int(item.form) << " of " << item.x;
    EXPECT_EQ(convert(7, 0, 9, 0, 0, 0), 0.0) << "no division by 0";
}

TEST(SensorConversion, ToleranceAndAccuracyAreTakenFromTheirBits)
{
    double tolerance = 0;
    CVTCUtilities::CalculateTolerance(3, 2, -1, 0, &tolerance);
    EXPECT_NEAR(tolerance, 1.2, 1e-12);
    CVTCUtilities::CalculateTolerance(0x23, 2, -1, 0, &tolerance);
    EXPECT_NEAR(tolerance, -14.0, 1e-12);
    CVTCUtilities::CalculateTolerance(3, 2, -1, 7, &tolerance);
    EXPECT_EQ(tolerance, 0.0);
    int factor = 0;
    CVTCUtilities::CalculateMultiplier(0x34, 0x7F, &factor);
    EXPECT_EQ(factor, 0x134);
    CVTCUtilities::CalculateOffset(0xFF, 0xE5, &factor);
    EXPECT_EQ(factor, -1);
    unsigned accuracy = 0;
    CVTCUtilities::CalculateAccuracy(0xC5, 0x7F, &accuracy);
    EXPECT_EQ(accuracy, 0x1C5U);
}

TEST(SensorStates, NamesFollowTheReadingType)
{
    const struct {
        std::uint8_t reading, sensor, states1, states2;
        const char* names;
    } cases[] = {
        {0x01, 1, 0xFF, 0x7F, "UNKNOWN"}, // thresholds have no states
        {0x03, 2, 0x03, 0, "STATE_ASSERTED"},
        {0x03, 2, 0x00, 0, "UNKNOWN"},
        {0x08, 4, 0x00, 0, "DEVICE_REMOVED/DEVICE_ABSENT"},
        {0x08, 4, 0x02, 0, "DEVICE_INSERTED/DEVICE_PRESENT"},
        {0x09, 4, 0x04, 0, "UNKNOWN"},
        {0x6F, 0x07, 0xA0, 0x02, "CONFIGURATION_ERROR, PROCESSOR_PRESENCE_DETECTED, THREMAL_PRESENCE_DETECTED"},
        {0x6F, 0x29, 0xF8, 0x7F, "UNKNOWN"}, // bits above the names
        {0x70, 0x0D, 0x02, 0x04, "DEVICE_FAULT, DEVICE_INSERTED"},
        {0x7E, 0xC7, 0xFF, 0x7F, "UNKNOWN"},
    };
    for (const auto& item : cases)
        EXPECT_EQ(nameStates(item.reading, item.sensor, item.states1 | item.states2 << 8), item.names)
            << int(item.reading) << " of sensor type " << int(item.sensor);
}

TEST(SensorUnits, ModifierAndPercentAreWrittenIntoTwentyBytes)
{
    char text[unitTextSize];
    EXPECT_EQ(FindAndLoadTemperatureUnit(3, 0, text), 0);
    EXPECT_EQ(FindAndLoadTemperatureUnit(1, 5, text), 0);
    EXPECT_EQ(FindAndLoadTemperatureUnit(2, 0, text), 1);
    EXPECT_STREQ(text, "Degrees Fahrenheit");
    const struct {
        std::uint8_t base, modifier, units1;
        const char* text;
    } cases[] = {
        {4, 0, 0, "Volts"},    {6, 24, 2, "Watts/Hour"},           {6, 24, 4, "Watts*Hour"},      {18, 0, 1, "RPM%"},
        {49, 0, 0, "Gilerts"}, {90, 90, 2, "UncorrectableError/"}, {3, 0, 0xC0, "Degrees Kelvin"}};
    for (const auto& item : cases) {
        EXPECT_EQ(FindAndLoadNonTemperatureUnit(item.base, item.modifier, item.units1, text), 1);
        EXPECT_STREQ(text, item.text);
    }
    EXPECT_EQ(FindAndLoadNonTemperatureUnit(91, 0, 0, text), 0);
}

} // namespace
