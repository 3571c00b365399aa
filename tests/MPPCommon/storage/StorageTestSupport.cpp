#include "StorageTestSupport.h"

#include <gtest/gtest.h>

OpenedFile openBytes(std::vector<unsigned char> bytes) {
    OpenedFile opened;
    opened.root = SSLRoot::rootWithBytes(std::move(bytes));
    if (opened.root->lastError() == 0) {
        opened.storage = opened.root->rootStorage();
    }
    return opened;
}

std::vector<unsigned char> readRest(SSLStream& stream) {
    std::vector<unsigned char> bytes(stream.bytesAvailable());
    if (!bytes.empty()) {
        EXPECT_EQ(stream.readBytes(static_cast<uint32_t>(bytes.size()), bytes.data()),
                  static_cast<int32_t>(bytes.size()));
    }
    return bytes;
}

std::vector<unsigned char> readStream(const std::vector<unsigned char>& file, const std::string& name) {
    OpenedFile opened = openBytes(file);
    EXPECT_EQ(opened.root->lastError(), 0);
    if (!opened.storage) {
        return {};
    }
    std::unique_ptr<SSLStream> stream = opened.storage->childStreamWithName(name);
    EXPECT_TRUE(stream) << name << ": error " << opened.storage->lastError();
    return stream ? readRest(*stream) : std::vector<unsigned char>{};
}
