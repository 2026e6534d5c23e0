#include "tests/fuzz/World.hpp"

// The answers of a BMC, sound or not, while its repository is read.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    World world(input);
    answerFrom(input, world.bmc);
    for (const char* query : {"/BMC/SDR", "/BMC/SDR/RECORD_TYPE[1]", "/BMC/SDR/SENSOR_TYPE[2]", "/BMC/SDR/ENTITY_ID[7]",
                              "/BMC/SDR/VERSION", "/BMC/SDR[1]/DECODED"})
        world.ask(query);
    return 0;
}
