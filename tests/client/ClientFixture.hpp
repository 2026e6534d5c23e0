#pragma once

#include "client/groups/BaseContainer.hpp"
#include "client/query/CacheState.hpp"
#include "client/query/Publication.hpp"
#include "client/query/QLInterface.hpp"
#include "client/words/Trace.hpp"
#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "tests/support/FakeClock.hpp"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

using namespace client::query;
using namespace client::words;

/// What a test says of one sensor; it becomes an SDR in text and the answers to the sensor's queries.
struct Sensor {
    int number = 1;
    int type = 2;
    std::string name = "P12V";
    std::string value = "12.050000";
    /// In the order of the queries' words below; "NOT SUPPORTED" for none. Raw n reads as n volts, degrees, ...
    std::vector<std::string> bounds = {"10", "11", "9", "13", "14", "15"};
    int linearization = 0;
    int unit = 4;
    int recordType = 1;
    std::size_t recordBytes = 48;
    int lun = 0;
    int owner = 0x20;
    int eventType = 1;

    std::string path() const
    {
        return "/BMC/SENSOR[" + std::to_string(number) + "]/OWNER[" + std::to_string(owner) + "]/LUN[" +
               std::to_string(lun) + "]";
    }
    std::string record() const
    {
        std::vector<int> bytes(64, 0x55);
        bytes[4] = recordType;
        bytes[6] = owner;
        bytes[7] = lun;
        bytes[8] = number;
        const std::size_t typePlace = recordType == 3 ? 11 : 13;
        bytes[typePlace] = type;
        bytes[typePlace + 1] = eventType;
        bytes[22] = unit;
        bytes[24] = linearization;
        std::string text;
        for (std::size_t byte = 1; byte <= recordBytes; ++byte) {
            char hex[12];
            std::snprintf(hex, sizeof hex, byte == 1 ? "%x" : " %x", bytes[byte]);
            text += hex;
        }
        return text;
    }
};

/// An SDK made of a list of answers: leaves for the queries it knows, ResultStatus for all others.
class ScriptedBackend : public QueryBackend {
public:
    void get(const std::string& query, ResultMap& results) override
    {
        asked.push_back(query);
        if (onGet)
            onGet(query);
        const auto answer = answers.find(query);
        if (answer == answers.end())
            throw ResultStatus(ERROR_INVALID_QUERY, "no such answer", query, COMMAND_GET);
        results = answer->second;
    }
    void get(SDK::QueryMap queries, ResultMap& results) override
    {
        for (const auto& [query, unused] : queries)
            get(query, results);
    }
    void setFlags(unsigned char flags) override { flagsSet.push_back(flags); }
    bool repositoryChanged() override { return std::exchange(changed, false); }
    bool readRepository(std::chrono::nanoseconds time) override { return onRead && onRead(time); }

    /// `query` answers itself with one value.
    void answer(const std::string& query, const std::string& value) { answers[query] = {{query, leaf({value})}}; }
    static _XNode leaf(std::vector<std::string> values)
    {
        _XNode node;
        node.mXNodeList = std::move(values);
        return node;
    }
    void addSensor(const Sensor& sensor)
    {
        static const char* const words[] = {"LOWER_CRITICAL",    "LOWER_NONCRITICAL", "LOWER_NONRECOVERABLE",
                                            "UPPER_NONCRITICAL", "UPPER_CRITICAL",    "UPPER_NONRECOVERABLE"};
        const std::string list = "/BMC/SDR/SENSOR_TYPE[" + std::to_string(sensor.type) + "]";
        ResultMap& records = answers[list];
        records["/BMC/SDR[" + std::to_string(records.size() + 1) + "]"] = leaf({sensor.record()});
        const std::string path = sensor.path();
        answer(path + "/NAME", sensor.name);
        answer(path + "/INTERPRET_SENSOR_VALUE", sensor.value);
        for (std::size_t bound = 0; bound < std::size(words); ++bound) {
            answer(path + "/THRESHOLD/" + words[bound], sensor.bounds[bound]);
            answer(path + "/INTERPRET_SENSOR_VALUE[" + sensor.bounds[bound] + "]", sensor.bounds[bound] + ".000000");
        }
        answer(path + "/RESOLUTION", "3");
        answer(path + "/TOLERANCE", "2.000000");
        answer(path + "/ACCURACY", "7");
    }
    long timesAsked(const std::string& query) const { return std::count(asked.begin(), asked.end(), query); }

    std::map<std::string, ResultMap> answers;
    std::function<void(const std::string&)> onGet;
    std::vector<std::string> asked;
    std::vector<int> flagsSet;
    bool changed = false;                                 ///< the repository
    std::function<bool(std::chrono::nanoseconds)> onRead; ///< reads a piece of it, and says whether there is more
};

/// A client's world without hardware: scripted SDK, standing clock, empty cache, silent diagnostics.
class ClientFixture : public testing::Test {
protected:
    ClientFixture()
    {
        forgetAll();
        in_refresh = 0;
        bQLInitialized = false;
        start_cache_list = 0;
        sleep_interval = shortestSleepSeconds;
        last_cache_ref_time = 0;
        last_req_time = 0;
        traceWanted = false;
    }

    void addSensor(const Sensor& sensor) { sdk.addSensor(sensor); }
    /// A changed reading, as a refresh would bring it.
    void changeReading(const Sensor& sensor, const std::string& value)
    {
        sdk.answer(sensor.path() + "/INTERPRET_SENSOR_VALUE", value);
        cache_map.clear();
    }

    /// Leaves nothing that answers.
    void forget()
    {
        sdk.answers.clear();
        cache_map.clear();
    }

    /// What `get` answers for an attribute; its result, negative, if that is not 0.
    static long number(BaseAccessor& group, int (BaseAccessor::*get)(_SMAttribute, int, long&), _SMAttribute attribute,
                       int row)
    {
        long out = -1;
        const int result = (group.*get)(attribute, row, out);
        return result ? -result : out;
    }
    static long intInfo(BaseAccessor& group, _SMAttribute attribute, int row = 0)
    {
        return number(group, &BaseAccessor::getIntInfo, attribute, row);
    }
    static long intData(BaseAccessor& group, _SMAttribute attribute, int row = 0)
    {
        return number(group, &BaseAccessor::getIntData, attribute, row);
    }
    /// The same for texts, "! 9" for a result.
    static std::string text(BaseAccessor& group, int (BaseAccessor::*get)(_SMAttribute, int, char*&),
                            _SMAttribute attribute, int row)
    {
        char* out = nullptr;
        const int result = (group.*get)(attribute, row, out);
        std::string copy = out ? out : "none";
        std::free(out);
        return result ? "! " + std::to_string(result) : copy;
    }
    static std::string strInfo(BaseAccessor& group, _SMAttribute attribute, int row = 0)
    {
        return text(group, &BaseAccessor::getStrInfo, attribute, row);
    }
    static std::string strData(BaseAccessor& group, _SMAttribute attribute, int row = 0)
    {
        return text(group, &BaseAccessor::getStrData, attribute, row);
    }

    ScriptedBackend sdk;
    ScopedSeam<QueryBackend> useSdk{sdk};
    FakeClock clock;
    ScopedSeam<Clock> useClock{clock};
};
