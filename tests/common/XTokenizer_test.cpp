#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "common/XTokenizer.hpp"

using Common::XEngine;
using Common::XTokenizer;
using testing::ElementsAre;
using Words = std::vector<std::string>;

namespace {

template<class Action>
RStatus failureOf(Action action)
{
    try {
        action();
    } catch (const ResultStatus& status) {
        return *status.Get().begin();
    }
    return {};
}

TEST(XTokenizer, CutsPathsIntoTokens)
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
}

TEST(XTokenizer, AnEmptyTokenInsideAPathIsAnInvalidQuery)
{
    for (const char* query : {"//", "//BMC", "/BMC//INFO", "BMC//", "/BMC///INFO"}) {
        const RStatus failure = failureOf([&] { XEngine().ParseXQuery(query); });
        EXPECT_EQ(failure.mErrorCode, ERROR_INVALID_QUERY) << query;
        EXPECT_EQ(failure.mXQuery, query);
        EXPECT_EQ(failure.mCommand, COMMAND_GET);
        EXPECT_EQ(failure.mErrorString, "Invalid Query");
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
        EXPECT_EQ(failureOf([&] { XTokenizer(text, '/', '"'); }).mErrorCode, ERROR_INVALID_QUERY) << text;
}

TEST(XTokenizer, SubscriptsGiveKeysAndTokens)
{
    Words keys, bracketed;
    XTokenizer::GetSubscriptKeys({"BMC", "LAN[1]", "X[a][b]", "RECORD_TYPE[]", "]Y[2]"}, keys, bracketed);
    EXPECT_THAT(keys, ElementsAre("1", "a", "", "2"));
    EXPECT_THAT(bracketed, ElementsAre("LAN[1]", "X[a][b]", "RECORD_TYPE[]", "]Y[2]"));

    const RStatus failure = failureOf([&] { XTokenizer::GetSubscriptKeys({"]LAN[1"}, keys, bracketed); });
    EXPECT_EQ(failure.mErrorCode, ERROR_INDEX_DATA_NOT_AVAILABLE);
    EXPECT_EQ(failure.mXQuery, "end ] bracket not found");
}

} // namespace
