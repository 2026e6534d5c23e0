#include "translator/SDREntry.hpp"

#include "translator/WideText.hpp"

#include <algorithm>

namespace {

/// UCS-2, the low byte of each character first.
std::wstring unicodeText(ipmi::ByteView text)
{
    std::wstring name;
    for (std::size_t at = 0; at + 1 < text.size(); at += 2)
        name.push_back(static_cast<wchar_t>(ipmi::wordAt(text, at)));
    return name;
}

std::wstring textOf(const ipmi::TypeLengthText& field)
{
    switch (field.coding) {
    case ipmi::TextCoding::first:
        return unicodeText(field.bytes);
    case ipmi::TextCoding::bcdPlus:
        return translator::widenText(ipmi::bcdPlusText(field.bytes));
    case ipmi::TextCoding::sixBit:
        return translator::widenText(ipmi::sixBitText(field.bytes));
    case ipmi::TextCoding::last:
        return {field.bytes.begin(), field.bytes.end()};
    }
    return {};
}

} // namespace

SDREntry::SDREntry(const unsigned char* record, int length)
{
    if (record && length > 0)
        std::copy_n(record, std::min(static_cast<std::size_t>(length), keptLength), bytes.begin());
}

int SDREntry::getIndex() const
{
    const ipmi::SdrView record = view();
    if (record.owner() == 0 && record.lunByte() == 0 && record.at(ipmi::sdr::sensorType) == 0 && record.number() == 0)
        return notIndexable;
    return (record.owner() * 256 + record.lunByte()) * 256 + record.number();
}

void SDREntry::getConversionFactors(short* factors) const
{
    const ipmi::Factors found = view().factors();
    factors[0] = static_cast<short>(found.m);
    factors[1] = static_cast<short>(found.b);
    factors[2] = static_cast<short>(found.bExponent);
    factors[3] = static_cast<short>(found.resultExponent);
}

std::wstring SDREntry::getIDString() const
{
    const std::wstring name = textOf(view().name());
    return name.substr(0, name.find(L'\0'));
}
