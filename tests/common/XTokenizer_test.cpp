#include "common/ErrorName.hpp"
#include "common/XTokenizer.hpp"
#include "tests/support/Failure.hpp"

using Common::XEngine;
using Common::XTokenizer;
using testing::ElementsAre;
using Words = std::vector<std::string>;

namespace {

TEST(XTokenizer, CutsPathsIntoTokensOfWhichNoneIsEmpty)
{
    const std::pair<const char*, Words> cases[] = {
        {"", {}},
        {"/", {}},
        {"/BMC/INFO/VERSION", {"BMC", "INFO", "VERSION"}},
        {"BMC/INFO", {"BMC", "INFO"}},
        {"/BMC/INFO/", {"BMC", "INFO"}},
        {"/BMC/LAN[1]/ IP ", {"BMC", "LAN[1]", " IP "}},
        {"/BMC/RECORD_TYPE[]/@children", {"BMC", "RECORD_TYPE[]", "@children"}}};
    for (const auto& [query, tokens] : cases) {
        const XTokenizer tokenizer = XEngine().ParseXQuery(query);
        EXPECT_EQ(tokenizer.TokenList(), tokens) << query;
        EXPECT_EQ(tokenizer.NumOfTokens(), tokens.size()) << query;
    }
    for (const char* query : {"//", "//BMC", "/BMC//INFO", "BMC//", "/BMC///INFO"}) {
        const Failure failure = failureOf([&] { XEngine().ParseXQuery(query); });
        EXPECT_EQ(failure.text(), "1001 " + std::string(query));
        EXPECT_EQ(failure.words, "Invalid Query");
    }
}

TEST(XTokenizer, QuotedPartsAreTakenWhole)
{
    const std::pair<const char*, Words> cases[] = {{"/A/B", {"A", "B"}},
                                                   {"/A/\"x/y//z\"/B", {"A", "x/y//z", "B"}},
                                                   {"\"/x\"/B", {"/x", "B"}},
                                                   {"A/\"x/y\"", {"A", "x/y"}},
                                                   {"A/\"open/end", {"A", "open/end"}}};
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(XTokenizer(text, '/', '"').TokenList(), tokens) << text;
    for (const char* text : {"A/\"\"/B", "A//B/\"x\"", "\"x\"\"y\""})
        EXPECT_EQ(failureOf([&] { XTokenizer(text, '/', '"'); }).code, ERROR_INVALID_QUERY) << text;
}

TEST(XTokenizer, SubscriptsGiveKeysAndTokens)
{
    Words keys, bracketed;
    XTokenizer::GetSubscriptKeys({"BMC", "LAN[1]", "X[a][b]", "RECORD_TYPE[]", "]Y[2]"}, keys, bracketed);
    EXPECT_THAT(keys, ElementsAre("1", "a", "", "2"));
    EXPECT_THAT(bracketed, ElementsAre("LAN[1]", "X[a][b]", "RECORD_TYPE[]", "]Y[2]"));

    EXPECT_EQ(failureOf([&] { XTokenizer::GetSubscriptKeys({"]LAN[1"}, keys, bracketed); }).text(),
              "1105 end ] bracket not found");
}

} // namespace
