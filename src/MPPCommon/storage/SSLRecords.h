#pragma once

#include "MPPCommon/storage/SSLFileHandle.h"
#include "MPPCommon/storage/SSLTypes.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

// The records of the compound-file library. A `_RootStorage` owns everything below it: tables,
// directory, and every storage and stream opened through it.

inline constexpr int32_t kSSLModeRead = 0;
inline constexpr int32_t kSSLModeWrite = 1;

struct _Header {
    unsigned char signature[8] = {};
    unsigned char classId[16] = {};
    uint16_t minorVersion = 0;
    uint16_t majorVersion = 0;
    uint16_t byteOrder = 0;
    uint16_t sectorShift = 0;
    uint16_t miniSectorShift = 0;
    uint32_t reserved1 = 0;
    uint16_t reserved2 = 0;
    uint32_t directorySectorCount = 0;
    uint32_t fatSectorCount = 0;
    uint32_t firstDirectorySector = 0;
    uint32_t transactionSignature = 0;
    uint32_t miniStreamCutoff = 0;
    uint32_t firstMiniFatSector = 0;
    uint32_t miniFatSectorCount = 0;
    uint32_t firstDifatSector = 0;
    uint32_t difatSectorCount = 0;
};

// An allocation table. Free entries are threaded on an ascending list through the entries themselves:
// each holds the next free index and the last one end of chain.
struct _Fat {
    std::vector<uint32_t> tableSectors;
    std::vector<uint32_t> entries;
    uint32_t freeHead = 0xFFFFFFFE;
    // A chain can't be longer than this: the units that the file can hold.
    uint64_t chainLimit = UINT64_MAX;
};

struct _StreamData;

struct _DirEntry {
    // Tree parent within one sibling tree, -1 at its top; in memory only.
    int32_t parent = 0;
    int32_t index = 0;
    // Name as widened 16-bit units, NUL-terminated.
    std::array<char32_t, 32> name = {};
    // Name length in bytes of the 16-bit form, terminator included.
    uint16_t nameLength = 0;
    uint8_t type = 0;
    uint8_t colour = 0;
    int32_t left = -1;
    int32_t right = -1;
    int32_t child = -1;
    uint32_t stateBits = 0;
    _SSL_GUID classId;
    // Seconds since 1970-01-01; 0 stands for no time.
    int64_t creationTime = 0;
    int64_t modificationTime = 0;
    uint32_t firstSector = 0xFFFFFFFF;
    uint64_t size = 0;
    // Shared data of the stream while it is open.
    std::unique_ptr<_StreamData> streamData;
};

struct _Directory {
    std::vector<_DirEntry> entries;
    uint32_t sectorSize = 0;

    bool contains(int32_t index) const { return index >= 0 && static_cast<size_t>(index) < entries.size(); }
};

struct _Storage;
struct _Stream;

// One entry of a storage's list of open children.
struct _OpenChild {
    std::unique_ptr<_Storage> storage;
    std::unique_ptr<_Stream> stream;
};

struct _RootStorage;

struct _Storage {
    _RootStorage* root = nullptr;
    int32_t entryIndex = 0;
    _Storage* parent = nullptr;
    std::vector<_OpenChild> openChildren;
    int32_t mode = kSSLModeRead;
};

struct _Stream {
    _RootStorage* root = nullptr;
    int32_t entryIndex = 0;
    _Storage* parent = nullptr;
    uint64_t position = 0;
    // One sector of data being written, and the chain index it holds (-1 for none).
    std::vector<unsigned char> writeBuffer;
    int64_t bufferSector = -1;
    int32_t mode = kSSLModeRead;
    _StreamData* data = nullptr;
};

// Shared by all handles on one stream entry, which owns it while any is open.
struct _StreamData {
    uint64_t size = 0;
    std::vector<uint32_t> chain;
    // A stream on the mini stream (entry 0) when the data lie there.
    std::unique_ptr<_Stream> miniStream;
    bool placeDecided = false;
    bool inMiniStream = false;
    int32_t refCount = 0;
};

struct _RootStorage {
    std::unique_ptr<SSLFileHandle> file;
    _Header header;
    _Fat fat;
    _Fat miniFat;
    _Directory directory;
    std::unique_ptr<_Storage> rootStorage;
    int32_t mode = kSSLModeRead;
    std::vector<uint32_t> directoryChain;
    // The one-sector cache: the sector it holds (-1 for none), its bytes and the last fetch's result.
    int64_t cachedSector = -1;
    std::vector<unsigned char> cache;
    int32_t lastCachedResult = SSL_OK;
    // Regular sectors of the mini stream, in order; grown by the write side.
    std::vector<uint32_t> miniStreamChain;
    std::vector<uint32_t> difat;

    uint32_t sectorSize() const { return 1u << header.sectorShift; }
    uint32_t miniSectorSize() const { return 1u << header.miniSectorShift; }
};
