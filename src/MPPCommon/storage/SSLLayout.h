#pragma once

#include <cstddef>
#include <cstdint>

// On-disk layout of a compound file, shared by the read and the write side. All numbers are
// little-endian.
namespace ssllayout {

// The fixed header at file offset 0.
inline constexpr size_t kHeaderSignature = 0;
inline constexpr size_t kHeaderClassId = 8;
inline constexpr size_t kHeaderMinorVersion = 24;
inline constexpr size_t kHeaderMajorVersion = 26;
inline constexpr size_t kHeaderByteOrder = 28;
inline constexpr size_t kHeaderSectorShift = 30;
inline constexpr size_t kHeaderMiniSectorShift = 32;
inline constexpr size_t kHeaderReserved1 = 34;
inline constexpr size_t kHeaderReserved2 = 38;
inline constexpr size_t kHeaderDirectorySectorCount = 40;
inline constexpr size_t kHeaderFatSectorCount = 44;
inline constexpr size_t kHeaderFirstDirectorySector = 48;
inline constexpr size_t kHeaderTransactionSignature = 52;
inline constexpr size_t kHeaderMiniStreamCutoff = 56;
inline constexpr size_t kHeaderFirstMiniFatSector = 60;
inline constexpr size_t kHeaderMiniFatSectorCount = 64;
inline constexpr size_t kHeaderFirstDifatSector = 68;
inline constexpr size_t kHeaderDifatSectorCount = 72;
inline constexpr size_t kHeaderSize = 76;
// The first FAT sector numbers follow the header up to the end of a 512-byte block.
inline constexpr size_t kHeaderFatSlotsOffset = 76;
inline constexpr uint32_t kHeaderFatSlots = 109;
inline constexpr size_t kHeaderBlockSize = 512;

inline constexpr unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
inline constexpr uint16_t kByteOrderMark = 0xFFFE;
// Byte order marks above this value are accepted.
inline constexpr uint16_t kLowestInvalidByteOrderMark = 0xFFFD;

// Sector numbers with a meaning of their own.
inline constexpr uint32_t kFreeSector = 0xFFFFFFFF;
inline constexpr uint32_t kEndOfChain = 0xFFFFFFFE;
inline constexpr uint32_t kFatSector = 0xFFFFFFFD;
inline constexpr uint32_t kDifatSector = 0xFFFFFFFC;
// Values at or above this one are no sector numbers.
inline constexpr uint32_t kFirstSpecialValue = 0xFFFFFFF0;
// A chain link above this value other than end of chain breaks the chain.
inline constexpr uint32_t kLastLinkValue = 0xFFFFFFFB;
// Tables of more entries than this are refused.
inline constexpr uint64_t kMaxTableEntries = 0x3FFFFFFF;
// Data sectors are allocated only below this number; directory sectors may go beyond.
inline constexpr uint32_t kMaxDataSector = 0xFF000000;
// A sector written at or behind this file offset needs 8-byte stream sizes, so major version 4.
inline constexpr uint64_t kLargeFileOffset = 0x7FFF0001;

// A directory entry.
inline constexpr size_t kEntrySize = 128;
inline constexpr size_t kEntryName = 0;
inline constexpr size_t kEntryNameUnits = 32;
inline constexpr size_t kEntryNameLength = 64;
inline constexpr size_t kEntryType = 66;
inline constexpr size_t kEntryColour = 67;
inline constexpr size_t kEntryLeft = 68;
inline constexpr size_t kEntryRight = 72;
inline constexpr size_t kEntryChild = 76;
inline constexpr size_t kEntryClassIdData1 = 80;
inline constexpr size_t kEntryClassIdData2 = 84;
inline constexpr size_t kEntryClassIdData3 = 86;
inline constexpr size_t kEntryClassIdData4 = 88;
inline constexpr size_t kEntryStateBits = 96;
inline constexpr size_t kEntryCreationTime = 100;
inline constexpr size_t kEntryModificationTime = 108;
inline constexpr size_t kEntryFirstSector = 116;
inline constexpr size_t kEntryStreamSize = 120;

inline constexpr uint8_t kEntryTypeEmpty = 0;
inline constexpr uint8_t kEntryTypeStorage = 1;
inline constexpr uint8_t kEntryTypeStream = 2;
inline constexpr uint8_t kEntryTypeRoot = 5;
inline constexpr uint8_t kColourRed = 0;
inline constexpr uint8_t kColourBlack = 1;
inline constexpr int32_t kNoEntry = -1;

// Entry times are 100-nanosecond ticks since 1601-01-01.
inline constexpr int64_t kTicksPerSecond = 10000000;
inline constexpr int64_t kSecondsFrom1601To1970 = 11644473600;

// Defaults of a new file.
inline constexpr uint16_t kDefaultMinorVersion = 0x003E;
inline constexpr uint16_t kDefaultMajorVersion = 3;
inline constexpr uint16_t kLargeMajorVersion = 4;
inline constexpr uint16_t kDefaultSectorShift = 9;
inline constexpr uint16_t kDefaultMiniSectorShift = 6;
inline constexpr uint32_t kDefaultMiniStreamCutoff = 4096;

inline uint16_t loadLE16(const unsigned char* p) {
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}
inline uint32_t loadLE32(const unsigned char* p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}
inline uint64_t loadLE64(const unsigned char* p) {
    return static_cast<uint64_t>(loadLE32(p)) | (static_cast<uint64_t>(loadLE32(p + 4)) << 32);
}
inline void storeLE16(unsigned char* p, uint16_t v) {
    p[0] = static_cast<unsigned char>(v);
    p[1] = static_cast<unsigned char>(v >> 8);
}
inline void storeLE32(unsigned char* p, uint32_t v) {
    storeLE16(p, static_cast<uint16_t>(v));
    storeLE16(p + 2, static_cast<uint16_t>(v >> 16));
}
inline void storeLE64(unsigned char* p, uint64_t v) {
    storeLE32(p, static_cast<uint32_t>(v));
    storeLE32(p + 4, static_cast<uint32_t>(v >> 32));
}

} // namespace ssllayout
