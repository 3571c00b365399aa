#pragma once

#include <cstdint>

// Byte layouts of the object-table streams of an MPP file: the fixed pair (a meta stream listing
// fixed-size records and a data stream holding them end to end) and the variable pair (a meta stream
// mapping object and property to a block, and the blocks). The readers and the writers share them.
// All numbers are little-endian.

// First word of every meta stream.
inline constexpr uint32_t kMPPMetaStreamMagicNumber = 0xFADFADBA;

// Fixed meta stream ("FixedMeta", "Fixed2Meta"): a header, then one item per data item.
inline constexpr int32_t kFixedMetaMagicOffset = 0;
inline constexpr int32_t kFixedMetaHeaderFlagOffset = 4;
inline constexpr uint32_t kFixedMetaHeaderFlag = 4;
inline constexpr int32_t kFixedMetaElementCountOffset = 8;    // count of the items in use
inline constexpr int32_t kFixedMetaCumulativeSizeOffset = 12; // not used when reading
inline constexpr int32_t kFixedMetaHeaderSize = 16;

// Fixed meta item: the first field (an object's kind or state), the offset of its data item, then
// flags and values of the object kind.
inline constexpr int32_t kFixedMetaItemFirstFieldOffset = 0;
inline constexpr int32_t kFixedMetaItemDataOffsetOffset = 4;
inline constexpr int32_t kFixedMetaItemKindFieldsOffset = 8;

// Meta first fields of items that hold no object.
inline constexpr int32_t kFixedMetaFirstFieldGap = 2;
inline constexpr int32_t kFixedMetaFirstFieldHeader = 4;

// Variable meta stream ("VarMeta"): a header, then one item per block.
inline constexpr int32_t kVarMetaMagicOffset = 0;
inline constexpr int32_t kVarMetaHeaderFlagOffset = 4;
// The files of every application hold 0 here, unlike the fixed meta streams.
inline constexpr uint32_t kVarMetaHeaderFlag = 0;
inline constexpr int32_t kVarMetaItemCountOffset = 8;
inline constexpr int32_t kVarMetaCumulativeSizeOffset = 20; // not used when reading
inline constexpr int32_t kVarMetaHeaderSize = 24;

// Variable meta item of format 9: a 24-bit UID, an 8-bit property number, the block offset.
inline constexpr int32_t kVarMeta9ItemSize = 8;
inline constexpr int32_t kVarMeta9ItemUIDOffset = 0;
inline constexpr int32_t kVarMeta9ItemUIDWidth = 3;
inline constexpr int32_t kVarMeta9ItemPropertyOffset = 3;
inline constexpr int32_t kVarMeta9ItemDataOffsetOffset = 4;

// Variable meta item of formats 12 and later: UID, block offset, 16-bit property number, then a
// 16-bit ending that readers pass over.
inline constexpr int32_t kVarMetaItemSize = 12;
inline constexpr int32_t kVarMetaItemUIDOffset = 0;
inline constexpr int32_t kVarMetaItemDataOffsetOffset = 4;
inline constexpr int32_t kVarMetaItemPropertyOffset = 8;
inline constexpr int32_t kVarMetaItemEndingOffset = 10;

// Block of the variable data stream ("Var2Data"): a signed size word, then that many bytes.
inline constexpr int32_t kVarDataBlockSizeOffset = 0;
inline constexpr int32_t kVarDataBlockHeaderSize = 4;
