#include "transport/Usb.hpp"

#include "tests/transport/FakeKcs.hpp"
#include "tests/transport/IpmiLibraryStandIn.hpp"
#include "transport/TransportState.hpp"

#include <dlfcn.h>
#include <memory>
#include <stdexcept>

using namespace transport;

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Holds a library named "libipmi.so" in the process, so that a dlopen by that name finds it.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const char* path) : handle(dlopen(path, RTLD_NOW))
    {
        if (!handle)
            throw std::runtime_error(dlerror());
    }
    ~LoadedLibrary() { dlclose(handle); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    StandInRecord& record() { return *static_cast<StandInRecord*>(dlsym(handle, "standInRecord")); }

private:
    void* handle;
};

class Usb : public testing::Test, protected PortMachine {
protected:
    Usb()
    {
        library.record() = {};
        bmc.answer = [](const FakeKcs::Bytes&) { return FakeKcs::Bytes{0x1C, 0x01, 0x00, 0x4B}; };
        *request = {.target = 0x20, .netFn = 6, .lun = 1, .cmd = 1, .data = {}, .length = 129, .completionCode = 0};
    }
    ~Usb() override { SelectIPMIInterface(IPMI_INTERFACE_KCS); }

    int exchange() { return ProcessMessage(request.get(), response.get(), 7); }

    LoadedLibrary library{STAND_IN_WHOLE};
    std::unique_ptr<BMC_MESSAGE> request = std::make_unique<BMC_MESSAGE>();
    std::unique_ptr<BMC_MESSAGE> response = std::make_unique<BMC_MESSAGE>();
};

TEST_F(Usb, SessionOpensWithItsArgumentsAndCarriesRequestsAndFailures)
{
    ASSERT_EQ(SelectIPMIInterface(IPMI_INTERFACE_USB), 1);
    const StandInRecord& seen = library.record();
    EXPECT_STREQ(seen.address, "127.0.0.1");
    EXPECT_THAT(seen.arguments, ElementsAre(623, 0, 0, 0, 0, 0, 4, 6, 0x54, 0x20, 0, 0, 2000));

    library.record().answer[0] = 0xC9;
    library.record().answer[1] = 0x55;
    library.record().answerLength = 2;
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(response->completionCode, 0xC9);
    EXPECT_EQ(response->length, 1u);
    EXPECT_EQ(response->data[0], 0x55);
    EXPECT_EQ(seen.netFnLun, 0x19);
    EXPECT_EQ(seen.timeout, 7u);
    EXPECT_EQ(seen.requestLength, 129u);
    EXPECT_TRUE(bmc.writes.empty());
    library.record().answerLength = 0;
    EXPECT_EQ(exchange(), 3) << "empty response";
    library.record().answerLength = 70000;
    EXPECT_EQ(exchange(), 1) << "longer than the buffer";
    library.record().sendResult = 0x100;
    EXPECT_EQ(exchange(), 1);
}

TEST_F(Usb, MixedInterfaceSendsLongRequestsByUsbAndFallsBack)
{
    library.record().answerLength = 1;
    ASSERT_EQ(SelectIPMIInterface(IPMI_INTERFACE_MIXED), 1);
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(library.record().sends, 1);
    EXPECT_TRUE(bmc.writes.empty());
    request->length = 128;
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(library.record().sends, 1);
    EXPECT_EQ(response->data[0], 0x4B);
    request->length = 129;
    library.record().sendResult = 1;
    bmc.writes.clear();
    ASSERT_EQ(exchange(), 0);
    EXPECT_EQ(library.record().sends, 2);
    EXPECT_FALSE(bmc.writes.empty());
}

TEST_F(Usb, OneSessionAtATimeAndFourTriesForIt)
{
    EXPECT_EQ(SelectIPMIInterface(3), 0);
    library.record().failingSessions = 3;
    EXPECT_TRUE(SelectInterface(IPMI_INTERFACE_USB));
    EXPECT_THAT(clock.sleeps, ElementsAre(3s, 3s, 3s));
    EXPECT_FALSE(SelectInterface(IPMI_INTERFACE_MIXED));
    EXPECT_EQ(transportState().eInterface, IPMI_INTERFACE_USB);
    EXPECT_TRUE(SelectInterface(IPMI_INTERFACE_KCS));
    EXPECT_EQ(library.record().closed, 1);
    library.record().failingSessions = 4 + 4;
    EXPECT_FALSE(SelectInterface(IPMI_INTERFACE_MIXED));
    EXPECT_EQ(transportState().hUsbSession, nullptr);
    EXPECT_EQ(transportState().eInterface, IPMI_INTERFACE_KCS);
}

TEST(UsbLibrary, AbsentOrLackingAnEntryPointLeavesKcsInForce)
{
    resetTransportForTests();
    EXPECT_EQ(SelectIPMIInterface(IPMI_INTERFACE_USB), 0);
    LoadedLibrary lacking(STAND_IN_LACKING);
    EXPECT_EQ(SelectIPMIInterface(IPMI_INTERFACE_USB), 0);
    EXPECT_EQ(lacking.record().sessions, 0);
    EXPECT_EQ(transportState().hUsbSession, nullptr);
    EXPECT_EQ(transportState().g_UseUSB, 0);
}

} // namespace
