#include "translator/TranslationFile.hpp"

#include "common/ErrorName.hpp"
#include "common/ResultStatus.hpp"
#include "translator/FileIO_codecvt.hpp"
#include "translator/TranslationErrors.hpp"
#include "translator/WideText.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

using namespace translator;

namespace {

constexpr std::size_t largestFile = 16u << 20;

struct LocaleRow {
    std::array<std::string_view, 3> locales;
    std::string_view fileName;

    std::string_view posix() const { return locales[1]; }
};

constexpr LocaleRow localeRows[] = {
    {{"English_United States.1252", "en_US.utf8", "US"}, "hr_sel_en_US.ini"},
    {{"German_Germany.1252", "de_DE.utf8", "DEU"}, "hr_sel_de_DE.ini"},
    {{"Chinese_People's Republic of China.936", "zh_CN.utf8", "CHS"}, "hr_sel_zh_CN.ini"},
    {{"Chinese_Taiwan.1252", "zh_TW.utf8", "CHT"}, "hr_sel_zh_TW.ini"},
    {{"Spanish_Spain.1252", "es_ES.utf8", "ESP"}, "hr_sel_es_ES.ini"},
    {{"French_France.1252", "fr_FR.utf8", "FRA"}, "hr_sel_fr_FR.ini"},
    {{"Russian_Russia.1251", "ru_RU.utf8", "RUS"}, "hr_sel_ru_RU.ini"},
    {{"Italian_Italy.1252", "it_IT.utf8", "ITA"}, "hr_sel_it_IT.ini"},
    {{"Japanese_Japan.932", "ja_JP.utf8", "JPN"}, "hr_sel_ja_JP.ini"},
    {{"Portuguese_Brazil.1252", "pt_BR.utf8", "PTB"}, "hr_sel_pt_BR.ini"},
};

/// Language and country of "de_DE.UTF-8".
std::string_view languageOf(std::string_view locale)
{
    return locale.substr(0, locale.find_first_of(".@"));
}

/// A directory opens like a file, and a pipe would never end: only regular files count as there.
bool isFile(const std::filesystem::path& path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

std::filesystem::path choosePath(const char* fileName, const std::string& locale)
{
    const std::filesystem::path given(fileName ? fileName : "");
    const std::filesystem::path translated = given.parent_path() / TranslationFile::fileNameOfLocale(locale);
    return translated.has_filename() && isFile(translated) ? translated : given;
}

std::wstring readWide(const std::filesystem::path& path)
{
    std::basic_ifstream<wchar_t> file;
    file.imbue(std::locale(std::locale::classic(), new FileIO_codecvt<wchar_t, char>));
    if (isFile(path))
        file.open(path, std::ios::binary);
    if (!file.is_open())
        throwError(ERROR_NO_HRS_INI_FILE_PRESENT, path.string(), COMMAND_GET);
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.seekg(0, std::ios::beg);
    std::wstring text(static_cast<std::size_t>(std::clamp<std::streamoff>(size, 0, largestFile)), L'\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

/// The part of the failure texts that all tables share: ", event1 0x10, event2 0x05, ..." in the words given.
std::wstring sayHex(std::wstring_view words, unsigned value)
{
    return std::wstring(words) + hexText(value);
}

std::wstring sayOverride(std::wstring_view kind, const EventKey& key)
{
    return L"Unable to translate " + std::wstring(kind) + sayHex(L" event with event type code 0x", key.eventType) +
           sayHex(L", sensor type code 0x", key.sensorType) + sayHex(L", event1 0x", key.event1) +
           sayHex(L", event2 0x", key.event2) + sayHex(L", event3 0x", key.event3);
}

} // namespace

TranslationFile::TranslationFile(const char* fileName, const std::string& locale)
    : tables(parseTranslations(readWide(choosePath(fileName, locale))))
{
}

std::string TranslationFile::fileNameOfLocale(const std::string& locale)
{
    for (const LocaleRow& row : localeRows)
        if (std::ranges::find(row.locales, locale) != row.locales.end() ||
            languageOf(locale) == languageOf(row.posix()))
            return std::string(row.fileName);
    return {};
}

bool TranslationFile::hasLocale(const char* fileName, const std::string& locale)
{
    return choosePath(fileName, locale) != std::filesystem::path(fileName);
}

const event& TranslationFile::findGenericTranslation(const EventKey& key) const
{
    if (const event* entry = tables.genericEvents.findNearest(key.eventType, key.offset(), key.event2, key.event3))
        return *entry;
    if (const event* entry = tables.genericEvents.findAny())
        return *entry;
    throw EventTableError(sayHex(L"Unable to translate generic event with type code 0x", key.eventType) +
                          sayHex(L" and offset 0x", key.offset()));
}

const event& TranslationFile::findSpecificTranslation(const EventKey& key) const
{
    if (const event* entry = tables.specificEvents.findNearest(key.sensorType, key.offset(), key.event2, key.event3))
        return *entry;
    if (const event* entry = tables.specificEvents.findAny())
        return *entry;
    throw EventTableError(sayHex(L"Unable to translate sensor-specific event with type code 0x", key.sensorType) +
                          sayHex(L", offset 0x", key.offset()) + sayHex(L", event2 0x", key.event2) +
                          sayHex(L", and event3 0x", key.event3));
}

const override& TranslationFile::findOverrideTranslation(const EventKey& key) const
{
    if (const override* entry = tables.overrides.findNearest(key.sensorKey(), key.offset(), key.event2, key.event3))
        return *entry;
    throw OverrideTableError(sayOverride(L"override", key));
}

const override& TranslationFile::findPlatformOverrideTranslation(std::uint16_t platform, const EventKey& key) const
{
    if (const override* entry =
            tables.platformOverrides.findNearest(platform, key.sensorKey(), key.offset(), key.event2, key.event3))
        return *entry;
    throw PlatformTableError(sayOverride(L"platform override", key) + sayHex(L", and platformType 0x", platform));
}

const oemTime& TranslationFile::findOEMTSTranslation(std::uint32_t manufacturer,
                                                     std::span<const std::uint8_t, oemTimeByteCount> bytes) const
{
    return tables.oemTimestamped.findTranslation(manufacturer, bytes);
}

const oemNonTime&
TranslationFile::findOEMNonTSTranslation(std::span<const std::uint8_t, oemNonTimeByteCount> bytes) const
{
    return tables.oemNonTimestamped.findTranslation(bytes);
}
