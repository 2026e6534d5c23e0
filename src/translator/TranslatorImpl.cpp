#include "translator/TranslatorImpl.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "ipmi/SensorReading.hpp"
#include "ipmi/TimeStamp.hpp"
#include "translator/EventContext.hpp"
#include "translator/SensorValue.hpp"
#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

#include <array>
#include <bit>

using namespace translator;

namespace {

constexpr std::uint8_t lastNamedType = 0x7E; ///< of the manufacturers' event types; 7Fh has no rule

/// Severity of a threshold event for which the file gives none, by offset and direction.
int defaultThresholdSeverity(const SELEntry& entry)
{
    constexpr std::array<int, 12> crossed{1, 0, 2, 0, 3, 0, 0, 1, 0, 2, 0, 3};
    constexpr std::array<int, 12> crossedBack{0, 1, 0, 2, 0, 3, 1, 0, 2, 0, 3, 0};
    const auto& table = entry.isDeassertion() ? crossedBack : crossed;
    return entry.offset() < table.size() ? table[entry.offset()] : int{SEVERITY_INFORMATIONAL};
}

EventKey keyOf(const SELEntry& entry)
{
    return {.eventType = entry.eventType(),
            .sensorType = entry.sensorType(),
            .event1 = entry.eventData(1),
            .event2 = entry.eventData(2),
            .event3 = entry.eventData(3)};
}

[[noreturn]] void carryUp(unsigned short code, const TranslationError& error)
{
    throw ResultStatus(code, narrowText(error.getText()), "", COMMAND_GET);
}

[[noreturn]] void failRepository(const wchar_t* words, int index, const wchar_t* end)
{
    const std::wstring text = words + hexText(static_cast<std::uint32_t>(index)) + end;
    throw ResultStatus(ERROR_SDR_REPOSITORY_EXCEPTION, narrowText(text), "", COMMAND_SET);
}

std::wstring timeText(std::uint32_t seconds)
{
    return widenText(ipmi::timeStampText(seconds));
}

} // namespace

TranslatorImpl::TranslatorImpl(const char* fileName, const char* locale, bool makeRepository)
{
    setTranslationFile(fileName, locale);
    if (makeRepository)
        repository.emplace();
}

translator::TranslatorPointer translator::makeTranslator(const char* file, const char* locale)
{
    return TranslatorPointer(std::make_unique<TranslatorImpl>(file, locale, true).release());
}

void TranslatorImpl::setTranslationFile(const char* fileName, const char* locale)
{
    file = std::make_unique<TranslationFile>(fileName, locale ? locale : "");
}

void TranslatorImpl::setSDRRepository(const unsigned char* const* records, int count)
{
    sensor = nullptr;
    repository.emplace(records, count);
}

void TranslatorImpl::setSDRRepository(const std::vector<std::vector<std::uint8_t>>& records)
{
    sensor = nullptr;
    repository.emplace(records);
}

void TranslatorImpl::addSDR(const unsigned char* record, int length)
{
    const SDREntry added(record, length);
    if (!repository || added.getIndex() == SDREntry::notIndexable)
        failRepository(L"Could not add SDR (0x", added.getIndex(), L") to the Translator SDR repository.");
    repository->add(added.getIndex(), added);
}

void TranslatorImpl::removeSDR(unsigned char owner, unsigned char lun, unsigned char sensorNumber)
{
    const int index = (owner * 256 + lun) * 256 + sensorNumber;
    constexpr const wchar_t* words = L"Could not remove SDR (0x";
    constexpr const wchar_t* end = L") from the Translator SDR repository.";
    if (!repository)
        failRepository(words, index, end);
    try {
        sensor = nullptr;
        repository->remove(index);
    } catch (const SDRRepositoryError&) {
        failRepository(words, index, end);
    }
}

void TranslatorImpl::setPlatformID(unsigned short id)
{
    platformID = file && file->content().productIds.find(id) ? id : unknownPlatform;
}

void TranslatorImpl::setPlatformName(const char* name)
{
    const std::optional<int> id = file ? file->content().productIds.idOf(widenText(name)) : std::nullopt;
    platformID = static_cast<unsigned short>(id.value_or(unknownPlatform));
}

void TranslatorImpl::setSensorName(const char* name)
{
    givenSensorName = widenText(name ? name : "");
}

void TranslatorImpl::destroy()
{
    file.reset();
    repository.reset();
    sensor = nullptr;
}

std::wstring TranslatorImpl::translate(const unsigned char* record, unsigned long length)
{
    for (std::wstring* result : {&description, &severity, &sensorName, &sensorType, &generator, &timestamp})
        result->clear();
    failed = false;
    if (!file)
        throwError(ERROR_NO_HRS_INI_FILE_PRESENT, "", COMMAND_GET);
    if (!record || length < ipmi::sel::recordSize)
        throw ResultStatus(ERROR_EVENT_TABLE, "The SEL record is too short.", "", COMMAND_GET);
    try {
        return description = translateRecord(SELEntry({record, length}));
    } catch (const EventTableError& error) {
        failed = true;
        carryUp(ERROR_EVENT_TABLE, error);
    } catch (const OEMTableError& error) {
        failed = true;
        carryUp(ERROR_OEM_TABLE, error);
    }
}

std::wstring TranslatorImpl::translateRecord(const SELEntry& entry)
{
    if (entry.isSystemEvent())
        return translateSystemEvent(entry);
    severity = wordOf(file->content().miscStrings, MISC_OEM_SEVERITY);
    return entry.isTimestamped() ? translateOEMTimestamped(entry) : translateOEMNonTimestamped(entry);
}

std::wstring TranslatorImpl::translateSystemEvent(const SELEntry& entry)
{
    timestamp = translateTime(&entry);
    translateGenID(entry);
    translateSensorType(entry);
    findSensor(entry);
    severity = wordOf(file->content().severities, entry.eventType() == ipmi::eventtype::threshold
                                                      ? defaultThresholdSeverity(entry)
                                                      : SEVERITY_INFORMATIONAL);
    return translateByEventType(entry);
}

std::wstring TranslatorImpl::translateByEventType(const SELEntry& entry)
{
    const std::uint8_t type = entry.eventType();
    if (type == ipmi::eventtype::unspecified)
        return translateUnknown();
    if (type == ipmi::eventtype::threshold)
        return translateThreshold(entry);
    if (type == ipmi::eventtype::sensorSpecific)
        return translateSpecific(entry);
    if (type <= ipmi::eventtype::lastGeneric || (type > ipmi::eventtype::sensorSpecific && type <= lastNamedType))
        return translateGeneric(entry);
    return {};
}

std::wstring TranslatorImpl::translateUnknown() const
{
    return L"Unknown Event.";
}

std::wstring TranslatorImpl::translateThreshold(const SELEntry& entry)
{
    const EventKey key = keyOf(entry);
    const event* found = findOverride(key);
    return render(entry, found ? *found : file->findGenericTranslation(key), defaultThresholdSeverity(entry));
}

std::wstring TranslatorImpl::translateGeneric(const SELEntry& entry)
{
    const EventKey key = keyOf(entry);
    const event* found = findOverride(key);
    return render(entry, found ? *found : file->findGenericTranslation(key), SEVERITY_INFORMATIONAL);
}

/// Event data that is not the sensor type's own must not choose an entry where the file has one for any event data.
std::wstring TranslatorImpl::translateSpecific(const SELEntry& entry)
{
    const EventKey key = keyOf(entry);
    const event* found = findOverride(key);
    if (!found) {
        const auto own = [](ipmi::DataKind kind, unsigned byte) {
            return kind == ipmi::DataKind::extension ? byte : unsigned{anyByte};
        };
        found = file->content().specificEvents.findNearest(
            key.sensorType, key.offset(), own(entry.data2Kind(), key.event2), own(entry.data3Kind(), key.event3));
    }
    return render(entry, found ? *found : file->findSpecificTranslation(key), SEVERITY_INFORMATIONAL);
}

/// The platform's own entry before that of all platforms. Asked without exceptions: most events have neither.
const event* TranslatorImpl::findOverride(const EventKey& key) const
{
    const TranslationTables& tables = file->content();
    const override* found = nullptr;
    if (platformID != unknownPlatform)
        found = tables.platformOverrides.findNearest(platformID, key.sensorKey(), key.offset(), key.event2, key.event3);
    return found ? found : tables.overrides.findNearest(key.sensorKey(), key.offset(), key.event2, key.event3);
}

std::wstring TranslatorImpl::render(const SELEntry& entry, const event& found, int defaultSeverity)
{
    const std::uint8_t given = entry.isDeassertion() ? found.deassertSeverity : found.assertSeverity;
    EventContext context{.entry = entry,
                         .tables = file->content(),
                         .sdr = sensor,
                         .severityId = given == anyByte ? defaultSeverity : given,
                         .action = found.recommendAction,
                         .severity = {},
                         .sensorName = sensorName,
                         .timestamp = timestamp,
                         .platformBiosId = platformBiosId,
                         .socketType = socketType};
    if (entry.eventType() == ipmi::eventtype::threshold && context.severityId == SEVERITY_INFORMATIONAL)
        context.severityId = severityAfterReturn(context);
    severity = wordOf(file->content().severities, context.severityId);
    context.severity = severity;
    return expandTranslation(found.translation, context);
}

std::wstring TranslatorImpl::translateOEMTimestamped(const SELEntry& entry)
{
    timestamp = translateTime(&entry);
    sensorName = L"OEM Timestamped SEL event";
    const oemTime& found = file->findOEMTSTranslation(entry.manufacturer(), entry.oemTimestampedData());
    return renderOem(entry, found.translation, found.recommendAction);
}

std::wstring TranslatorImpl::translateOEMNonTimestamped(const SELEntry& entry)
{
    sensorName = L"OEM Non-Timestamped SEL event";
    const oemNonTime& found = file->findOEMNonTSTranslation(entry.oemData());
    return renderOem(entry, found.translation, found.recommendAction);
}

std::wstring TranslatorImpl::renderOem(const SELEntry& entry, std::wstring_view translation, int action)
{
    return expandTranslation(translation, {.entry = entry,
                                           .tables = file->content(),
                                           .action = action,
                                           .severity = severity,
                                           .sensorName = sensorName,
                                           .timestamp = timestamp});
}

void TranslatorImpl::translateGenID(const SELEntry& entry)
{
    const TranslationTables& tables = file->content();
    const std::wstring* device = tables.devices.find(entry.generator());
    generator = device ? *device : wordOf(tables.secondDevices, entry.generator());
}

void TranslatorImpl::translateSensorType(const SELEntry& entry)
{
    sensorType = wordOf(file->content().sensorTypes, entry.sensorType());
}

void TranslatorImpl::findSensor(const SELEntry& entry)
{
    sensor = repository ? repository->look(entry.getIndex()) : nullptr;
    sensorName = givenSensorName.empty() && sensor ? sensor->getIDString() : givenSensorName;
    givenSensorName.clear();
}

/// The word, or what stands in for a missing one; that sets the flag.
std::wstring TranslatorImpl::wordOf(const MetaInfoTable& table, int id)
{
    if (const std::wstring* text = table.find(id))
        return *text;
    failed = true;
    const std::wstring* unknown = file->content().miscStrings.find(MISC_UNKNOWN);
    return unknown ? *unknown : std::wstring();
}

int TranslatorImpl::getVoltageFaultSensorOffset(const unsigned char* record, unsigned long length) const
{
    if (!record || length < ipmi::sel::recordSize)
        return -1;
    const SELEntry entry({record, length});
    const bool isFault = entry.isSystemEvent() && entry.sensorType() == ipmi::sensortype::voltage &&
                         entry.eventType() > ipmi::eventtype::threshold &&
                         entry.data2Kind() != ipmi::DataKind::unspecified && entry.eventData(2) != 0;
    return isFault ? std::countr_zero(entry.eventData(2)) : -1;
}

std::wstring TranslatorImpl::translateTime(const SELEntry* entry)
{
    return timeText(entry->seconds());
}

std::wstring TranslatorImpl::translateTimeStamp(const unsigned char* bytes)
{
    return timeText(ipmi::littleEndian({bytes, 4}));
}
