#pragma once

#include "translator/TranslationTables.hpp"

#include <string>

namespace translator {

/// The event at hand, as its record gives it.
struct EventKey {
    unsigned eventType = 0;
    unsigned sensorType = 0;
    unsigned event1 = 0; ///< event data 1; the offset is its low half
    unsigned event2 = 0;
    unsigned event3 = 0;

    unsigned offset() const { return event1 & 0x0Fu; }
    std::uint16_t sensorKey() const { return packSensorKey(eventType, sensorType); }
};

} // namespace translator

/// One translation file, loaded. Read-only, so any number of threads may look up.
class TranslationFile {
public:
    /// Loads the file of `locale` beside `fileName` ("de_DE.utf8": "hr_sel_de_DE.ini") if there is one, else `fileName`
    /// itself. ResultStatus 1183 if it cannot be opened. Of a file beyond 16 MiB the rest is not read.
    TranslationFile(const char* fileName, const std::string& locale);
    explicit TranslationFile(translator::TranslationTables content) : tables(std::move(content)) {}

    /// The file name that the table of locales has for `locale`, "" for a locale without one. Of a name such as
    /// "de_DE.UTF-8" language and country count, whatever the character set.
    static std::string fileNameOfLocale(const std::string& locale);
    /// True if there is a file of `locale` beside `fileName`.
    static bool hasLocale(const char* fileName, const std::string& locale);

    /// The table's entry for an event, exact event data before "any", and the generic and the specific table's entry
    /// for all other events behind them; the error of the table without one. Severity FFh in it means that the file
    /// gives none.
    const event& findGenericTranslation(const translator::EventKey& key) const;
    const event& findSpecificTranslation(const translator::EventKey& key) const;
    const override& findOverrideTranslation(const translator::EventKey& key) const;
    const override& findPlatformOverrideTranslation(std::uint16_t platform, const translator::EventKey& key) const;
    const oemTime& findOEMTSTranslation(std::uint32_t manufacturer,
                                        std::span<const std::uint8_t, translator::oemTimeByteCount> bytes) const;
    const oemNonTime&
    findOEMNonTSTranslation(std::span<const std::uint8_t, translator::oemNonTimeByteCount> bytes) const;

    /// The tables themselves, for lookups without an error.
    const translator::TranslationTables& content() const { return tables; }

    // For other callers; the agent itself looks into the tables.

    /// Words by number; MetaInfoTableError without one.
    std::wstring findDevice(int id) const { return tables.devices.findTranslation(id); }
    std::wstring findDevice1(int id) const { return tables.secondDevices.findTranslation(id); }
    std::wstring findSeverity(int id) const { return tables.severities.findTranslation(id); }
    std::wstring findModel(int id) const { return tables.models.findTranslation(id); }
    std::wstring findSensorType(int id) const { return tables.sensorTypes.findTranslation(id); }
    std::wstring findSensorUnit(int id) const { return tables.sensorUnits.findTranslation(id); }
    std::wstring findEntityID(int id) const { return tables.entityIds.findTranslation(id); }
    std::wstring findProductID(int id) const { return tables.productIds.findTranslation(id); }
    std::wstring findRecommendation(int id) const { return tables.recommendedActions.findTranslation(id); }
    std::wstring findMiscString(int id) const { return tables.miscStrings.findTranslation(id); }

private:
    translator::TranslationTables tables;
};
