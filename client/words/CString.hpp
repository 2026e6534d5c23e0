#pragma once

#include <cstddef>
#include <string>

/// An owning string of wide characters, one for each byte it was made from.
class CString {
public:
    CString() = default;
    explicit CString(const char* text) { SetString(text); }

    /// Widens each byte; null empties the string.
    void SetString(const char* text);
    /// Narrows into `out`, cut to `max` bytes with the NUL. Nothing is written for `max` 0.
    void GetString(char* out, std::size_t max) const;
    /// The whole text, narrowed.
    std::string narrow() const;
    bool isEmpty() const { return m_pStr.empty(); }

private:
    std::wstring m_pStr;
};
