#pragma once

#include "tests/client/ClientFixture.hpp"

#include <deque>
#include <optional>

/// A controller's event log as far as a reader can tell, translated: records with ids, refused ids, stamps of erasures.
class ModelLog : public ScriptedBackend {
public:
    struct Record {
        unsigned id;
        std::string raw, text;
    };

    using ScriptedBackend::get;
    void get(SDK::QueryMap queries, ResultMap& results) override
    {
        const auto& [query, parameters] = *queries.begin();
        pass();
        if (onGet)
            onGet(query);
        const bool reads = query == "/BMC/SEL/TRANSLATED";
        if (reads)
            marks.push_back(parameters.at("RECORD_ID"));
        if (failure)
            throw ResultStatus(*failure, "no answer", query, COMMAND_GET);
        if (!reads && !givesInfo)
            throw ResultStatus(ERROR_BMC_INTERFACE_ERROR, "no info", query, COMMAND_GET);
        if (!reads) {
            results[query] = leaf({std::to_string(erased)});
            return;
        }
        isLocal = parameters.contains("LOCALE") && parameters.at("LOCALE") == "de_DE.utf8";
        read(placeOf(std::stoul(marks.back(), nullptr, 16)), std::stoul(parameters.at("RANGE")), results);
    }

    /// A record of that id; `data` are the three bytes of event data.
    void add(unsigned id, int sensorType, int trigger, const std::string& data, const std::string& text = "some event",
             unsigned seconds = 0x12345678)
    {
        char raw[80];
        std::snprintf(raw, sizeof raw, "%02X %02X 02 %02X %02X %02X %02X 20 00 04 %02X 30 %02X %s", id & 0xFF, id >> 8,
                      seconds & 0xFF, seconds >> 8 & 0xFF, seconds >> 16 & 0xFF, seconds >> 24, sensorType, trigger,
                      data.c_str());
        records.push_back({id, raw, text});
    }

    std::deque<Record> records;
    std::vector<std::string> marks; ///< record ids that were asked for
    std::optional<_ERROR_NAME> failure;
    bool givesInfo = true;
    unsigned erased = 0x4FFFFFFF;
    std::string unreadable; ///< the text of a record that never reads
    long exchanges = 0;
    FakeClock* clock = nullptr;
    std::chrono::nanoseconds perExchange{0};

private:
    void pass()
    {
        ++exchanges;
        if (clock)
            clock->advance(perExchange);
    }

    std::size_t placeOf(unsigned long id) const
    {
        if (records.empty() || id == 0)
            return 0;
        const auto found = std::ranges::find(records, id, &Record::id);
        if (id != 0xFFFF && found == records.end())
            throw ResultStatus(ERROR_INVALID_DATAVAL, "no such record", "SEL", COMMAND_GET);
        return id == 0xFFFF ? records.size() - 1 : static_cast<std::size_t>(found - records.begin());
    }

    void read(std::size_t first, std::size_t range, ResultMap& results)
    {
        _XNode& list = results["/BMC/SEL/TRANSLATED"];
        list.mType = NODE_NONLEAF;
        for (std::size_t place = first; place < std::min(records.size(), first + range); ++place) {
            if (!unreadable.empty() && records[place].text == unreadable)
                throw ResultStatus(ERROR_BMC_INTERFACE_ERROR, "unreadable", "SEL", COMMAND_GET);
            if (place > first)
                pass();
            answerOne(results, list, place);
        }
    }

    void answerOne(ResultMap& results, _XNode& list, std::size_t place)
    {
        char next[8];
        std::snprintf(next, sizeof next, "%04X", place + 1 == records.size() ? 0xFFFF : records[place + 1].id);
        const std::string key = "/BMC/SEL/TRANSLATED[" + std::to_string(list.mXNodeList.size()) + "]";
        list.mXNodeList.push_back(key);
        const auto& [id, raw, text] = records[place];
        std::vector<std::pair<std::string, std::string>> fields = {{"/RAW", raw},
                                                                   {"/NEXT_SEL_RECORD_ID", next},
                                                                   {"/DESCR", isLocal ? "auf Deutsch" : text},
                                                                   {"/SEVERITY", "CRITICAL"},
                                                                   {"/TIMESTAMP", "11/14/2023-22:13:20"}};
        if (isLocal)
            fields.emplace_back("/ENGLISH", text);
        for (const auto& [field, value] : fields) {
            results[key].mXNodeList.push_back(key + field);
            results[key + field] = leaf({value});
        }
    }

    bool isLocal = false;
};
