#include "bench/BenchBmc.hpp"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

constexpr std::uint8_t appNetFn = 0x06, storageNetFn = 0x0A, sensorNetFn = 0x04;
constexpr std::size_t headerLength = 5;

void storeLow(std::vector<std::uint8_t>& bytes, std::size_t at, unsigned value)
{
    bytes[at] = static_cast<std::uint8_t>(value);
    bytes[at + 1] = static_cast<std::uint8_t>(value >> 8);
}

/// A full record (IPMI 2.0, 43.1) of one linear sensor with all six thresholds readable.
std::vector<std::uint8_t> fullRecord(unsigned id, std::uint8_t number, std::uint8_t type)
{
    std::vector<std::uint8_t> record(48);
    storeLow(record, 0, id);
    record[2] = 0x51;
    record[3] = 1;
    record[5] = 0x20;
    record[7] = number;
    record[8] = 7;
    record[9] = 1;
    record[12] = type;
    record[13] = 1;
    record[18] = 0x3F;
    record[21] = type == 1 ? 1 : type == 2 ? 4 : type == 3 ? 5 : 18;
    record[24] = 2;
    char name[16];
    const int length = std::snprintf(name, sizeof name, "Sensor %03u", id);
    record[47] = static_cast<std::uint8_t>(0xC0 | length);
    record.insert(record.end(), name, name + length);
    record[4] = static_cast<std::uint8_t>(record.size() - headerLength);
    return record;
}

} // namespace

BenchBmc::BenchBmc(unsigned sensors)
{
    for (unsigned id = 1; id <= sensors; ++id)
        records.push_back(fullRecord(id, static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(1 + id % 4)));
    on(appNetFn, 0x01, {0, 0x20, 0x81, 0x01, 0x20, 0x02, 0xBF, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    on(storageNetFn, 0x22, {0, 1, 0});
    on(storageNetFn, 0x23, [this](const IpmiRequest& request) { return readRecord(request); });
    on(sensorNetFn, 0x2D, {0, 100, 0xC0, 0, 0});
    on(sensorNetFn, 0x27, {0, 0x3F, 10, 8, 6, 200, 210, 220});
}

std::size_t BenchBmc::takeExchanges()
{
    const std::size_t count = requests.size();
    requests.clear();
    return count;
}

IpmiAnswer BenchBmc::readRecord(const IpmiRequest& request) const
{
    const std::size_t id = request.data[2] + 256U * request.data[3];
    const std::size_t index = id == 0 ? 0 : id - 1;
    if (index >= records.size())
        return {0xCB};
    const auto& record = records[index];
    const std::size_t next = index + 1 == records.size() ? 0xFFFF : index + 2;
    IpmiAnswer answer{0, static_cast<std::uint8_t>(next), static_cast<std::uint8_t>(next >> 8)};
    const std::size_t first = std::min<std::size_t>(request.data[4], record.size());
    const std::size_t last = std::min<std::size_t>(first + request.data[5], record.size());
    answer.insert(answer.end(), record.begin() + static_cast<long>(first), record.begin() + static_cast<long>(last));
    return answer;
}
