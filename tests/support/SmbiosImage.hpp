#pragma once

#include "tests/support/TempRoot.hpp"

#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <string>
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
    std::string dump() const { return entryPoint(dumpTableAddress) + zeros(1) + table; }
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

/// Structures as a server has them: firmware, board, chassis, two processor sockets with the first empty, two memory
/// arrays with empty slots, security, and one of every further type of the catalogues.
inline SmbiosImage serverImage(unsigned major, unsigned minor)
{
    using Body = SmbiosImage::Body;
    SmbiosImage image(major, minor);
    image.add(0, Body()
                     .text("Firmware Maker")
                     .text("B01.02.0034.5")
                     .word(0xE000)
                     .text("01/02/2010")
                     .byte(15)
                     .qword(0x80)
                     .bytes({0x03, 0x05, 4, 6, 1, 9}));
    image.add(
        1, Body()
               .text("Maker")
               .text("Server")
               .text("R1")
               .text("S123")
               .bytes({0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF})
               .byte(6)
               .text("SKU-1")
               .text("Family-1"));
    image.add(2, Body()
                     .text("Maker")
                     .text("Larch-9")
                     .text("A00")
                     .text("B456")
                     .text("T1")
                     .byte(0x09)
                     .text("Bay 1")
                     .word(0x102)
                     .byte(10)
                     .byte(2)
                     .word(0x103)
                     .word(0x104));
    image.add(3, Body()
                     .text("Maker")
                     .byte(0x97)
                     .text("C1")
                     .text("C789")
                     .text("AT-7")
                     .bytes({3, 4, 6, 3})
                     .dword(0x01020304)
                     .bytes({2, 1, 1, 3, 0x8A, 1, 2})
                     .text("CSKU"));
    const auto socket = [&image](const char* name, unsigned status) {
        image.add(4, Body()
                         .text(name)
                         .byte(3)
                         .byte(0xB3)
                         .text("Maker")
                         .qword(0xBFEBFBFF000106A5)
                         .text("Version")
                         .byte(0x8C)
                         .word(133)
                         .word(4000)
                         .word(2933)
                         .byte(status)
                         .byte(0x15)
                         .word(0x106)
                         .word(0xFFFF)
                         .word(0xFFFF)
                         .text("P-Ser")
                         .text("P-Tag")
                         .text("P-Part")
                         .bytes({4, 3, 8})
                         .word(0x04)
                         .word(0xB3));
    };
    socket("CPU 1", 0x00);
    socket("CPU 2", 0x41);
    image.add(7, Body().text("L1").word(0x0180).word(0x8004).word(0x0040).word(0x20).word(0x20).bytes({5, 5, 5, 7}));
    image.add(8, Body().text("J1").byte(0).text("USB").byte(0x12).byte(0x10));
    image.add(9,
              Body().text("PCIe 1").bytes({0xA5, 0x0D, 4, 4}).word(7).bytes({0x0C, 0x01}).word(1).bytes({0x05, 0x18}));
    image.add(10, Body().byte(0x83).text("Graphics").byte(0x05).text("Network"));
    image.add(11, Body().byte(2).bytes({}).text("unused").text("OEM two"));
    image.add(13, Body().byte(1).byte(1).bytes({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}).text("enUS"));
    const auto array = [&image](unsigned kilobytes, unsigned slots) {
        return image.add(16, Body().bytes({3, 3, 6}).dword(kilobytes).word(0xFFFE).word(slots).qword(0x20000000000));
    };
    const auto slot = [&image](unsigned owner, const std::string& name, unsigned size, unsigned long extended = 0) {
        image.add(17, Body()
                          .word(owner)
                          .word(0xFFFE)
                          .word(72)
                          .word(64)
                          .word(size)
                          .bytes({9, 0})
                          .text(name)
                          .text("Bank")
                          .byte(0x18)
                          .word(0x0280)
                          .word(1333)
                          .text("M-Maker")
                          .text("M-Ser")
                          .text("M-Tag")
                          .text("M-Part")
                          .byte(2)
                          .dword(extended)
                          .word(1066));
    };
    const unsigned first = array(0x800000, 3);
    const unsigned second = array(0x80000000, 2);
    slot(first, "DIMM A1", 4096);
    slot(second, "DIMM B1", 0);
    slot(first, "DIMM A2", 0);
    slot(first, "DIMM A3", 0x7FFF, 65536);
    slot(second, "DIMM B2", 0);
    image.add(18, Body().bytes({3, 2, 2}).dword(0).dword(0x80000000).dword(0x80000000).dword(0x80000000));
    image.add(19, Body().dword(0xFFFFFFFF).dword(0xFFFFFFFF).word(first).byte(1).qword(0x1000).qword(0x1FFF));
    image.add(24, Body().byte(0x64));
    image.add(38, Body().bytes({1, 0x20, 0x20, 0xFF}).qword(0xCA3).bytes({0, 0}));
    image.add(133, Body().dword(0xBF000000).dword(0x100000));
    image.add(127, Body());
    return image;
}
