#pragma once

// The files of tests/modules/bmc/engine/: queries to the engine, what they send, and what they answer. A line is a
// case; one that begins with a blank goes on with the line before, and "#" begins a comment.
//
//     get PATH > 20 06 00 01 < 00 20 81 = 1.07     a query, what it must send, what the BMC answers, and what comes of
//     it get PATH NAME=VALUE > ...                    the same with parameters set PATH VALUE > 20 00 00 02 01 or
//     NAME=VALUE ...; without a "!" it must succeed clear                                        empties the engine's
//     cache, which otherwise lasts to the file's end
//
//     > 20 06 00 01     a request: target, network function, LUN, command, data; ".." is any byte. Each must come, in
//                       order, and no other
//     ~ 20 0A 00 22     one that may come any number of times, at any place
//     < 00 34 12        its answer, completion code first; without it "00"; "<" alone is a BMC that does not answer
//     = 1.07            the query's own node is the only one, and this is its value
//     = {A, B = 1}      or it is a branch with these children; those with a value come along as leaves
//     = {A}; A{B = 1}   and behind that the branches below it
//     ! 1269            or the failure: its code and, if given, its detail
//
//     on > 20 06 00 01 < 00 20 81                  exchanges that the next lines share:
//     ask PATH = 1.07                              a get with these
//     change PATH VALUE > 20 0C 00 01 01 02 37     a set behind these: what is there is read first
//
//     each get /BMC/? > 20 00 00 ? = ? : A 07 UNKNOWN, B 09 2.5 V
//                                                  a line for each item, whose words stand for the "?" one by one; the
//                                                  last takes what is left

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "tests/support/ModelBmc.hpp"
#include "tests/support/TextTable.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace engine {

using Texts = std::vector<std::string>;

struct Exchange {
    Texts request; ///< bytes, ".." for any
    IpmiAnswer answer{0};
    bool repeats = false;
};

struct Query {
    int line = 0;
    std::string verb, path, value;
    std::vector<Exchange> exchanges;
    Texts expected;      ///< nodes as lines, "PATH = VALUE" or "PATH: CHILDREN"
    std::string failure; ///< code and detail

    bool isSet() const { return verb == "set"; }
};

inline std::string below(const std::string& branch, const std::string& name)
{
    if (name.empty() || name.front() == '/')
        return name.empty() ? branch : name;
    return branch + (name.front() == '[' ? "" : "/") + name;
}

inline Texts expectedLines(const std::string& path, const std::string& result)
{
    if (!result.starts_with('{'))
        return {path + " = " + result};
    Texts lines;
    for (const std::string& group : splitAt(result, "; ")) {
        const auto [name, members] = cutAt(group.substr(0, group.rfind('}')), "{");
        const std::string branch = below(cutAt(path, "/@children").first, name);
        Texts children;
        for (const std::string& member : splitAt(members, ", ")) {
            const auto [child, value] = cutAt(member, " =");
            children.push_back(below(branch, child));
            if (child != member)
                lines.push_back(children.back() + " = " + value.substr(std::min<std::size_t>(value.size(), 1)));
        }
        lines.push_back(branch + ": " + Util::join(children, " "));
    }
    return lines;
}

class FileReader {
public:
    explicit FileReader(const std::filesystem::path& file) : source(file) {}

    std::vector<Query> read()
    {
        std::ifstream file(source);
        std::string whole;
        int number = 0;
        for (std::string text; std::getline(file, text);) {
            ++number;
            if (text.starts_with(' ')) {
                whole += text.substr(text.find_first_not_of(' ') - 1);
                continue;
            }
            readLine(std::exchange(whole, text.starts_with('#') ? "" : text));
            line = number;
        }
        readLine(whole);
        return queries;
    }

private:
    void readLine(const std::string& text)
    {
        const auto [verb, rest] = cutAt(text, " ");
        if (verb == "each")
            readEach(rest);
        else if (verb == "on")
            shared = parse(rest).exchanges;
        else if (verb == "get" || verb == "set" || verb == "clear")
            queries.push_back(parse(rest, verb));
        else if (verb == "ask" || verb == "change")
            queries.push_back(parse(rest, verb == "ask" ? "get" : "set", shared));
        else if (!verb.empty())
            ADD_FAILURE() << source << ":" << line << ": what is \"" << verb << "\"?";
    }

    void readEach(const std::string& text)
    {
        const auto [pattern, items] = cutAt(text, " : ");
        for (std::string item : splitAt(items, ", ")) {
            std::string whole = pattern;
            for (std::size_t at = 0; (at = whole.find('?', at)) != std::string::npos;) {
                const bool isLast = whole.find('?', at + 1) == std::string::npos;
                const auto [word, rest] = cutAt(item, isLast ? "\n" : " ");
                whole.replace(at, 1, word);
                at += word.size();
                item = rest;
            }
            readLine(whole);
        }
    }

    /// A line behind its verb.
    Query parse(const std::string& text, const std::string& verb = {}, const std::vector<Exchange>& before = {}) const
    {
        Query query{line, verb, {}, {}, before, {}, {}};
        std::istringstream words(text);
        std::string front, ending, result;
        bool answers = false;
        for (std::string word; ending.empty() && words >> word;) {
            const bool begun = query.exchanges.size() > before.size();
            if (word == "=" || word == "!")
                ending = word;
            else if (word == ">" || word == "~")
                query.exchanges.push_back({{}, {0}, word == "~"});
            else if (word == "<")
                query.exchanges.back().answer.clear();
            else if (!begun)
                front += (front.empty() ? "" : " ") + word;
            else if (answers)
                query.exchanges.back().answer.push_back(ipmi::parseByte(word));
            else
                query.exchanges.back().request.push_back(Util::upcase(word));
            answers = word == "<" || (answers && word != ">" && word != "~");
        }
        if (words.get() == ' ')
            std::getline(words, result);
        std::tie(query.path, query.value) = cutAt(front, " ");
        if (ending == "!")
            query.failure = result;
        else if (!query.isSet())
            query.expected = expectedLines(query.path, result);
        return query;
    }

    std::filesystem::path source;
    int line = 0;
    std::vector<Query> queries;
    std::vector<Exchange> shared;
};

} // namespace engine
