#pragma once

#include <string>

namespace translator {

/// What a table of the translator throws when it has no entry; the text names the entry that was sought.
class TranslationError {
public:
    explicit TranslationError(std::wstring message = {}) : text(std::move(message)) {}
    const wchar_t* getText() const { return text.c_str(); }
    void setText(const wchar_t* message) { text = message; }

private:
    std::wstring text;
};

} // namespace translator

class MetaInfoTableError : public translator::TranslationError {
    using TranslationError::TranslationError;
};
class EventTableError : public translator::TranslationError {
    using TranslationError::TranslationError;
};
class OverrideTableError : public translator::TranslationError {
    using TranslationError::TranslationError;
};
class PlatformTableError : public translator::TranslationError {
    using TranslationError::TranslationError;
};
class OEMTableError : public translator::TranslationError {
    using TranslationError::TranslationError;
};
class SDRRepositoryError : public translator::TranslationError {
    using TranslationError::TranslationError;
};
