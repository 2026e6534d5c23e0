#include "transport/TransportState.hpp"

TransportState& transportState()
{
    static constinit TransportState state;
    return state;
}

void resetTransportForTests()
{
    transportState() = {};
}
