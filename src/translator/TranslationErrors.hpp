#pragma once

#include <string>

/// What a table of the translator throws when it has no entry; the text names the entry that was sought.
class TranslationError {
public:
    explicit TranslationError(std::wstring message = {}) : text(std::move(message)) {}
    const wchar_t* getText() const { return text.c_str(); }
    void setText(const wchar_t* message) { text = message; }

private:
    std::wstring text;
};

class MetaInfoTableError : public TranslationError {
    using TranslationError::TranslationError;
};
class EventTableError : public TranslationError {
    using TranslationError::TranslationError;
};
class OverrideTableError : public TranslationError {
    using TranslationError::TranslationError;
};
class PlatformTableError : public TranslationError {
    using TranslationError::TranslationError;
};
class OEMTableError : public TranslationError {
    using TranslationError::TranslationError;
};
class SDRRepositoryError : public TranslationError {
    using TranslationError::TranslationError;
};
