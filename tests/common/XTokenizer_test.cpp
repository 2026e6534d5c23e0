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
    const struct {
        const char* query;
        Words tokens;
    } cases[] = {
        {"", {}},
        {"/", {}},
        {"/BMC/INFO/VERSION", {"BMC", "INFO", "VERSION"}},
        {"BMC/INFO", {"BMC", "INFO"}},
        {"/BMC/INFO/", {"BMC", "INFO"}},
        {"/BMC/LAN[1]/ IP ", {"BMC", "LAN[1]", " IP "}},
        {"/BMC/RECORD_TYPE[]/@children", {"BMC", "RECORD_TYPE[]", "@children"}},
    };
    for (const auto& row : cases) {
        const XTokenizer tokenizer = XEngine().ParseXQuery(row.query);
        EXPECT_EQ(tokenizer.TokenList(), row.tokens) << row.query;
        EXPECT_EQ(tokenizer.NumOfTokens(), row.tokens.size()) << row.query;
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
    const struct {
        const char* text;
        Words tokens;
    } cases[] = {
        {"/A/B", {"A", "B"}},        {"/A/\"x/y//z\"/B", {"A", "x/y//z", "B"}}, {"\"/x\"/B", {"/x", "B"}},
        {"A/\"x/y\"", {"A", "x/y"}}, {"A/\"open/end", {"A", "open/end"}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(XTokenizer(row.text, '/', '"').TokenList(), row.tokens) << row.text;
    for (const char* text : {"A/\"\"/B", "A//B/\"x\"", "\"x\"\"y\""})
        EXPECT_EQ(failureOf([&] { XTokenizer(text, '/', '"'); }).mErrorCode, ERROR_INVALID_QUERY) << text;
}

TEST(XTokenizer, PathIsRebuiltFromTokens)
{
    XTokenizer tokenizer("BMC/LAN[1]", '/');
    tokenizer.AppendToken("IP");
    EXPECT_EQ(tokenizer.GetXPath(), "/BMC/LAN[1]/IP");
    EXPECT_EQ(tokenizer.First(), "BMC");
    EXPECT_EQ(tokenizer.Last(), "IP");
    EXPECT_EQ(XTokenizer(Words{"A", "B"}, '.').GetXPath(), ".A.B");
    EXPECT_EQ(XTokenizer("", '/').First() + XTokenizer("", '/').Last(), "");
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

TEST(XTokenizer, SmbiosTypeIsTheNumberBehindFourCharacters)
{
    const struct {
        const char* token;
        int type;
    } cases[] = {{"TYPE4", 4}, {"Type17[2]", 17}, {"TYPE", 0}, {"TYP", 0}, {"", 0}, {"TYPEx", 0}};
    for (const auto& row : cases)
        EXPECT_EQ(XTokenizer::GetSMBIOSType(row.token), row.type) << row.token;
}

TEST(ResultStatus, KeepsEntriesInOrderAndAnswersWithTheFirst)
{
    EXPECT_EQ(ResultStatus().getval(), 0);
    ResultStatus status(ERROR_SEL_CLEAR, "text", "/BMC/SEL", COMMAND_SET);
    status.Insert({0, ERROR_SEL_RESERVE, "more", "", COMMAND_GET});
    const ResultStatus copy = status;
    EXPECT_EQ(copy.getval(), ERROR_SEL_CLEAR);
    ASSERT_EQ(copy.Get().size(), 2u);
    EXPECT_EQ((copy.begin() + 1)->mErrorCode, ERROR_SEL_RESERVE);
    EXPECT_EQ(copy.begin()->mCommand, COMMAND_SET);
    EXPECT_EQ(ResultStatus(3, ERROR_UNKNOWN, "text").begin()->mComponent, 3);
}

} // namespace
