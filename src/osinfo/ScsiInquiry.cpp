#include "common/Seams.hpp"
#include "osinfo/OsCalls.hpp"
#include "osinfo/OsInfo.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <scsi/sg.h>

// What a drive says of itself to the SCSI command INQUIRY (SPC-4, 6.6).

namespace {

using namespace osinfo;

constexpr std::uint8_t inquiryCommand = 0x12;
constexpr std::uint8_t vitalProductData = 0x01;
constexpr std::uint8_t standardPage = 0x00;
constexpr std::uint8_t serialNumberPage = 0x80;
constexpr unsigned timeoutMilliseconds = 5000;
constexpr std::size_t answerBytes = 96;
constexpr std::size_t senseBytes = 32;

/// A field of the answer: where it begins, and how the text of it is cut.
struct Field {
    std::size_t offset;
    std::size_t size;
};

constexpr Field vendorField{8, 8};
constexpr Field productField{16, 16};
constexpr Field revisionField{32, 4};
constexpr std::size_t pageHeaderBytes = 4;

using Answer = std::array<char, answerBytes>;

struct Inquiry {
    Answer answer{};
    std::size_t size = 0; ///< bytes of the answer that the drive sent
};

/// Sense data that come with a good status are no failure; the driver marks them in the upper half of this word.
bool succeeded(const sg_io_hdr& header)
{
    constexpr unsigned senseMark = 0x80000;
    constexpr unsigned statusBits = 0x3E;
    const unsigned status = static_cast<unsigned>(header.driver_status) << 16 | header.host_status;
    return (header.status & statusBits) == 0 && (status == 0 || status == senseMark);
}

std::optional<Inquiry> inquire(int fd, std::uint8_t flags, std::uint8_t page)
{
    Inquiry inquiry;
    unsigned char command[] = {inquiryCommand, flags, page, 0, answerBytes, 0};
    unsigned char sense[senseBytes] = {};
    sg_io_hdr header{};
    header.interface_id = 'S';
    header.dxfer_direction = SG_DXFER_FROM_DEV;
    header.cmd_len = sizeof command;
    header.cmdp = command;
    header.dxferp = inquiry.answer.data();
    header.dxfer_len = answerBytes;
    header.sbp = sense;
    header.mx_sb_len = senseBytes;
    header.timeout = timeoutMilliseconds;
    if (current<OsCalls>().control(fd, SG_IO, &header) < 0 || !succeeded(header))
        return std::nullopt;
    if (header.resid < 0 || header.resid > static_cast<int>(answerBytes))
        return std::nullopt;
    inquiry.size = answerBytes - static_cast<std::size_t>(header.resid);
    return inquiry;
}

/// The text of a field, without the blanks and NULs around it; blank if the answer ends before the field does.
std::string fieldText(const Inquiry& inquiry, Field field)
{
    if (field.offset + field.size > inquiry.size)
        return {};
    const std::string_view text(inquiry.answer.data() + field.offset, field.size);
    constexpr std::string_view padding(" \0", 2);
    const std::size_t first = text.find_first_not_of(padding);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(padding) - first + 1));
}

std::string readSerialNumber(int fd)
{
    const auto page = inquire(fd, vitalProductData, serialNumberPage);
    if (!page || page->size < pageHeaderBytes || static_cast<std::uint8_t>(page->answer[1]) != serialNumberPage)
        return {};
    return fieldText(*page, {pageHeaderBytes, static_cast<std::uint8_t>(page->answer[3])});
}

} // namespace

bool GetPhysicalDriveInfo_SGIO(int fd, _PHYSICALDRIVEINFO& info)
{
    const auto standard = inquire(fd, 0, standardPage);
    if (!standard)
        return false;
    const std::string vendor = fieldText(*standard, vendorField), product = fieldText(*standard, productField);
    info.Model = vendor.empty() || product.empty() ? vendor + product : vendor + " " + product;
    info.Revision = fieldText(*standard, revisionField);
    info.SerialNumber = readSerialNumber(fd);
    return true;
}
