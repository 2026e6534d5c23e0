#include "translator/SDRRepository.hpp"

#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

using namespace translator;

namespace {

[[noreturn]] void failToFind(int index)
{
    throw SDRRepositoryError(L"No SDR with the index 0x" + hexText(static_cast<std::uint32_t>(index)));
}

} // namespace

SDRRepository::SDRRepository(const unsigned char* const* list, int count)
{
    for (int i = 0; i < count; ++i)
        addSensor(SDREntry(list[i], SDREntry::keptLength));
}

SDRRepository::SDRRepository(const std::vector<std::vector<std::uint8_t>>& list)
{
    for (const auto& record : list)
        addSensor(SDREntry(record.data(), static_cast<int>(record.size())));
}

void SDRRepository::addSensor(const SDREntry& record)
{
    if (record.getIndex() != SDREntry::notIndexable && record.view().type() <= ipmi::sdrtype::eventOnly)
        add(record.getIndex(), record);
}

void SDRRepository::remove(int index)
{
    if (records.erase(index) == 0)
        failToFind(index);
}

SDREntry SDRRepository::find(int index) const
{
    if (const SDREntry* record = look(index))
        return *record;
    failToFind(index);
}

const SDREntry* SDRRepository::look(int index) const
{
    const auto found = records.find(index);
    return found == records.end() ? nullptr : &found->second;
}
