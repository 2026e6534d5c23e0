#include "modules/bmc/subjects/SensorStates.hpp"

#include "ipmi/SensorReading.hpp"
#include "ipmi/States.hpp"

namespace Module::BMCConfig {

namespace {

constexpr unsigned stateBits = 15; ///< bit 15 of the two bytes is reserved
using States = std::span<const ipmi::State>;

bool isSet(unsigned states, unsigned bit)
{
    return states >> bit & 1U;
}

void addName(std::string& names, const std::string& name)
{
    names += names.empty() ? name : ", " + name;
}

/// A name for each bit that is set.
std::string nameEachBit(States states, unsigned bits)
{
    std::string names;
    for (unsigned bit = 0; bit < stateBits && bit < states.size(); ++bit)
        if (isSet(bits, bit) && states[bit].word)
            addName(names, states[bit].word);
    return names;
}

/// Each of the first bits gives one of two words.
std::string nameAvailable(States states, unsigned bits)
{
    std::string names;
    for (unsigned bit = 0; bit < states.size(); ++bit)
        addName(names, states[bit].word + std::string(isSet(bits, bit) ? "_AVAILABLE" : "_UNAVAILABLE"));
    return names;
}

/// Bit 1 set: the second; else bit 0 set: the first.
std::string nameSingle(States states, unsigned bits)
{
    return isSet(bits, 1) ? states[1].word : isSet(bits, 0) ? states[0].word : "";
}

/// Bit 1 set: the second; else the first.
std::string nameSecondIf(States states, unsigned bits)
{
    return states[isSet(bits, 1)].word;
}

/// Bit 1 set: the second; no bit above it either: the first.
std::string nameSecondAbove(States states, unsigned bits)
{
    return isSet(bits, 1) ? states[1].word : (bits & 0xFF) < 2 ? states[0].word : "";
}

constexpr int anySensor = -1;

/// Reading types whose names are not taken bit by bit.
struct Manner {
    unsigned readingType;
    int sensorType;
    std::string (*name)(States states, unsigned bits);
};

constexpr Manner manners[] = {
    {0x03, anySensor, nameSingle},
    {0x04, anySensor, nameSingle},
    {0x05, anySensor, nameSingle},
    {0x06, anySensor, nameSingle},
    {0x08, anySensor, nameSecondIf},
    {0x09, anySensor, nameSecondAbove},
    {0x74, 0xDC, nameAvailable},
    {ipmi::eventtype::sensorSpecific, 0xDC, nameAvailable},
    {ipmi::eventtype::sensorSpecific, 0xF3, nameSingle},
};

std::string nameBy(States states, unsigned readingType, int sensorType, unsigned bits)
{
    for (const Manner& manner : manners)
        if (manner.readingType == readingType && (manner.sensorType == anySensor || manner.sensorType == sensorType))
            return manner.name(states, bits);
    return nameEachBit(states, bits);
}

} // namespace

std::string nameStates(std::uint8_t readingType, std::uint8_t sensorType, unsigned states)
{
    const States known = ipmi::statesOf(readingType, sensorType);
    const std::string names = known.empty() ? "" : nameBy(known, readingType, sensorType, states);
    return names.empty() ? unknownState : names;
}

} // namespace Module::BMCConfig
