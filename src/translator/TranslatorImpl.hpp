#pragma once

#include "translator/SDRRepository.hpp"
#include "translator/SELEntry.hpp"
#include "translator/TranslationFile.hpp"
#include "translator/Translator.hpp"

#include <optional>

class TranslatorImpl : public Translator {
public:
    /// Loads the translation file as TranslationFile does, with its error 1183. `makeRepository` starts with an empty
    /// repository of sensor data records, so that addSDR works before setSDRRepository.
    TranslatorImpl(const char* file, const char* locale, bool makeRepository);

    void setTranslationFile(const char* file, const char* locale);
    void setSDRRepository(const std::vector<std::vector<std::uint8_t>>& records) override;
    void setPlatformID(unsigned short id) override;
    void setPlatformName(const char* name) override;
    void setSensorName(const char* name) override;

    std::wstring translate(const unsigned char* record, unsigned long length) override;
    const std::wstring& getDescription() const override { return description; }
    const std::wstring& getEventSeverity() const override { return severity; }
    const std::wstring& getSensorName() const override { return sensorName; }
    const std::wstring& getSensorType() const override { return sensorType; }
    const std::wstring& getGenerator() const override { return generator; }
    const std::wstring& getTimeStamp() const override { return timestamp; }
    int getVoltageFaultSensorOffset(const unsigned char* record, unsigned long length) const override;

    /// "Invalid Time Stamp", "Pre-Init Time Stamp" or "MM/DD/YYYY-hh:mm:ss" in UTC.
    static std::wstring translateTime(const SELEntry* entry);

    // For other callers; the agent itself calls nothing of what follows.

    void setSDRRepository(const unsigned char* const* records, int count);
    /// Adds one record, or removes that of a sensor; ResultStatus ERROR_SDR_REPOSITORY_EXCEPTION if that fails.
    void addSDR(const unsigned char* record, int length);
    void removeSDR(unsigned char owner, unsigned char lun, unsigned char sensorNumber);
    /// The firmware family, which decides how versions are written.
    void setPlatformBIOSID(int id) { platformBiosId = id; }
    /// 0 on boards that number processor sockets from 1, else from 0.
    void setSocketType(int type) { socketType = type; }
    /// Gives the file and the repository back; translate then fails with 1183.
    void destroy();
    /// True if a step of the last translation found no word.
    bool hasFailed() const { return failed; }
    /// The same from the four bytes of a time stamp, the least significant first.
    static std::wstring translateTimeStamp(const unsigned char* bytes);

private:
    std::wstring translateRecord(const SELEntry& entry);
    std::wstring translateSystemEvent(const SELEntry& entry);
    std::wstring translateByEventType(const SELEntry& entry);
    std::wstring translateUnknown() const;
    std::wstring translateThreshold(const SELEntry& entry);
    std::wstring translateGeneric(const SELEntry& entry);
    std::wstring translateSpecific(const SELEntry& entry);
    std::wstring translateOEMTimestamped(const SELEntry& entry);
    std::wstring translateOEMNonTimestamped(const SELEntry& entry);
    void translateGenID(const SELEntry& entry);
    void translateSensorType(const SELEntry& entry);
    void findSensor(const SELEntry& entry);
    const event* findOverride(const translator::EventKey& key) const;
    std::wstring render(const SELEntry& entry, const event& found, int defaultSeverity);
    std::wstring renderOem(const SELEntry& entry, std::wstring_view translation, int action);
    std::wstring wordOf(const MetaInfoTable& table, int id);

    std::unique_ptr<TranslationFile> file;
    std::optional<SDRRepository> repository;
    const SDREntry* sensor = nullptr; ///< of the record in hand
    std::wstring givenSensorName;

    std::wstring description;
    std::wstring severity;
    std::wstring sensorName;
    std::wstring sensorType;
    std::wstring generator;
    std::wstring timestamp;

    static constexpr unsigned short unknownPlatform = 65535;
    unsigned short platformID = unknownPlatform;
    int platformBiosId = 0;
    int socketType = 0;
    bool failed = false;
};

namespace translator {

/// A translator as its owners hold it.
TranslatorPointer makeTranslator(const char* file, const char* locale);

} // namespace translator
