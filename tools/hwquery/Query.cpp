#include "tools/hwquery/Query.hpp"

#include "common/Util.hpp"

#include <cstdio>

namespace hwquery {

namespace {

std::string quote(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte >= 0x20 && byte < 0x7F) {
            quoted += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", byte);
            quoted += escape;
        }
    }
    return quoted + '"';
}

std::string quoteAll(const std::vector<std::string>& texts)
{
    std::vector<std::string> quoted;
    quoted.reserve(texts.size());
    for (const std::string& text : texts)
        quoted.push_back(quote(text));
    return "[" + Util::join(quoted, ", ") + "]";
}

} // namespace

std::string listText(const ResultMap& results)
{
    std::string text;
    for (const auto& [path, node] : results)
        text += path + (node.mType == NODE_LEAF ? " = " : ": ") + Util::join(node.mXNodeList, " ") + "\n";
    return text;
}

std::string listJson(const ResultMap& results)
{
    std::vector<std::string> members;
    for (const auto& [path, node] : results) {
        const std::string list = quoteAll(node.mXNodeList);
        members.push_back("  " + quote(path) + ": " +
                          (node.mType == NODE_LEAF ? list : "{\"children\": " + list + "}"));
    }
    return "{\n" + Util::join(members, ",\n") + "\n}\n";
}

std::string listFailures(const ResultStatus& status)
{
    std::string text;
    for (const RStatus& entry : status) {
        text += std::to_string(entry.mErrorCode) + " " + entry.mErrorString;
        if (!entry.mXQuery.empty())
            text += " (" + entry.mXQuery + ")";
        text += "\n";
    }
    return text;
}

} // namespace hwquery
