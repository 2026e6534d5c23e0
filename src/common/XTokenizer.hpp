#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Common {

/// A query path cut into tokens: "/BMC/LAN[1]/IP" gives "BMC", "LAN[1]", "IP".
class XTokenizer {
public:
    /// Cuts `query` at `delimiter`. A leading delimiter is passed over; any other empty field is error 1001.
    XTokenizer(std::string query, char delimiter);
    /// The same, but what stands between two `quote` characters is one token, taken whole. Error 1001 too for two
    /// quotes side by side.
    XTokenizer(std::string query, char delimiter, char quote);
    /// A path made from its tokens.
    XTokenizer(std::vector<std::string> tokens, char delimiter);

    std::vector<std::string> TokenList() const { return tokens; }
    /// First and last token, empty without one.
    std::string First() const;
    std::string Last() const;
    std::size_t NumOfTokens() const { return tokens.size(); }
    /// Adds a token, and delimiter and token to the stored path.
    void AppendToken(const std::string& token);
    /// The path, rebuilt from the tokens.
    std::string GetXPath() const;

    /// For each token with a subscript, its key ("1" of "LAN[1]") and the whole token. Error 1105 without a "]".
    static void GetSubscriptKeys(const std::vector<std::string>& tokens, std::vector<std::string>& keys,
                                 std::vector<std::string>& tokensWithBrackets);
    /// The number behind the first four characters of a token such as "TYPE4".
    static int GetSMBIOSType(const std::string& token);

private:
    void Tokenize(std::string_view text, char separator);
    void TokenizeWithQuote();

    std::vector<std::string> tokens;
    std::string mXQuery;
    char delimiter;
    char quote = '\0';
};

/// The path parser of the director and the engine.
class XEngine {
public:
    XTokenizer ParseXQuery(const std::string& query) const { return {query, delimiter}; }

private:
    char delimiter = '/';
};

} // namespace Common
