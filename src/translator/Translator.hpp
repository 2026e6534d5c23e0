#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Turns system event log records into text. Stateful: the results other than the description are those of the last
/// record. Whoever shares one among threads locks around a translation and the reading of its results.
class Translator {
public:
    virtual ~Translator() = default;

    /// The description of a record of at least 16 bytes; empty for an event type without a rule. ResultStatus
    /// ERROR_EVENT_TABLE or ERROR_OEM_TABLE if the translation file does not know the event: the other results are
    /// those of the record all the same.
    virtual std::wstring translate(const unsigned char* record, unsigned long length) = 0;

    /// Results of the last record.
    virtual const std::wstring& getDescription() const = 0;
    virtual const std::wstring& getEventSeverity() const = 0;
    virtual const std::wstring& getSensorName() const = 0;
    virtual const std::wstring& getSensorType() const = 0;
    virtual const std::wstring& getGenerator() const = 0;
    virtual const std::wstring& getTimeStamp() const = 0;

    /// The platform whose overrides hold. An id that the file has no name for makes it the unknown platform.
    virtual void setPlatformID(unsigned short id) = 0;
    /// The same by the name that the file has for the platform.
    virtual void setPlatformName(const char* name) = 0;
    /// A name for the sensor of the next system event, in place of the one in its SDR; null or "" for none.
    virtual void setSensorName(const char* name) = 0;
    virtual void setSDRRepository(const std::vector<std::vector<std::uint8_t>>& records) = 0;
    /// The bit of the supply that a voltage fault record names, -1 for any other record.
    virtual int getVoltageFaultSensorOffset(const unsigned char* record, unsigned long length) const = 0;
};

/// Deleter of an owner that knows only the interface.
template<class T>
struct Deletion {
    void operator()(T* object) const { delete object; }
};
namespace translator {

using TranslatorPointer = std::unique_ptr<Translator, Deletion<Translator>>;

} // namespace translator
