// What the catalogue's guide says against the catalogue itself.

#include "tests/modules/bmc/CatalogueData.hpp"

#include <algorithm>

using namespace catalogue_data;

namespace {

std::string constant(const std::string& name)
{
    const auto found = stores().symbols.find(name);
    return found == stores().symbols.end() ? name : found->second.text();
}

std::map<std::string, Entry> entriesByKey()
{
    std::map<std::string, Entry> all;
    for (Entry& entry : entries())
        all.emplace(entry.key, std::move(entry));
    return all;
}

} // namespace

TEST(Guide, EveryRowIsSortedAndNamesWhatIsThere)
{
    const auto isSorted = [](auto rows, auto key) {
        return std::ranges::is_sorted(rows, {}, [&](const auto& row) { return std::string((row.*key)); });
    };
    EXPECT_TRUE(isSorted(parameterRows(), &ParameterRow::key));
    EXPECT_TRUE(isSorted(cautionRows(), &CautionRow::key));
    Names findings;
    const std::map<std::string, Entry> all = entriesByKey();
    for (const CautionRow& row : cautionRows())
        if (const auto from = all.lower_bound(row.key); from == all.end() || !from->first.starts_with(row.key))
            findings.insert(row.key);
    for (const ParameterRow& row : parameterRows())
        if (const auto found = all.find(row.key); found == all.end())
            findings.insert(row.key);
        else
            for (const Takes& value : found->second.takes)
                if (value.form.empty() && &value != &found->second.takes.front())
                    findings.insert(found->first + " " + value.name);
    EXPECT_THAT(findings, IsEmpty());
}

/// A path is not the way round what a raw request of the same command would be refused for.
TEST(Guide, EveryQueryNeedsWhatItsRequestsNeed)
{
    const std::string onlyTests = "SET://BMC/USER[]/TEST_PASSWORD"; // by the command that sets one
    Names findings;
    forEachStep([&](const std::string& key, Opcode opcode, const std::vector<std::string>& operands) {
        if (opcode != Opcode::IPMI || adviceFor(key).need != Need::nothing || key == onlyTests)
            return;
        const std::vector<std::string>& packet = stores().packets.at(operands.front()).values;
        if (packet.size() > 3 && adviceForRaw(constant(packet[1]), constant(packet[3])).need != Need::nothing)
            findings.insert(key + " sends " + packet[3]);
    });
    EXPECT_THAT(findings, IsEmpty());
}

TEST(Guide, AdviceForRawRequests)
{
    using enum Need;
    const std::tuple<const char*, const char*, Need> requests[] = {
        {"06", "01", nothing}, {"0C", "01", consent}, {"0C", "02", nothing}, {"30", "99", force},
        {"2E", "C9", nothing}, {"2E", "C1", force},   {"2C", "01", nothing}, {"00", "02", consent}};
    for (const auto& [netFunction, command, need] : requests)
        EXPECT_EQ(adviceForRaw(netFunction, command).need, need) << netFunction << " " << command;
}
