#include "modules/bmc/engine/Databases.hpp"
#include "modules/bmc/engine/SymbolTable.hpp"

namespace Module::BMCConfig {
namespace {

std::shared_ptr<Stores> storesWithConstant()
{
    auto stores = std::make_shared<Stores>();
    stores->symbols["$/IPMI/APP_NET_FUNCTION"] = "06";
    stores->packets["GET://BMC/A"] = "20";
    return stores;
}

TEST(SymbolTable, UnsetSymbolIsMadeByReadingItAndALiteralIsItself)
{
    SymbolTable table;
    EXPECT_EQ(table["$A"], Symbol());
    EXPECT_EQ(table.read("$B"), Symbol());
    table["0"] = "written";
    EXPECT_EQ(table["0"].text(), "0");
    EXPECT_EQ(table.read("$A$B").text(), "$A$B");
    EXPECT_EQ(table.size(), 2U);
}

TEST(SymbolTable, OverlayLeavesTheConstantsOfOtherQueriesAlone)
{
    const auto stores = storesWithConstant();
    SymbolTable mine(stores), other(stores);
    mine["$/IPMI/APP_NET_FUNCTION"] = "changed";
    EXPECT_EQ(mine.size(), 1U);
    mine.erase("$/IPMI/APP_NET_FUNCTION");
    EXPECT_EQ(mine.find("$/IPMI/APP_NET_FUNCTION"), nullptr);
    EXPECT_EQ(mine.size(), 0U);
    EXPECT_EQ(mine["$/IPMI/APP_NET_FUNCTION"], Symbol());
    EXPECT_EQ(mine.size(), 1U);
    EXPECT_EQ(other.read("$/IPMI/APP_NET_FUNCTION").text(), "06");
}

TEST(Database, UnknownKeyIsInsertedIntoTheQuerysOwnLayer)
{
    const auto stores = storesWithConstant();
    IPMIPacketDB mine(stores), other(stores);
    EXPECT_EQ(mine.get("GET://BMC/NONE"), Symbol());
    mine["GET://BMC/A"], "01";
    EXPECT_EQ(mine.get("GET://BMC/A").size(), 2U);
    EXPECT_EQ(mine.size(), 3U); // the copied entry counts in both layers
    EXPECT_EQ(other.get("GET://BMC/A").size(), 1U);
    EXPECT_EQ(other.size(), 1U);
}

} // namespace
} // namespace Module::BMCConfig
