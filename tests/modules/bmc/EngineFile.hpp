#pragma once

// The files of tests/modules/bmc/engine/: queries to the engine, and what they send and answer.
//
//     # comment
//     get /BMC/INFO/VERSION              a query: get PATH, set PATH VALUE, getmap PATH NAME=VALUE...,
//                                        setmap PATH NAME=VALUE...; ends at the next query
//     > 20 06 00 01                      the next request that must come: target, network function, LUN, command,
//                                        data, all hexadecimal; ".." is any byte
//     < 00 20 81 01 07 02                its answer, completion code first; "<" alone is a BMC that does not answer
//     ~ 20 0A 00 22                      a request that may come any number of times, at any place; its answer follows
//     < 00 34 12
//     = 1.07.4660                        the query's own node is the only one, and these are its values
//     = /BMC/INFO/SUPPORT: /BMC/... /... or every node of the answer, a line each: "PATH: children" for a branch,
//     = /BMC/INFO/VERSION = 1.07.4660    "PATH = values" for a leaf
//     ! 1269                             or the failure: its code and, if given, its detail
//     clear                              empties the engine's cache, which otherwise lasts to the end of the file
//
// One line a key:
//
//     on 20 06 00 01 < 00 20 81          the exchange of the lines that follow; `also` adds a further one
//     ask PATH = 1.07                    a get with these exchanges; "! code" for a failure
//     put PATH VALUE > 20 00 00 02 01    a set, or with NAME=VALUE... a setmap, that sends this request and succeeds
//     change PATH VALUE > 20 0C 00 01 01 02 37    the same behind these exchanges: what is there is read first
//     deny PATH VALUE ! 1091             a set that fails before anything is sent
//     each PATH 20 00 00 07 < 00 ?? : 00 UNKNOWN, 01 WATCHDOG    a get for each pair: the byte, and the answer
//     every PATH > 20 00 00 02 ?? : RESET 03, POWER_UP 01        a set for each pair: the word, and the byte
//
// A SET without "=" or "!" must succeed. Every ">" request must come, in order, and no other.

#include "common/Util.hpp"
#include "ipmi/Hex.hpp"
#include "tests/support/ModelBmc.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

namespace engine {

struct Exchange {
    std::vector<std::string> request; ///< bytes, ".." for any
    IpmiAnswer answer;
    bool repeats = false;
};

struct Query {
    int line = 0;
    std::string kind, path, rest;
    std::vector<Exchange> exchanges;
    std::vector<std::string> expected; ///< lines of "="
    std::string failure;               ///< of "!"
};

inline std::string restOf(std::istringstream& words)
{
    std::string rest;
    std::getline(words >> std::ws, rest);
    return rest;
}

inline Exchange parseExchange(const std::string& text)
{
    const std::size_t answer = text.find('<');
    return {Util::split(Util::upcase(text.substr(0, answer)), " "),
            answer == std::string::npos ? IpmiAnswer{0} : ipmi::parseBytes(text.substr(answer + 1)), false};
}

/// `text` in two at the first of `mark`, without the blanks around it.
inline std::pair<std::string, std::string> cutAt(const std::string& text, const std::string& mark)
{
    const std::size_t at = text.find(mark);
    const std::string front = text.substr(0, at);
    const std::string back = at == std::string::npos ? "" : text.substr(at + mark.size());
    return {front.substr(0, front.find_last_not_of(' ') + 1),
            back.substr(std::min(back.find_first_not_of(' '), back.size()))};
}

class FileReader {
public:
    explicit FileReader(std::filesystem::path file) : source(std::move(file)) {}

    std::vector<Query> read()
    {
        std::ifstream file(source);
        for (std::string line; std::getline(file, line);) {
            ++number;
            std::istringstream words(line);
            std::string first;
            words >> first;
            if (!first.empty() && first[0] != '#' && !readHead(first, words) && !readShort(first, words) &&
                !readDetail(first, words))
                ADD_FAILURE() << source << ":" << number << ": what is \"" << first << "\"?";
        }
        return queries;
    }

private:
    Query& add(const std::string& kind, const std::string& query)
    {
        queries.push_back(
            {.line = number, .kind = kind, .path = query, .rest = {}, .exchanges = {}, .expected = {}, .failure = {}});
        return queries.back();
    }

    bool readHead(const std::string& first, std::istringstream& words)
    {
        if (first != "get" && first != "set" && first != "getmap" && first != "setmap" && first != "clear")
            return false;
        std::string query;
        words >> query;
        add(first, query).rest = restOf(words);
        return true;
    }

    bool readShort(const std::string& first, std::istringstream& words)
    {
        const auto reader = readers.find(first);
        if (reader == readers.end())
            return false;
        (this->*reader->second)(restOf(words));
        return true;
    }

    bool readDetail(const std::string& first, std::istringstream& words)
    {
        if (queries.empty())
            return false;
        if (first == ">" || first == "~")
            queries.back().exchanges.push_back({Util::split(Util::upcase(restOf(words)), " "), {}, first == "~"});
        else if (first == "<" && !queries.back().exchanges.empty())
            queries.back().exchanges.back().answer = ipmi::parseBytes(restOf(words));
        else if (first == "=")
            queries.back().expected.push_back(restOf(words));
        else if (first == "!")
            queries.back().failure = restOf(words);
        else
            return false;
        return true;
    }

    void readOn(const std::string& text) { current = {parseExchange(text)}; }
    void readAlso(const std::string& text) { current.push_back(parseExchange(text)); }

    void readAsk(const std::string& text)
    {
        const auto [failing, code] = cutAt(text, " ! ");
        const auto [path, value] = cutAt(failing, " = ");
        Query& query = add("get", path);
        query.exchanges = current;
        query.failure = code;
        if (code.empty())
            query.expected.push_back(value);
    }

    void readPut(const std::string& text)
    {
        const auto [asked, request] = cutAt(text, " > ");
        const auto [path, value] = cutAt(asked, " ");
        Query& query = add(value.find('=') == std::string::npos ? "set" : "setmap", path);
        query.rest = value;
        query.exchanges.push_back(parseExchange(request));
    }

    void readChange(const std::string& text)
    {
        readPut(text);
        std::vector<Exchange>& exchanges = queries.back().exchanges;
        exchanges.insert(exchanges.begin(), current.begin(), current.end());
    }

    void readDeny(const std::string& text)
    {
        const auto [asked, code] = cutAt(text, " ! ");
        readPut(asked);
        queries.back().exchanges.clear();
        queries.back().failure = code;
    }

    void readEach(const std::string& text)
    {
        const auto [front, pairs] = cutAt(text, " : ");
        const auto [path, exchange] = cutAt(front, " ");
        for (const std::string& pair : Util::split(pairs, ",")) {
            const auto [byte, word] = cutAt(pair.substr(pair.find_first_not_of(' ')), " ");
            current = {parseExchange(Util::replace_all(exchange, "??", byte))};
            readAsk(path + " = " + word);
        }
    }

    void readEvery(const std::string& text)
    {
        const auto [front, pairs] = cutAt(text, " : ");
        const auto [path, request] = cutAt(front, " > ");
        for (const std::string& pair : Util::split(pairs, ",")) {
            const auto [word, byte] = cutAt(pair.substr(pair.find_first_not_of(' ')), " ");
            readPut(path + " " + word + " > " + Util::replace_all(request, "??", byte));
        }
    }

    static inline const std::map<std::string, void (FileReader::*)(const std::string& text)> readers = {
        {"on", &FileReader::readOn},     {"also", &FileReader::readAlso},     {"ask", &FileReader::readAsk},
        {"put", &FileReader::readPut},   {"change", &FileReader::readChange}, {"deny", &FileReader::readDeny},
        {"each", &FileReader::readEach}, {"every", &FileReader::readEvery},
    };

    std::filesystem::path source;
    int number = 0;
    std::vector<Query> queries;
    std::vector<Exchange> current;
};

} // namespace engine
