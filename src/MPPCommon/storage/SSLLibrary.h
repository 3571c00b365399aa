#pragma once

#include "MPPCommon/storage/SSLRecords.h"
#include "MPPCommon/storage/SSLTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The compound-file library: plain functions over the records, each returning a result code.
// Out-parameters are set only on success.

// Opening, creating and closing a file.
int32_t rootOpen(const std::string& path, int32_t mode, std::unique_ptr<_RootStorage>* root);
// Opens a compound file held in memory.
int32_t rootOpenBytes(std::vector<unsigned char> bytes, int32_t mode, std::unique_ptr<_RootStorage>* root);
int32_t rootCreate(int32_t mode, std::unique_ptr<_RootStorage>* root);
int32_t rootAttachFile(const std::string& path, int32_t mode, _RootStorage* root);
int32_t rootGetStorage(_RootStorage* root, _Storage** storage);
int32_t rootGetSectorSize(const _RootStorage* root, uint32_t* size);
// Closes every storage and stream below the root, finishes a file being written, and frees it all.
int32_t rootClose(std::unique_ptr<_RootStorage>* root);

// Storages.
int32_t storageOpenStorage(_Storage* storage, const std::u32string& name, _Storage** child);
int32_t storageOpenStream(_Storage* storage, const std::u32string& name, _Stream** child);
int32_t storageCreateStorage(_Storage* storage, const std::u32string& name, _Storage** child);
int32_t storageCreateStream(_Storage* storage, const std::u32string& name, _Stream** child);
int32_t storageGetInfo(const _Storage* storage, _StgInfo* info);
// Children in pre-order of the sibling tree.
int32_t storageGetChildren(const _Storage* storage, std::vector<_StgInfo>* children);
// Closes the open children, last opened first, and forgets them.
int32_t storageClose(_Storage* storage);

// Streams.
int32_t streamGetInfo(const _Stream* stream, _StgInfo* info);
int32_t streamRead(_Stream* stream, void* destination, uint32_t* count);
int32_t streamWrite(_Stream* stream, const void* source, uint32_t* count);
// Origin 0 is the start, 1 the position, 2 the end.
int32_t streamSeek(_Stream* stream, int32_t offset, int32_t origin);
int32_t streamTell(const _Stream* stream, uint64_t* position);
int32_t streamBytesLeft(const _Stream* stream, uint32_t* left);
// Finishes a stream being written and drops the handle's reference on the data. The handle itself
// stays on its parent's list until the parent closes.
int32_t streamClose(_Stream* stream);

// Shared inside the library.

void headerDecode(const unsigned char* bytes, _Header* header);
void headerEncode(const _Header& header, unsigned char* bytes);
_Header defaultHeader();
// Writes the directory, the tables and the header of a file being written.
int32_t rootFinishFile(_RootStorage* root);

uint64_t sectorFileOffset(const _RootStorage* root, uint32_t sector);

// The cached sector's bytes, or null with the reason in root->lastCachedResult. A partial read at the
// end of the file succeeds without being cached.
const unsigned char* sectorFetch(_RootStorage* root, uint32_t sector);
int32_t sectorWrite(_RootStorage* root, uint32_t sector, const unsigned char* bytes);
int32_t fileWriteAt(_RootStorage* root, uint64_t offset, const void* bytes, size_t count);

int32_t fatBuild(_RootStorage* root, _Fat* fat);
// Follows a chain from `first`. `count` is a limit, or 0xFFFFFFFF to measure the chain first.
int32_t fatWalkChain(const _Fat& fat, uint32_t first, uint32_t* count, std::vector<uint32_t>* chain);
// A free unit of the table, marked end of chain; code 2 when data sectors run out.
int32_t fatAllocate(_Fat* fat, bool forDirectory, uint32_t* unit);
void fatSetEntry(_Fat* fat, uint32_t index, uint32_t value);
// Puts the units of `chain` on the free list, which stays ascending.
void fatFreeChain(_Fat* fat, const std::vector<uint32_t>& chain);
// Drops free entries at the end of the table and marks the others free on disk.
void fatReleaseFreeList(_Fat* fat);

int32_t directoryParse(_RootStorage* root);
int32_t directoryFindChild(const _Directory& directory, int32_t parent, const std::u32string& name,
                           int32_t* found);
int32_t directoryInsertChild(_Directory* directory, int32_t parent, const std::u32string& name, uint8_t type,
                             int32_t* created);
int32_t directoryWrite(_RootStorage* root);
int32_t entryInfo(const _RootStorage& root, int32_t index, _StgInfo* info);
// Names compare by length first, then unit by unit upper-cased.
int compareEntryNames(const char32_t* a, size_t aLength, const char32_t* b, size_t bLength);
size_t entryNameLength(const _DirEntry& entry);

// Opens a stream handle on a directory entry, sharing its data with other handles.
int32_t streamOpenEntry(_Storage* parent, _RootStorage* root, int32_t index,
                        std::unique_ptr<_Stream>* stream);
// Drops a handle's reference on its data; the last one frees them.
void streamRelease(_Stream* stream);
// Flushes a write handle and records its size and place on the entry.
int32_t streamFinishWriting(_Stream* stream);
bool isValidEntryName(const std::u32string& name);

// Ticks since 1601 on disk, seconds since 1970 in memory.
int64_t secondsFromTicks(uint64_t ticks);
uint64_t ticksFromSeconds(int64_t seconds);
