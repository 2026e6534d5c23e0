#include "client/words/CString.hpp"

#include <algorithm>
#include <string_view>

namespace {

wchar_t widen(char byte)
{
    return static_cast<unsigned char>(byte);
}

char narrowed(wchar_t character)
{
    return static_cast<char>(character);
}

} // namespace

void CString::SetString(const char* text)
{
    const std::string_view bytes = text ? text : "";
    m_pStr.resize(bytes.size());
    std::transform(bytes.begin(), bytes.end(), m_pStr.begin(), widen);
}

void CString::GetString(char* out, std::size_t max) const
{
    if (max == 0)
        return;
    const std::size_t length = std::min(m_pStr.size(), max - 1);
    std::transform(m_pStr.begin(), m_pStr.begin() + static_cast<std::ptrdiff_t>(length), out, narrowed);
    out[length] = '\0';
}

std::string CString::narrow() const
{
    std::string text(m_pStr.size(), '\0');
    std::transform(m_pStr.begin(), m_pStr.end(), text.begin(), narrowed);
    return text;
}
