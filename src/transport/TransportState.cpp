#include "transport/TransportState.hpp"

namespace transport {

TransportState& transportState()
{
    static constinit TransportState state;
    return state;
}

void resetTransportForTests()
{
    transportState() = {};
}

} // namespace transport
