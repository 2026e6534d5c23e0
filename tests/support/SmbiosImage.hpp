#pragma once

#include "tests/support/TempRoot.hpp"

#include <cstdint>
#include <initializer_list>
#include <iomanip>
#include <numeric>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

/// SMBIOS structures and an entry point, laid out as firmware leaves them. Numbers go in little-endian.
class SmbiosImage {
public:
    /// The formatted area of one structure behind its header, field by field.
    class Body {
    public:
        Body& byte(unsigned value) { return number(value, 1); }
        Body& word(unsigned value) { return number(value, 2); }
        Body& dword(std::uint64_t value) { return number(value, 4); }
        Body& qword(std::uint64_t value) { return number(value, 8); }
        Body& bytes(std::initializer_list<unsigned> values)
        {
            for (const unsigned value : values)
                byte(value);
            return *this;
        }
        /// A string field: the text becomes the next one of the structure's list.
        Body& text(const std::string& value)
        {
            strings.push_back(value);
            return byte(static_cast<unsigned>(strings.size()));
        }

        std::string data;
        std::vector<std::string> strings;

    private:
        Body& number(std::uint64_t value, int size)
        {
            for (int i = 0; i < size; ++i)
                data += static_cast<char>(value >> (8 * i));
            return *this;
        }
    };

    /// Entry point of 31 bytes and table in one file, the table at 20h: the layout that `dmidecode --from-dump` reads.
    static constexpr std::uint32_t dumpTableAddress = 0x20;

    SmbiosImage(unsigned major_, unsigned minor_) : major(major_), minor(minor_) {}

    /// Adds a structure and returns its handle, the number of structures before it plus 100h.
    unsigned add(unsigned type, const Body& body)
    {
        const unsigned handle = 0x100 + count;
        std::string set;
        for (const std::string& text : body.strings)
            set += text + '\0';
        addRaw(type, static_cast<unsigned>(4 + body.data.size()), handle,
               body.data + set + (set.empty() ? zeros(2) : zeros(1)));
        return handle;
    }
    /// Adds a structure whose length byte may say anything, with `rest` behind its header.
    void addRaw(unsigned type, unsigned length, unsigned handle, const std::string& rest)
    {
        table += Body().byte(type).byte(length).word(handle).data + rest;
        ++count;
    }

    static std::string zeros(std::size_t size) { return std::string(size, '\0'); }

    /// The entry point's 31 bytes, both of its sums right.
    std::string entryPoint(std::uint32_t tableAddress) const
    {
        Body middle;
        middle.word(tableLength ? tableLength : static_cast<unsigned>(table.size())).dword(tableAddress).word(count);
        std::string tail = "_DMI_" + zeros(1) + middle.data + static_cast<char>(major << 4 | minor);
        tail[5] = static_cast<char>(-sum(tail));
        std::string head = "_SM_" + Body().bytes({0, 0x1F, major, minor, 0, 0, 0, 0, 0, 0, 0, 0}).data;
        head[4] = static_cast<char>(-sum(head + tail));
        return head + tail;
    }
    /// The entry point of 64 bits.
    std::string wideEntryPoint(std::uint32_t tableAddress) const
    {
        Body rest;
        rest.bytes({0x18, major, minor, 0, 1, 0}).dword(table.size()).qword(tableAddress);
        const std::string bytes = "_SM3_" + zeros(1) + rest.data;
        return std::string(bytes).replace(5, 1, 1, static_cast<char>(-sum(bytes)));
    }
    std::string dump() const { return entryPoint(dumpTableAddress) + zeros(1) + table; }
    std::string wideDump() const { return wideEntryPoint(dumpTableAddress) + zeros(8) + table; }
    /// Puts both into the "/dev/mem" of `root`, a file of a mebibyte and what the table needs.
    void place(TempRoot& root, std::uint32_t entryAddress = 0xF0000, std::uint32_t tableAddress = 0xE0000) const
    {
        root.writeAt("/dev/mem", 0x100000 + std::max(entryAddress, tableAddress), zeros(0x10000));
        root.writeAt("/dev/mem", entryAddress, entryPoint(tableAddress));
        root.writeAt("/dev/mem", tableAddress, table);
    }

    std::string table;
    unsigned count = 0;
    unsigned tableLength = 0; ///< what the entry point says instead of the table's real length, if not 0

private:
    static int sum(const std::string& bytes) { return std::accumulate(bytes.begin(), bytes.end(), 0); }

    unsigned major;
    unsigned minor;
};

/// The formatted area that the words of `layout` write: bytes, words and dwords in hexadecimal by their count of digits
/// ("05", "0180", "00100000"), texts in quotes, "*N" for N bytes of zero.
inline SmbiosImage::Body bodyOf(const std::string& layout)
{
    SmbiosImage::Body body;
    std::istringstream words(layout);
    for (std::string word; words >> std::ws && words.peek() != EOF;) {
        if (words.peek() == '\'') {
            words >> std::quoted(word, '\'');
            body.text(word);
        } else if (words >> word; word[0] == '*') {
            body.data += SmbiosImage::zeros(std::stoul(word.substr(1)));
        } else {
            for (std::size_t at = word.size(); at > 0; at -= 2)
                body.byte(static_cast<unsigned>(std::stoul(word.substr(at - 2, 2), nullptr, 16)));
        }
    }
    return body;
}

/// Structures as a server has them: firmware, board, chassis, two processor sockets with the first empty, two memory
/// arrays with empty slots, and some of the others.
inline SmbiosImage serverImage(unsigned major, unsigned minor)
{
    SmbiosImage image(major, minor);
    image.add(0, bodyOf("'Firmware Maker' 'B01.02.0034.5' E000 '01/02/2010' 0F 80 *7 03 05 04 06 01 09"));
    image.add(2, bodyOf("'Maker' 'Larch-9' 'A00' 'B456' 'T1' 09 'Bay 1' 0102 0A 02 0103 0104"));
    image.add(3, bodyOf("'Maker' 97 'C1' 'C789' 'AT-7' 03 04 06 03 01020304 02 01 01 03 8A 01 02 'CSKU'"));
    for (const char* const socket : {"'CPU 1' 00", "'CPU 2' 41"}) {
        const std::string name(socket, 7), status(socket + 8, 2);
        image.add(4, bodyOf(name + " 03 B3 'Maker' BFEBFBFF000106A5 'Version' 8C 0085 0FA0 0B75 " + status +
                            " 15 0106 FFFF FFFF 'P-Ser' 'P-Tag' 'P-Part' 04 03 08 0004 00B3"));
    }
    image.add(11, bodyOf("02 'unused' 'OEM two'"));
    image.add(16, bodyOf("03 03 06 00800000 FFFE 0003 0000020000000000")); // handle 0106h
    image.add(16, bodyOf("03 03 06 80000000 FFFE 0002 0000020000000000"));
    for (const auto& [array, name, size] : {std::tuple{"0106", "A1", "1000"},
                                            {"0107", "B1", "0000"},
                                            {"0106", "A2", "0000"},
                                            {"0106", "A3", "7FFF"},
                                            {"0107", "B2", "0000"}})
        image.add(17, bodyOf(std::string(array) + " FFFE 0048 0040 " + size + " 09 00 'DIMM " + name +
                             "' 'Bank' 18 0280 0535 'Maker' 'Ser' 'Tag' 'Part' 02 00010000 042A"));
    image.add(1, bodyOf("'Maker' 'Server' 'R1' 'S123' 33221100554477668899AABBCCDDEEFF 06 'SKU-1' 'Family-1'"));
    image.add(10, bodyOf("83 'Graphics' 05 'Network'"));
    image.add(13, bodyOf("01 01 *15 'enUS'"));
    image.add(24, bodyOf("64"));
    image.add(38, bodyOf("01 20 20 FF 0000000000000CA3 00 00"));
    image.add(133, bodyOf("BF000000 00100000"));
    image.add(127, {});
    return image;
}
