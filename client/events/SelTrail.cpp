#include "client/events/SelTrail.hpp"

#include "ipmi/Hex.hpp"
#include "ipmi/SelView.hpp"
#include "ipmi/TimeStamp.hpp"

#include <algorithm>
#include <sstream>

namespace client::events {

namespace {

constexpr char firstLine[] = "event log mark 1";

bool isRecord(const std::string& text)
{
    const ipmi::Bytes bytes = ipmi::parseBytes(text);
    return bytes.size() == ipmi::sel::recordSize && ipmi::hexBytes(bytes) == text;
}

} // namespace

void SelTrail::add(const std::string& record)
{
    records.push_back(record);
    if (records.size() > longest)
        records.pop_front();
}

const std::string* SelTrail::back(std::size_t places) const
{
    return places < records.size() ? &records[records.size() - 1 - places] : nullptr;
}

bool SelTrail::holds(const std::string& record) const
{
    return std::ranges::find(records, record) != records.end();
}

std::string SelTrail::text() const
{
    std::string lines = std::string(firstLine) + "\n" + erased + "\n";
    for (const std::string& record : records)
        lines += record + "\n";
    return lines;
}

std::optional<SelTrail> SelTrail::parse(const std::string& text)
{
    std::istringstream lines(text);
    std::string line;
    SelTrail trail;
    if (!std::getline(lines, line) || line != firstLine || !std::getline(lines, trail.erased))
        return std::nullopt;
    while (std::getline(lines, line)) {
        if (!isRecord(line))
            return std::nullopt;
        trail.add(line);
    }
    return trail;
}

unsigned idOf(const std::string& record)
{
    return ipmi::wordAt(ipmi::parseBytes(record), ipmi::sel::id);
}

bool isUnique(const std::string& record)
{
    const ipmi::Bytes bytes = ipmi::parseBytes(record);
    if (bytes.size() < ipmi::sel::recordSize)
        return false;
    const ipmi::SelView view(bytes);
    return view.isTimestamped() && view.seconds() > ipmi::lastPreInitTime && view.seconds() != ipmi::unspecifiedTime;
}

News whatIsNew(const SelTrail& trail, std::size_t back, const LogPage& page, bool wasErased)
{
    const std::string* const anchor = trail.back(back);
    if (page.records.empty())
        return {anchor ? News::furtherBack : News::emptyLog, {}};
    if (anchor && (page.records.front() != *anchor || (wasErased && !isUnique(*anchor))))
        return {News::furtherBack, {}};
    News news{News::here, {}};
    for (std::size_t place = 0; place < page.records.size(); ++place)
        if (!anchor || !trail.holds(page.records[place]))
            news.fresh.push_back(place);
    return news;
}

} // namespace client::events
