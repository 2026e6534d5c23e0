#include "tests/fuzz/World.hpp"

// One sensor: its record, the reading and the thresholds that its BMC answers with, and every number and word that
// comes of them.

namespace {

constexpr std::uint8_t header[] = {0x01, 0x00, 0x51};

/// A repository of one record, whole and sound but for its contents.
IpmiAnswer readRecord(const Input::Bytes& record, const IpmiRequest& request)
{
    const std::size_t first = std::min<std::size_t>(request.data.at(4), record.size());
    const std::size_t count = std::min<std::size_t>(request.data.at(5), record.size() - first);
    IpmiAnswer answer{0, 0xFF, 0xFF};
    answer.insert(answer.end(), record.begin() + static_cast<int>(first),
                  record.begin() + static_cast<int>(first + count));
    return answer;
}

Input::Bytes recordOf(Input& input)
{
    Input::Bytes record(std::begin(header), std::end(header));
    record.push_back(input.byte());
    const Input::Bytes body = input.part();
    record.push_back(static_cast<std::uint8_t>(body.size()));
    record.insert(record.end(), body.begin(), body.end());
    return record;
}

std::string pathOf(const Input::Bytes& record)
{
    const auto at = [&](std::size_t place) { return std::to_string(place < record.size() ? record[place] : 0); };
    return "/BMC/SENSOR[" + at(7) + "]/OWNER[" + at(5) + "]/LUN[" + at(6) + "]";
}

/// A manager must be able to show what stands for a number.
void checkNumber(const ResultMap& answer, const std::string& query)
{
    const auto found = answer.find(query);
    if (found == answer.end() || found->second.mXNodeList.empty())
        return;
    const std::string& text = found->second.mXNodeList.front();
    require(text.find("nan") == std::string::npos && text.find("inf") == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    World world(input);
    const Input::Bytes record = recordOf(input);
    const IpmiAnswer reading = input.part(), thresholds = input.part(), factors = input.part();
    const std::string raw = std::to_string(input.byte());
    world.bmc.on(0x0A, 0x22, IpmiAnswer{0, 1, 0});
    world.bmc.on(0x0A, 0x23, [&](const IpmiRequest& request) { return readRecord(record, request); });
    world.bmc.on(0x04, 0x2D, reading);
    world.bmc.on(0x04, 0x27, thresholds);
    world.bmc.on(0x04, 0x23, factors);
    const std::string path = pathOf(record);
    for (const std::string& tail : {std::string("/INTERPRET_SENSOR_VALUE"), "/INTERPRET_SENSOR_VALUE[" + raw + "]",
                                    std::string("/TOLERANCE"), std::string("/RESOLUTION"), std::string("/ACCURACY")})
        checkNumber(world.ask(path + tail), path + tail);
    for (const std::string& query :
         {path + "/THRESHOLD_STATUS", path + "/INTERPRET_DISCRETE_SENSOR", std::string("/BMC/SENSOR/DISPLAY")})
        world.ask(query);
    return 0;
}
