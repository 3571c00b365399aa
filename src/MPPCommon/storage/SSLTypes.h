#pragma once

#include <cstdint>
#include <string>

// Result codes of the compound-file library. Their numbers reach error objects as codes, so they
// never change.
inline constexpr int32_t SSL_OK = 0;
inline constexpr int32_t SSL_ERROR_FILE_NOT_FOUND = 1;
inline constexpr int32_t SSL_ERROR_NAME_EXISTS = 2;
inline constexpr int32_t SSL_ERROR_NOT_COMPOUND_FILE = 3;
inline constexpr int32_t SSL_ERROR_IO = 4;
inline constexpr int32_t SSL_ERROR_NO_MEMORY = 5;
inline constexpr int32_t SSL_ERROR_BAD_ARGUMENT = 6;
inline constexpr int32_t SSL_ERROR_BAD_CHAIN = 8;
inline constexpr int32_t SSL_ERROR_NOT_STORAGE = 9;
inline constexpr int32_t SSL_ERROR_NOT_STREAM = 10;
inline constexpr int32_t SSL_ERROR_NOT_FOUND = 11;
inline constexpr int32_t SSL_ERROR_END_OF_STREAM = 15;
inline constexpr int32_t SSL_ERROR_BAD_DIRECTORY = 16;
inline constexpr int32_t SSL_ERROR_EMPTY_FILE = 17;

// The constant's name of a result code ("SSL_ERROR_IO"), or "SSL_ERROR_UNKNOWN" for other numbers.
const char* sslResultName(int32_t code);

// Kind of a child as `_StgInfo` reports it.
inline constexpr int32_t kSSLInfoTypeStorage = 0;
inline constexpr int32_t kSSLInfoTypeStream = 1;

// A class id as a directory entry holds it.
struct _SSL_GUID {
    uint32_t data1 = 0;
    uint16_t data2 = 0;
    uint16_t data3 = 0;
    uint8_t data4[8] = {};
};

// What a caller learns about one entry. Times are seconds since 1970-01-01.
struct _StgInfo {
    std::u32string name;
    int32_t type = kSSLInfoTypeStorage;
    uint32_t stateBits = 0;
    uint64_t size = 0;
    int64_t creationTime = 0;
    int64_t modificationTime = 0;
    int32_t mode = 0;
    _SSL_GUID classId;
};
