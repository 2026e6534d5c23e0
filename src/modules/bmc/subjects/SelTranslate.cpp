#include "modules/bmc/subjects/Sel.hpp"

#include "common/CMySemLock.hpp"
#include "common/ErrorName.hpp"
#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Util.hpp"
#include "ipmi/Codes.hpp"
#include "ipmi/Hex.hpp"
#include "platform/PlatformImpl.hpp"
#include "translator/WideText.hpp"

#include <algorithm>
#include <cstdio>
#include <exception>

// Records as text.

namespace Module::BMCConfig {

/// A translated record.
struct Sel::Fields {
    std::string raw, next, severity, time, description, sensorName, sensorType, sensorNumber, channel, lun, generator;
    std::optional<std::string> english = std::nullopt; ///< of a record that is told in another language
};

struct Sel::FieldRow {
    const char* key;
    std::string Fields::*text;
};

/// Readers go through the fields in this order.
const Sel::FieldRow Sel::fieldRows[] = {
    {"RAW", &Fields::raw},
    {"NEXT_SEL_RECORD_ID", &Fields::next},
    {"SEVERITY", &Fields::severity},
    {"TIMESTAMP", &Fields::time},
    {"DESCR", &Fields::description},
    {"SENSOR_NAME", &Fields::sensorName},
    {"SENSOR_TYPE", &Fields::sensorType},
    {"SENSOR_NUMBER", &Fields::sensorNumber},
    {"GENERATOR_CHANNEL_NO", &Fields::channel},
    {"GENERATOR_LUN", &Fields::lun},
    {"GENERATOR_ID", &Fields::generator},
};

namespace {

constexpr char informational[] = "Informational", oemEvent[] = "OEM Event";
constexpr char untranslated[] = "Unknown Event."; ///< the translator's own word for what it has no rule for

/// Platforms whose log is read by the manufacturer's own command.
constexpr std::string_view extendedPlatforms[] = {"JUNIPER", "LINDEN", "MAPLE", "NUTMEG"};

/// The records that the operating system's driver writes.
struct SystemRecord {
    std::uint8_t type;
    const char* description;
};

constexpr SystemRecord systemRecords[] = {
    {220, "Operating system bootup."},
    {221, "Operating system shutdown."},
    {222, "Operating system bug check."},
};

/// Generators with a name of their own, whatever the translation file says.
struct GeneratorRow {
    std::uint8_t id;
    const char* name;
};

constexpr GeneratorRow generators[] = {
    {0x01, "BIOS POST"}, {ipmi::address::bmc, "Integrated BMC"}, {51, "BIOS SMI Handler"}};

/// The fixed text of the operating system's own records, null for all others.
const char* systemDescription(std::uint8_t type)
{
    const auto row = std::ranges::find(systemRecords, type, &SystemRecord::type);
    return row == std::end(systemRecords) ? nullptr : row->description;
}

/// Empty for a generator that the translation file names.
std::string generatorName(std::uint8_t id)
{
    const auto row = std::ranges::find(generators, id, &GeneratorRow::id);
    return row == std::end(generators) ? "" : row->name;
}

/// A failure in decoding is told in the log and costs only what it concerns.
template<class Step>
void guardDecoding(Step step)
{
    try {
        step();
    } catch (const ResultStatus& failure) {
        HW_LOG(LOGGER::Category::First, "Error Occured in decoding HRSEL (%d)", int{failure.getval()});
    } catch (const std::exception&) {
        HW_LOG(LOGGER::Category::First, "Unknown exception caugth in decoding HRSEL");
    }
}

std::string platformWord()
{
    const std::string name = Platform::PlatformImpl::CreateInstance()->platformName();
    return name.empty() ? "UNKNOWN" : name.substr(0, name.rfind("_PLATFORM"));
}

std::string translatedPath(std::size_t index)
{
    return "/BMC/SEL/TRANSLATED[" + std::to_string(index) + "]";
}

} // namespace

void Sel::TranslatedRecords(const std::string& query, SymbolMap& result)
{
    constexpr long toTheEnd = -1;
    if (!parameter("/SEL/RAW_SEL_RECORD").empty())
        return TranslateSingleRecord(query, result);
    if (!parameter("/SEL/RAW_SEL_RECORD_0").empty())
        return TranslateRawSELRecords(query, result);

    const unsigned first = parseSelId(parameter("/SEL/RECORD_ID"));
    const long range = parameterNumber("/SEL/RANGE", toTheEnd);
    platform = platformWord();
    const bool extended = std::ranges::find(extendedPlatforms, platform) != std::end(extendedPlatforms);
    std::vector<SelRecord> found;
    sel_records(first, range < 0 ? toTheEnd : range,
                extended ? "GET://BMC/SEL/EXTENDED_RECORD" : "GET://BMC/SEL/RECORD",
                [&](const SelRecord& record) { found.push_back(record); });
    if (first == ipmi::lastSelId && !found.empty())
        found.front().next = ipmi::lastSelId; // the last record is read alone
    translateAll(query, found, result);
}

void Sel::TranslateSingleRecord(const std::string& query, SymbolMap& result)
{
    translateGiven(query, {parameter("/SEL/RAW_SEL_RECORD")}, result);
}

void Sel::TranslateRawSELRecords(const std::string& query, SymbolMap& result)
{
    const long most = std::min(parameterNumber("/SEL/RANGE", 65535), 65535L);
    std::vector<std::string> texts;
    for (long index = 0; index < most; ++index) {
        std::string text = parameter("/SEL/RAW_SEL_RECORD_" + std::to_string(index));
        if (text.empty())
            break;
        texts.push_back(std::move(text));
    }
    translateGiven(query, texts, result);
}

void Sel::translateGiven(const std::string& query, const std::vector<std::string>& texts, SymbolMap& result)
{
    constexpr long thisMachine = -1;
    if (const long product = parameterNumber("/SEL/PRODUCT_ID", thisMachine); product != thisMachine) {
        own = std::make_unique<SelTranslation>(static_cast<int>(product));
        translation = own.get();
    }
    std::vector<SelRecord> given;
    for (const std::string& text : texts) {
        std::optional<SelRecord> record = SelRecord::parse(text);
        if (!record)
            throwError(ERROR_INVALID_DATAVAL, text, COMMAND_GET);
        given.push_back(std::move(*record));
    }
    translateAll(query, given, result);
}

/// The lock is taken once, when all are read: it costs more than a translation, and no exchange is made under it once
/// the translator stands.
void Sel::translateAll(const std::string& query, const std::vector<SelRecord>& found, SymbolMap& result)
{
    Symbol names(NODE_NONLEAF, {});
    if (!found.empty()) {
        HW_NAMED_LOCK(named, "BMC_SEL_TRANSLATE");
        const std::lock_guard hold(translation->guard); // the named lock can be switched off
        for (const SelRecord& record : found) {
            GetTranslatedRecord(record, names.size(), result);
            names.values.push_back(translatedPath(names.size()));
        }
    }
    result[query] = names;
}

void Sel::GetTranslatedRecord(const SelRecord& record, std::size_t index, SymbolMap& result)
{
    const Fields fields = translateRecord(record);
    const std::string path = translatedPath(index);
    Symbol names(NODE_NONLEAF, {});
    for (const FieldRow& row : fieldRows) {
        names.values.push_back(path + "/" + row.key);
        result["GET:/" + names.values.back()] = fields.*row.text;
    }
    if (fields.english) {
        names.values.push_back(path + "/ENGLISH");
        result["GET:/" + names.values.back()] = *fields.english;
    }
    result["GET:/" + path] = names;
}

void Sel::InitializeHRS()
{
    if (!std::exchange(prepared, true))
        translation->prepare(*interpreter, exec, parameter("/SEL/LOCALE"));
}

Sel::Fields Sel::translateRecord(const SelRecord& record)
{
    guardDecoding([this] { InitializeHRS(); });
    Fields fields = translated(record, translation->translator(), untranslated);
    if (Translator* local = translation->localTranslator()) {
        const std::string english = fields.description;
        fields = translated(record, local, english);
        fields.english = english;
    }
    return fields;
}

/// `otherwise` is the description of an event that the translator's file does not know.
Sel::Fields Sel::translated(const SelRecord& record, Translator* translator, const std::string& otherwise)
{
    Fields fields = readFields(record);
    if (const char* description = systemDescription(record.view().type())) {
        fields.description = description;
        return fields;
    }
    fields.description = otherwise;
    if (translator)
        translateByFile(record, *translator, fields);
    fields.description.resize(std::min(fields.description.size(), longestDescription));
    fields.severity.resize(std::min(fields.severity.size(), longestSeverity));
    return fields;
}

/// What the record's own bytes tell.
Sel::Fields Sel::readFields(const SelRecord& record)
{
    Fields fields;
    fields.raw = ipmi::hexBytes(record.standard());
    fields.next = selIdText(record.next);
    fields.severity = informational;
    DecodeTimeStamp(record.seconds(), fields.time);
    if (!record.view().isSystemEvent()) { // the other bytes are the writer's own
        fields.sensorName = oemEvent;
        return fields;
    }
    fields.sensorNumber = std::to_string(record.view().sensorNumber());
    fields.channel = std::to_string(record.view().channel());
    fields.lun = std::to_string(record.view().lun());
    fields.generator = generatorName(record.view().generator());
    return fields;
}

void Sel::translateByFile(const SelRecord& record, Translator& translator, Fields& fields)
{
    const std::span<const std::uint8_t> bytes = record.standard();
    guardDecoding([&] {
        if (const int bit = translator.getVoltageFaultSensorOffset(bytes.data(), bytes.size()); bit >= 0)
            translator.setSensorName(GetVoltageFaultSensorName(bit).c_str());
        fields.description = translator::narrowText(translator.translate(bytes.data(), bytes.size()));
    });
    // of an event that the file does not know, the rest is known all the same
    if (!translator.getEventSeverity().empty())
        fields.severity = translator::narrowText(translator.getEventSeverity());
    if (!record.view().isSystemEvent())
        return;
    fields.sensorName = translator::narrowText(translator.getSensorName());
    fields.sensorType = translator::narrowText(translator.getSensorType());
    if (fields.generator.empty())
        fields.generator = translator::narrowText(translator.getGenerator());
}

std::string Sel::GetVoltageFaultSensorName(int bit)
{
    const std::string query = "GET://BMC/GET_VOLTAGE_SENSOR_NAME";
    const _INTERPRETER_STATE before = interpreter->get_state();
    char offset[3];
    std::snprintf(offset, sizeof offset, "%02x", static_cast<unsigned>(bit) & 0xFF);
    interpreter->symbolTable()["$/BMC/VOLTAGE_SENSOR_OFFSET"] = std::string(offset);
    try {
        SymbolMap local;
        run(query, local);
        return local[query].text();
    } catch (const ResultStatus&) {
        interpreter->restore_state(before);
        return {};
    }
}

} // namespace Module::BMCConfig
