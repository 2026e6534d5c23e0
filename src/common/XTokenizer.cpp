#include "common/XTokenizer.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"

#include <cstdlib>
#include <utility>

namespace Common {

namespace {

/// Fields of `text` as reading lines with `separator` gives them: nothing follows a trailing separator.
std::vector<std::string_view> readFields(std::string_view text, char separator)
{
    std::vector<std::string_view> fields;
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        fields.push_back(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    }
    return fields;
}

} // namespace

XTokenizer::XTokenizer(std::string query, char delimiter_) : mXQuery(std::move(query)), delimiter(delimiter_)
{
    Tokenize(mXQuery, delimiter);
}

XTokenizer::XTokenizer(std::string query, char delimiter_, char quote_)
    : mXQuery(std::move(query)), delimiter(delimiter_), quote(quote_)
{
    TokenizeWithQuote();
}

XTokenizer::XTokenizer(std::vector<std::string> tokens_, char delimiter_)
    : tokens(std::move(tokens_)), delimiter(delimiter_)
{
    mXQuery = GetXPath();
}

void XTokenizer::Tokenize(std::string_view text, char separator)
{
    bool first = true;
    for (const std::string_view field : readFields(text, separator)) {
        if (!field.empty())
            tokens.emplace_back(field);
        else if (!first)
            throwError(ERROR_INVALID_QUERY, mXQuery, COMMAND_GET);
        first = false;
    }
}

void XTokenizer::TokenizeWithQuote()
{
    bool first = true;
    bool quoted = false;
    for (const std::string_view field : readFields(mXQuery, quote)) {
        if (field.empty() && !first)
            throwError(ERROR_INVALID_QUERY, mXQuery, COMMAND_GET);
        if (quoted)
            tokens.emplace_back(field);
        else
            Tokenize(field, delimiter);
        first = false;
        quoted = !quoted;
    }
}

std::string XTokenizer::First() const
{
    return tokens.empty() ? std::string() : tokens.front();
}

std::string XTokenizer::Last() const
{
    return tokens.empty() ? std::string() : tokens.back();
}

void XTokenizer::AppendToken(const std::string& token)
{
    tokens.push_back(token);
    mXQuery += delimiter;
    mXQuery += token;
}

std::string XTokenizer::GetXPath() const
{
    std::string path;
    for (const std::string& token : tokens) {
        path += delimiter;
        path += token;
    }
    return path;
}

void XTokenizer::GetSubscriptKeys(const std::vector<std::string>& tokens, std::vector<std::string>& keys,
                                  std::vector<std::string>& tokensWithBrackets)
{
    for (const std::string& token : tokens) {
        const std::size_t open = token.find('[');
        if (open == std::string::npos)
            continue;
        const std::size_t close = token.find(']', open);
        if (close == std::string::npos)
            throwError(ERROR_INDEX_DATA_NOT_AVAILABLE, "end ] bracket not found", COMMAND_GET);
        keys.push_back(token.substr(open + 1, close - open - 1));
        tokensWithBrackets.push_back(token);
    }
}

int XTokenizer::GetSMBIOSType(const std::string& token)
{
    constexpr std::size_t prefix = 4; // "TYPE"
    return token.size() <= prefix ? 0 : static_cast<int>(std::strtol(token.c_str() + prefix, nullptr, 10));
}

} // namespace Common
