#pragma once

#include "MPPCommon/storage/SSLObject.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct _RootStorage;
class SSLStorage;

// A compound file, open for reading or being written. Ending the object closes the file; for a file
// being written that is what lays out the directory and tables and completes it.
class SSLRoot : public SSLObject {
public:
    // Opens `filename` (UTF-8 path) read-only. Always gives an object: callers test lastError().
    explicit SSLRoot(const std::string& filename);
    static std::unique_ptr<SSLRoot> rootWithFilename(const std::string& filename);
    // Opens a compound file held in memory, read-only; like rootWithFilename otherwise.
    static std::unique_ptr<SSLRoot> rootWithBytes(std::vector<unsigned char> bytes);

    // A new file for writing, not yet attached to a path.
    SSLRoot();
    // A new file for writing attached to `filename`; none if the root could not be created. A
    // failure to create the file itself is only in lastError().
    static std::unique_ptr<SSLRoot> forWritingToFile(const std::string& filename);
    void startWritingToFile(const std::string& filename);
    // Does nothing: the file is finished when the object ends.
    void finishWriting() {}

    ~SSLRoot();
    SSLRoot(const SSLRoot&) = delete;
    SSLRoot& operator=(const SSLRoot&) = delete;

    // A new view on the root storage each call, or none (then lastError() tells why).
    std::unique_ptr<SSLStorage> rootStorage();
    // Sector size in bytes; lastError() is not touched.
    uint32_t sectorSize();

private:
    SSLRoot(std::unique_ptr<_RootStorage> root, int32_t result);

    std::unique_ptr<_RootStorage> m_pRoot;
};
