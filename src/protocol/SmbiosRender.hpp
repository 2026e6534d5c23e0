#pragma once

#include "protocol/SmbiosTypes.hpp"

namespace Protocol::SMBIOS {

/// How ExtractField writes bytes: 1 decimal, 4 hexadecimal pairs, and 0, 3, 5 the same behind "0X".
enum TextKind : int { TEXT_HEX_0 = 0, TEXT_DECIMAL = 1, TEXT_HEX_3 = 3, TEXT_PAIRS = 4, TEXT_HEX_5 = 5 };

/// Writes `length` bytes at `source` as text of `kind` into `text`. Decimal numbers have 1, 2, 4 or 8 bytes, other
/// lengths give nothing; hexadecimal pairs are in lower case and in stored order.
void ExtractField(const std::uint8_t* source, std::string& text, std::size_t length, int kind);

/// Adds what `field` of `record` reads as to `values`, by its interpretation. A field that the structure is too short
/// for adds nothing. The families of processors have their code besides, behind "_Raw".
void FillFieldInterpretation(const FieldInfo& field, const SMBRecordInfo& record, Catalogue catalogue,
                             FieldValues& values);

// Renderers for the rows of the catalogue. Numbers in brackets are sections of DSP0134.

/// One entry for each bit of the value map, "Supported" or "Not Supported".
void RenderBits(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "1024 KB" (7.1, ROM size in pieces of 64 KB).
void CalculateBIOSRomSize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "32768 KB" (7.1, extended ROM size in MB or GB).
void CalculateExtendedRomSize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The word of the low seven bits, and beside it "ChassisLock" of the highest (7.4.1).
void RenderChassisType(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The contained elements of a chassis, one hexadecimal run each, blank-separated (7.4.4).
void RenderContainedElements(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The string behind the contained elements of a chassis (7.4).
void RenderChassisSku(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "Populated, Enabled" (7.5, processor status).
void CalculateProcessorStatus(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "1200 mV", or each voltage that a socket without a current reading offers (7.5.4).
void CalculateProcessorVoltage(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "256 KB" (7.8, sizes in units of 1 or 64 KB).
void CalculateCacheSize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The same of the longer field (7.8, cache size 2).
void CalculateWideCacheSize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// A count of cores or threads in the longer field, whose FFFFh is no number (7.5.6).
void RenderWideCount(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// MT/s in the longer field, whose highest bit is reserved (7.18.4).
void RenderWideSpeed(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Megabytes of a portion of a module; all bits set are no number (7.18.8).
void RenderPortionSize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Level, socket, location, state and mode, one entry each (7.8, cache configuration).
void CalculateCacheConfiguration(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "Long" or "Abbreviated" (7.14, format of language names).
void CalculateFlag(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The four states of the security byte, one entry each (7.25).
void CalculateHardwareSecuritySettings(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// "2.0" (7.39).
void CalculateIPMISpecRev(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The written form of the UUID; its first three fields are little-endian from SMBIOS 2.6 on (7.2.1).
void interpretUUID(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The number, and beside it each string of the structure as "String[1]" and so on (7.12, 7.14).
void RenderCountedStrings(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Types and states of on board devices; the first also without a subscript (7.11).
void RenderOnBoardTypes(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Descriptions of on board devices, subscripted alike (7.11).
void RenderOnBoardDescriptions(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Bits as RenderBits gives them; who asks for one of them has always spelled it "TypeDetails/EDO" (7.18.3).
void RenderTypeDetail(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Generation, width, pitch in hundredths of a millimetre and height of a slot, behind the groups of its peers (7.10).
void RenderSlotShape(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// A number that may be below zero, in the field's own unit; "Unknown" for 8000h (7.27, 7.29, 7.30).
void RenderProbeValue(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The same of what is never below zero: revolutions per minute (7.28), watts (7.40).
void RenderRating(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Bytes, or "Unknown" (7.46).
void RenderImageSize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// The four letters of a maker's id (7.44).
void RenderVendorId(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Megabytes; devices that do not fit into the word have their size in a longer field (7.18.5).
void RenderMemorySize(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);
/// Kilobytes; arrays that do not fit into the field have their capacity in a longer one, in bytes (7.17).
void RenderMemoryCapacity(const FieldInfo&, const SMBRecordInfo&, Catalogue, FieldValues&);

} // namespace Protocol::SMBIOS
