#include "client/readings/SensorAcquisition.hpp"

#include "client/words/Numbers.hpp"
#include "tests/client/ClientFixture.hpp"

#include <algorithm>

namespace {

using client::readings::SensorDatabase;

class Acquisition : public ClientFixture {
protected:
    CSensorWrapper readOne(const Sensor& sensor, bool discrete = false)
    {
        addSensor(sensor);
        SensorDatabase db;
        GetAllSensorData(sensor.type, &db, 1000, discrete);
        return db.m_pT.at(0);
    }

    long thresholdsAsked() const
    {
        return std::count_if(sdk.asked.begin(), sdk.asked.end(),
                             [](const std::string& query) { return query.find("/THRESHOLD/") != std::string::npos; });
    }
};

TEST_F(Acquisition, OnlyBytesWithinTheRecordAreAskedFor)
{
    for (const auto& [bytes, thresholds] : {std::pair{48U, 6}, {41U, 5}, {37U, 1}, {36U, 0}, {24U, 0}}) {
        cache_map.clear();
        sdk.answers.clear();
        sdk.asked.clear();
        readOne({.recordBytes = bytes});
        EXPECT_EQ(thresholdsAsked(), thresholds) << bytes;
    }
}

TEST_F(Acquisition, OtherRecordsEmptyNodesAndFailedListsGiveNoSensor)
{
    addSensor({.recordType = 3});
    ResultMap& records = sdk.answers["/BMC/SDR/SENSOR_TYPE[2]"];
    records["/BMC/SDR[8]"] = ScriptedBackend::leaf({});
    records["/BMC/SDR[9]"] = ScriptedBackend::leaf({""});
    records["/BMC/SDR[0]"].mType = NODE_NONLEAF;
    SensorDatabase db;
    GetAllSensorData(2, &db, 1000);
    GetAllSensorData(99, &db, 1000);
    EXPECT_EQ(db.m_tdLen(), 0);
}

TEST_F(Acquisition, ReadingsBecomeFixedPointNumbersAndText)
{
    const std::string longList(600, 'x');
    for (const auto& [value, number, text] : {std::tuple{"12.05", 12050, "12.05"},
                                              {"-3.5", -3500, "-3.5"},
                                              {"READING_UNAVAILABLE", noValue, "READING_UNAVAILABLE"},
                                              {",,IERR, THERMAL_TRIP", 0, "IERR (Internal Error,Thermal Trip"},
                                              {longList.c_str(), 0, longList.c_str() + 89},
                                              {"1e30", greatestValue, "1e30"},
                                              {"-inf", std::numeric_limits<int>::min(), "-inf"},
                                              {"nan", noValue, "nan"}}) {
        cache_map.clear();
        const CSensorWrapper sensor = readOne({.value = value});
        EXPECT_EQ(sensor.m_cData.m_iValue, number) << value;
        EXPECT_EQ(sensor.m_cData.m_cValueString.narrow(), text);
    }
}

TEST_F(Acquisition, FigureQueriesFollowTheSelector)
{
    const Sensor sensor;
    addSensor(sensor);
    EXPECT_EQ(ExecuteThresholdQuery(1, 0x20, 0, 0, 1, 10), noValue);
    EXPECT_TRUE(sdk.asked.empty());
    EXPECT_EQ(ExecuteThresholdQuery(1, 0x20, 0, 0, 1, 1), 14);
    EXPECT_EQ(ExecuteThresholdQuery(1, 0x20, 0, 0, 1, 8), 3);
    EXPECT_EQ(ExecuteThresholdQuery(1, 0x20, 0, 0, 1, 5), 9);
    sdk.answers.erase(sensor.path() + "/INTERPRET_SENSOR_VALUE[13]");
    EXPECT_EQ(ExecuteThresholdQuery(1, 0x20, 0, 0, 1, 2), 13) << "raw, since the translation failed";
    EXPECT_EQ(ExecuteThresholdQuery(2, 0x20, 0, 0, 1, 2), noValue);
}

} // namespace
