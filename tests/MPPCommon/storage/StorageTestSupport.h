#pragma once

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"

#include <memory>
#include <string>
#include <vector>

// A root opened from bytes in memory with its root storage.
struct OpenedFile {
    std::unique_ptr<SSLRoot> root;
    std::unique_ptr<SSLStorage> storage;
};

OpenedFile openBytes(std::vector<unsigned char> bytes);
// The whole stream from its current position on.
std::vector<unsigned char> readRest(SSLStream& stream);
// The bytes of the stream `name` below the root, or an empty vector with a test failure.
std::vector<unsigned char> readStream(const std::vector<unsigned char>& file, const std::string& name);
