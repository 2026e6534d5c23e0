#pragma once

#include "client/words/Entities.hpp"
#include "ipmi/Hex.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

// The rows of event-road.txt, whose head tells how they are read.

inline std::string hex(int byte)
{
    return ipmi::hexByte(static_cast<std::uint8_t>(byte));
}

/// A kind of event (IPMI 2.0, tables 42-2 and 42-3).
struct EventKind {
    int sensorType;
    int eventType;
    int data1;
    bool isOver = false;

    auto operator<=>(const EventKind&) const = default;
};

inline std::string nameOf(int sensorType)
{
    return "SLOWER ON " + hex(sensorType);
}

/// A gravity word of the file: its severity, the place of its trap in a family's list, and how its texts end.
struct Gravity {
    std::string word;
    int severity;
    std::size_t trap;
    std::string tail;
};
inline const Gravity gravities[] = {{"LNR", 6, 0, ". Status is Lower Non-Recoverable"},
                                    {"LCR", 5, 1, ". Status is Lower Critical"},
                                    {"LNC", 4, 2, ". Status is Lower Non-Critical"},
                                    {"OK", 3, 3, ". Status is OK"},
                                    {"NC", 4, 4, ". Status is Non-Critical"},
                                    {"UNC", 4, 4, ". Status is Upper Non-Critical"},
                                    {"CR", 5, 5, ". Status is Critical"},
                                    {"UCR", 5, 5, ". Status is Upper Critical"},
                                    {"NR", 6, 6, ". Status is Non-Recoverable"},
                                    {"UNR", 6, 6, ". Status is Upper Non-Recoverable"}};

/// How the sensor types of a family tell a state: their row, whether their events count for the health, the trap of no
/// gravity, whether the words are the translator's, and the traps of lower bounds, of OK, and of upper ones.
struct Family {
    std::string types; ///< "04/0B" is type 04 with event type 0B
    int row;
    bool counts;
    std::string noTrap;
    bool isTranslated;
    std::array<std::string, 7> traps;
};
inline const std::string no = "none";
inline const Family families[] = {
    {"01", 1, true, no, false, {"70.13", "70.14", "70.15", "70.16", "70.17", "70.18", "70.19"}},
    {"02", 1, true, no, false, {"50.10", "50.11", "50.12", "50.13", "50.14", "50.15", "50.16"}},
    {"04/0B", 0, false, no, true, {no, "70.3", "70.2", "70.1", "70.2", "70.3", no}},
    {"04", 1, true, no, false, {"70.4", "70.5", "70.6", "70.7", "70.8", "70.9", "70.10"}},
    {"05", 0, false, "30.2", false, {"30.2", "30.2", "30.2", "30.2", "30.2", "30.2", "30.2"}},
    {"07", 1, true, no, false, {no, no, no, no, no, no, no}},
    {"08,0C", 1, true, no, true, {no, no, no, no, no, no, no}},
    {"09", 1, true, no, false, {no, "50.3", "50.2", "50.1", "50.2", "50.3", no}},
    {"0A", 1, false, no, true, {no, "70.3", "70.2", "70.1", "70.2", "70.3", no}},
    {"0D", 1, false, no, false, {no, no, no, no, no, no, no}},
    {"0F,10,12,13,16,19,DC", 0, false, no, false, {no, no, no, no, no, no, no}},
    {"21", 0, false, no, false, {no, "80.2", "80.2", "80.1", "80.2", "80.2", no}}};

/// Lists of sensor types.
inline const std::map<std::string, std::string> lists = {
    {"own", "01,02,04,05,07,0D,0F,10,12,13,16,19,21,DC"}, {"told", "08,0A,0C"}, {"all", "own,told"}};
/// What the log may add to words of the agent's own.
inline const char* const additions[] = {".", ", from", " again", " any more", " ("};

/// What event-road.txt says of each kind of event; its head tells how.
class Expectations {
public:
    explicit Expectations(const char* path)
    {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);)
            if (!line.empty() && line.front() != '#')
                add(line);
    }

    /// "trap severity row health text", "-" for a record that makes no event, of a record of which the log says `inLog`
    /// and the trap `shown`.
    static std::string outcome(const EventKind& kind, const std::string& side, const std::string& inLog,
                               const std::string& shown)
    {
        if (side == "-")
            return side;
        const Family& family = familyOf(kind);
        const std::size_t begin = side.front() == '[' ? side.find(']') + 2 : 0;
        const std::string word = side.substr(begin, side.find(' ', begin) - begin);
        const auto* const gravity = std::ranges::find(gravities, word, &Gravity::word);
        const bool isGrave = gravity != std::end(gravities);
        int severity = isGrave ? gravity->severity : family.isTranslated ? 2 : 0;
        std::string trap;
        std::istringstream given(begin ? side.substr(1, begin - 3) : "");
        for (std::string item; given >> item;)
            if (item.find('.') == std::string::npos)
                severity = std::stoi(item);
            else
                trap = item;
        if (trap.empty())
            trap = isGrave && severity != 0 ? family.traps[gravity->trap] : family.noTrap;
        const int before = kind.isOver ? ENUM_STATUS_CRITICAL : ENUM_STATUS_OK;
        std::string words = side.substr(std::min(side.size(), begin + (isGrave ? word.size() + 1 : 0)));
        if (words.empty() || words == "log")
            words = "=" + (family.isTranslated ? inLog : ownWords(kind, isGrave ? gravity->tail : "", inLog, shown));
        else if (words == "=")
            words += gravity->tail.substr(2);
        else if (words.front() != '=')
            words = "={} reports " + words + (isGrave ? gravity->tail : family.isTranslated ? "." : "");
        std::ostringstream line;
        line << trap << ' ' << severity << ' ' << family.row << ' '
             << (family.counts && severity >= ENUM_STATUS_OK ? severity : before) << ' '
             << filled(words.substr(1), kind);
        return line.str();
    }

    std::map<EventKind, std::string> sides;

private:
    void add(const std::string& line)
    {
        const std::size_t bar = line.find(" | "), second = line.find(" | ", bar + 3);
        const std::string asserted = line.substr(bar + 3, second - bar - 3), ended = line.substr(second + 3);
        std::istringstream selections(line.substr(0, bar));
        for (std::string selection; std::getline(selections, selection, ';');) {
            std::istringstream fields(selection);
            std::string types, eventTypes, data;
            fields >> types >> eventTypes >> data;
            for (const int type : listed(types))
                for (const int eventType : listed(eventTypes))
                    for (const int data1 : listed(data))
                        put({type, eventType, data1}, asserted, ended);
        }
    }

    void put(EventKind kind, const std::string& asserted, const std::string& ended)
    {
        EXPECT_TRUE(sides.emplace(kind, asserted).second)
            << "twice: " << hex(kind.sensorType) << ' ' << hex(kind.data1);
        kind.isOver = true;
        sides.emplace(kind, ended);
    }

    /// What a field stands for: "01,50-52" is 1, 50h, 51h and 52h; a list's name what that holds.
    static std::vector<int> listed(const std::string& field)
    {
        std::vector<int> all;
        std::istringstream items(field);
        for (std::string item; std::getline(items, item, ',');) {
            const auto list = lists.find(item);
            if (list != lists.end())
                std::ranges::copy(listed(list->second), std::back_inserter(all));
            else
                for (int each = std::stoi(item, nullptr, 16);
                     each <= std::stoi(item.substr(item.find('-') + 1), nullptr, 16); ++each)
                    all.push_back(each);
        }
        return all;
    }

    static const Family& familyOf(const EventKind& kind)
    {
        const std::string whole = hex(kind.sensorType) + "/" + hex(kind.eventType);
        return *std::ranges::find_if(families, [&](const Family& family) {
            return family.types.find('/') == std::string::npos
                       ? std::ranges::count(listed(family.types), kind.sensorType) > 0
                       : family.types == whole;
        });
    }

    /// `shown` if it has the log's phrase, without what only the log says, and `tail`; else the log's words.
    static std::string ownWords(const EventKind& kind, const std::string& tail, const std::string& inLog,
                                const std::string& shown)
    {
        const std::string start = nameOf(kind.sensorType) + " reports ";
        if (!shown.starts_with(start) || !shown.ends_with(tail) || shown.size() <= start.size() + tail.size())
            return inLog;
        const std::string phrase = shown.substr(start.size(), shown.size() - start.size() - tail.size());
        for (const std::string& begin : {start + phrase, start + "its " + phrase})
            if (inLog.starts_with(begin) && std::ranges::any_of(additions, [&](const char* addition) {
                    return inLog.compare(begin.size(), std::strlen(addition), addition) == 0;
                }))
                return shown;
        return inLog;
    }

    static std::string filled(std::string words, const EventKind& kind)
    {
        const std::string data = "(event data " + hex(kind.data1) + "h FFh FFh)";
        for (const auto& [mark, text] : {std::pair<std::string, std::string>{"{more}", ", or another state " + data},
                                         {"{data}", data},
                                         {"{}", nameOf(kind.sensorType)}})
            if (const std::size_t place = words.find(mark); place != std::string::npos)
                words.replace(place, mark.size(), text);
        return words;
    }
};
