#pragma once

#include "ipmi/Hex.hpp"
#include "modules/bmc/BMCConfigModule.hpp"
#include "modules/bmc/subjects/Cache.hpp"
#include "tests/support/BmcTest.hpp"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// A BMC with a record repository, and the engine on it with an empty cache.
class SdrFixture : public BmcTest {
protected:
    using Bytes = std::vector<std::uint8_t>;

    SdrFixture()
    {
        Platform::PlatformImpl::CreateInstance()->platformName();
        Module::BMCConfig::Cache::instance().Clear();
        bmc.on(0x0A, 0x22, [this](const IpmiRequest&) {
            ++reservation;
            return IpmiAnswer{0, reservation, 0x12};
        });
        bmc.on(0x0A, 0x23, [this](const IpmiRequest& request) { return readRecord(request); });
        bmc.requests.clear();
    }

    /// A record of `type` with `id` at its head; `body` follows the length byte.
    static Bytes record(unsigned id, std::uint8_t type, Bytes body)
    {
        Bytes bytes{static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(id >> 8), 0x51, type,
                    static_cast<std::uint8_t>(body.size())};
        bytes.insert(bytes.end(), body.begin(), body.end());
        return bytes;
    }

    /// A full record of a BMC's sensor, all of whose bytes behind the reading type are `rest`, the name aside.
    static Bytes full(unsigned id, std::uint8_t number, std::uint8_t type, Bytes rest, Bytes name = {0xC1, 'T'})
    {
        Bytes body{0x20, 0, number, 7, 1, 0x7F, 0x68, type, 1, 0, 0, 0, 0, 0, 0};
        body.insert(body.end(), rest.begin(), rest.end());
        body.resize(42);
        body.insert(body.end(), name.begin(), name.end());
        return record(id, 1, body);
    }

    static Bytes compact(unsigned id, std::uint8_t number, std::uint8_t type, std::uint8_t readingType)
    {
        Bytes body{0x20, 0, number, 7, 1, 0, 0, type, readingType, 0, 0, 0, 0, 0xFF, 0x7F};
        body.resize(26);
        body.insert(body.end(), {0xC2, 'D', '0'});
        return record(id, 2, body);
    }

    /// The record or log entry of that id among `all`, the first one for id 0.
    static std::vector<Bytes>::iterator findRecord(std::vector<Bytes>& all, int id)
    {
        return id == 0
                   ? all.begin()
                   : std::ranges::find_if(all, [id](const Bytes& bytes) { return (bytes[0] | bytes[1] << 8) == id; });
    }

    /// The completion code and the id of the one behind it, as an answer with it begins.
    static IpmiAnswer headBefore(const std::vector<Bytes>& all, std::vector<Bytes>::iterator found)
    {
        return found + 1 == all.end() ? IpmiAnswer{0, 0xFF, 0xFF} : IpmiAnswer{0, found[1][0], found[1][1]};
    }

    /// Answers Get SDR as the repository `records` stands there; a lost reservation is refused.
    IpmiAnswer readRecord(const IpmiRequest& request)
    {
        const Bytes& data = request.data;
        const auto found = findRecord(records, data[2] | data[3] << 8);
        if (data[0] != reservation)
            return {0xC5};
        if (found == records.end())
            return {0xCB};
        IpmiAnswer answer = headBefore(records, found);
        const std::size_t first = std::min<std::size_t>(data[4], found->size());
        const std::size_t last = std::min(first + data[5], found->size());
        answer.insert(answer.end(), found->begin() + static_cast<int>(first), found->begin() + static_cast<int>(last));
        return answer;
    }

    ResultMap get(const std::string& query)
    {
        ResultMap results;
        Module::BMCConfig::BMCConfigModule().Process(query, results);
        return results;
    }

    /// The first value of the query's own node, empty without one.
    std::string text(const std::string& query)
    {
        const ResultMap results = get(query);
        const auto found = results.find(query);
        return found == results.end() || found->second.mXNodeList.empty() ? "" : found->second.mXNodeList.front();
    }

    /// A record as the cache has it.
    static std::string line(std::span<const std::uint8_t> bytes) { return " " + ipmi::hexBytes(bytes); }

    /// Puts `answer` in place of what the repository says to the request for which it gives anything.
    void disturb(std::function<IpmiAnswer(const IpmiRequest&)> answer)
    {
        bmc.on(0x0A, 0x23, [this, answer](const IpmiRequest& request) {
            IpmiAnswer other = answer(request);
            return other.empty() ? readRecord(request) : other;
        });
    }

    std::vector<Bytes> records;
    std::uint8_t reservation = 0;
};
