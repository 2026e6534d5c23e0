#include "modules/bmc/subjects/FruAreas.hpp"
#include "tests/modules/bmc/SdrFixture.hpp"
#include "tests/support/TextTable.hpp"

#include <numeric>

using Module::BMCConfig::BMCConfigModule;
using Module::BMCConfig::fruAreaOffsets;
using Module::BMCConfig::fruText;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Bytes = std::vector<std::uint8_t>;

void appendChecksum(Bytes& bytes)
{
    bytes.push_back(static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0)));
}

/// An area with `body` behind its length byte, padded to `units` of eight bytes and with its checksum.
Bytes area(const Bytes& body, std::uint8_t units)
{
    Bytes bytes{1, units};
    bytes.insert(bytes.end(), body.begin(), body.end());
    bytes.resize(units * 8U - 1);
    appendChecksum(bytes);
    return bytes;
}

const Bytes chassis =
    area({0x11, 0xC2, 'P', '1', 0xC3, 'S', 'N', '2', 0xC2, 'x', 'y', 0xC0, 0x02, 0xAB, 0x0C, 0xC1}, 3);

TEST(FruText, FollowsTheTypeBits)
{
    constexpr char rows[] = R"(
00 | en |
03 00 A1 20 | en | 00 A1 20
44 12 AB CD EF | en | 12 -.:,_
83 29 DC A6 | en | IPMI
82 29 DC | en | IP
C3 61 E9 07 | en | aé
C4 20 62 20 00 | en |  b
C6 61 00 AC 20 3D D8 |  | a€�
C5 3D D8 00 DE 78 |  | 😀)";
    for (const auto& row : rowsOf(rows)) {
        const Bytes bytes = ipmi::parseBytes(row[0]);
        EXPECT_EQ(fruText(bytes[0], std::span(bytes).subspan(1), row[1] == "en"), row[2]) << row[0];
    }
}

class Fru : public SdrFixture {
protected:
    static constexpr std::size_t productAt = 520; ///< offsets take their high byte, of bytes and of words
    static constexpr char partNumber[] = "/BMC/FRU[3]/RECORD/DECODED/CHASSISAREA/PART_NUMBER";
    static constexpr char assetTag[] = "/BMC/FRU[3]/RECORD/DECODED/PRODUCTAREA/ASSET_TAG";

    Fru()
    {
        inventory = {1, 0, 1, 0, productAt / 8, 0, 0};
        appendChecksum(inventory);
        inventory.insert(inventory.end(), chassis.begin(), chassis.end());
        inventory.resize(productAt, 0xEE);
        const std::string tag(60, 'T');
        Bytes product{25, 0xC1 + 1, 'm', 'k', 0xC0, 0xC0, 0xC0, 0xC0, 0xFC};
        product.insert(product.end(), tag.begin(), tag.end());
        product.push_back(0xC1);
        const Bytes bytes = area(product, 10);
        inventory.insert(inventory.end(), bytes.begin(), bytes.end());
        bmc.on(0x0A, 0x10, [this](const IpmiRequest& request) { return tellSize(request); });
        bmc.on(0x0A, 0x11, [this](const IpmiRequest& request) { return readInventory(request); });
        bmc.requests.clear();
    }

    IpmiAnswer tellSize(const IpmiRequest& request) const
    {
        if (request.data[0] != 3)
            return {0xCB};
        return {0, static_cast<std::uint8_t>(inventory.size()), static_cast<std::uint8_t>(inventory.size() >> 8),
                static_cast<std::uint8_t>(unit - 1)};
    }

    IpmiAnswer readInventory(const IpmiRequest& request)
    {
        if (busy > 0)
            return --busy, IpmiAnswer{0x81};
        const std::size_t offset = (request.data[1] | request.data[2] << 8) * unit;
        const std::size_t count = request.data[3] * unit;
        if (count > most && refusal)
            return {refusal};
        if (offset >= inventory.size() || request.data[0] != 3)
            return {0xC9};
        const Bytes::iterator first = inventory.begin() + static_cast<int>(offset);
        const std::size_t given = std::min({count, most, inventory.size() - offset});
        IpmiAnswer answer{0, static_cast<std::uint8_t>((given + unit - 1) / unit)};
        answer.insert(answer.end(), first, first + static_cast<int>(given));
        return answer;
    }

    ResultMap load(std::map<std::string, std::string> parameters = {{"DEVICE_ID", "03"}, {"BASE_ADDRESS", "20"}})
    {
        ResultMap results;
        BMCConfigModule().ProcessXQuery("/BMC/FRU", parameters, results, 0);
        return results;
    }

    Bytes inventory;
    std::size_t unit = 1, most = 255;
    std::uint8_t refusal = 0xC8; ///< of more bytes than `most`; 0: fewer are given instead
    int busy = 0;
};

TEST_F(Fru, IsReadInPiecesThatTheDeviceTakes)
{
    // bytes at most, the refusal of more (0: fewer are given), bytes of a unit
    using Case = std::tuple<std::size_t, std::uint8_t, std::size_t>;
    for (const Case& device : {Case{255, 0, 1}, Case{34, 0xC8, 1}, Case{34, 0xCA, 1}, Case{34, 0xC9, 1},
                               Case{34, 0xC7, 1}, Case{1, 0xC8, 1}, Case{11, 0, 1}, Case{1, 0, 1}, Case{255, 0, 2},
                               Case{34, 0xC8, 2}, Case{2, 0xCA, 2}, Case{10, 0, 2}, Case{11, 0, 2}}) {
        std::tie(most, refusal, unit) = device;
        SCOPED_TRACE(testing::Message() << most << " bytes, units of " << unit << ", " << +refusal);
        Module::BMCConfig::Cache::instance().Clear();
        load();
        bmc.requests.clear();
        EXPECT_EQ(text(partNumber), "P1");
        EXPECT_EQ(text(assetTag), std::string(60, 'T'));
        EXPECT_THAT(bmc.requests, IsEmpty()) << "what was loaded is not read again";
    }
}

TEST_F(Fru, ReadingCostsFewExchangesAndReadsOnlyAreas)
{
    load();
    EXPECT_EQ(bmc.requests.size(), 7U); // size, header, and for areas of 24 and 80 bytes the head, then pieces of 64
    most = 10;
    bmc.requests.clear();
    load();
    EXPECT_EQ(bmc.requests.size(), 16U); // 16 are refused once, and 8 are kept to
}

TEST_F(Fru, AnswersBranchAndLeavesFromAQueryOfThePath)
{
    const ResultMap results = get("/BMC/FRU[3]");
    EXPECT_EQ(results.at(partNumber).mXNodeList, (std::vector<std::string>{"P1"}));
    EXPECT_THAT(results.at("/BMC/FRU[3]/RECORD/DECODED/BOARDAREA/MANUFACTURER").mXNodeList, IsEmpty());
    EXPECT_THAT(text("/BMC/FRU[3]/RECORD/DECODED/CHASSISAREA/CUSTOM_FIELD[1]"), "xy");
    EXPECT_THAT(text("/BMC/FRU[3]/RECORD/DECODED/CHASSISAREA/CUSTOM_FIELD[9]"), "");
    EXPECT_EQ(failureOf([&] { get("/BMC/FRU[3]/RECORD/DECODED/CHASSISAREA/COLOUR"); }).code, 1001);
    EXPECT_EQ(failureOf([&] { get("/BMC/FRU[3]/RECORD/DECODED/CHASSISAREA/TYPE/MORE"); }).code, 1001);
    EXPECT_EQ(failureOf([&] { get("/BMC/FRU[4]/RECORD/DECODED/CHASSISAREA/TYPE"); }).code, 1258);
    EXPECT_EQ(failureOf([&] { get("/BMC/FRU[256]/RECORD"); }).code, 1258);
}

TEST_F(Fru, LoadingReadsAnewAndGoesWhereItIsTold)
{
    EXPECT_EQ(load().at(partNumber).mXNodeList.front(), "P1");
    inventory[8 + 4] = 'Q', inventory[8 + 23] -= 1;
    EXPECT_EQ(text(partNumber), "P1");
    EXPECT_EQ(load().at(partNumber).mXNodeList.front(), "Q1");
    bmc.requests.clear();
    load({{"DEVICE_ID", "3"}, {"BASE_ADDRESS", "2C"}});
    for (const IpmiRequest& request : bmc.requests)
        EXPECT_EQ(request.target, 0x2C);
    EXPECT_FALSE(bmc.requests.empty());
}

TEST_F(Fru, BusyDeviceIsTriedOnceMoreAfterASecond)
{
    busy = 1;
    EXPECT_EQ(load().at(partNumber).mXNodeList.front(), "P1");
    EXPECT_THAT(clock.sleeps, ElementsAre(std::chrono::seconds(1)));
    busy = 2;
    EXPECT_EQ(failureOf([&] { load(); }).code, 1119);
    EXPECT_EQ(text(partNumber), "P1") << "a failed reading leaves the last one";
    clock.sleeps.clear();
    EXPECT_EQ(failureOf([&] { load({{"DEVICE_ID", "4"}}); }).code, 1119);
    EXPECT_EQ(failureOf([&] { load({{"DEVICE_ID", "three"}}); }).code, 1119);
    EXPECT_THAT(clock.sleeps, IsEmpty());
}

TEST_F(Fru, DeviceThatClaimsMoreThanItHoldsGivesWhatIsThere)
{
    inventory[productAt + 1] = 0xFF; // the product area's length
    load();
    EXPECT_EQ(text(partNumber), "P1");
    EXPECT_EQ(text(assetTag), "");
    for (const IpmiRequest& request : bmc.requests)
        EXPECT_TRUE(request.cmd != 0x11 ||
                    (request.data[1] | request.data[2] << 8) + request.data[3] <= static_cast<int>(inventory.size()));
    for (const IpmiAnswer& unknownSize : {IpmiAnswer{0xC1}, IpmiAnswer{0, 0x10}}) {
        bmc.on(0x0A, 0x10, unknownSize);
        Module::BMCConfig::Cache::instance().Clear();
        load();
        EXPECT_EQ(text(partNumber), "P1");
        EXPECT_EQ(text(assetTag), "");
    }
    inventory.clear();
    EXPECT_THAT(load(), testing::Contains(testing::Key("/BMC/FRU[3]")));
    EXPECT_EQ(text(partNumber), "");
}

} // namespace
