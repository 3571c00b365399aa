#include "MPPFixtureFile.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "StreamFileFixture.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {

std::vector<std::string> splitPath(const std::string& path) {
    std::vector<std::string> parts;
    std::stringstream stream(path);
    std::string part;
    while (std::getline(stream, part, '/')) {
        parts.push_back(part);
    }
    return parts;
}

// Storages once created are kept by path, so that siblings share their parent.
class StorageTree {
public:
    explicit StorageTree(SSLRoot& root) { m_storages[""] = root.rootStorage(); }

    SSLStorage& storage(const std::vector<std::string>& parts) {
        std::string path;
        SSLStorage* current = m_storages[""].get();
        for (const std::string& part : parts) {
            path += "/" + part;
            auto& slot = m_storages[path];
            if (!slot) {
                slot = current->createChildStorageWithName(part);
            }
            current = slot.get();
        }
        return *current;
    }

private:
    std::map<std::string, std::unique_ptr<SSLStorage>> m_storages;
};

} // namespace

MPPFixtureFile& MPPFixtureFile::addStream(const std::string& path, Bytes bytes) {
    m_streams[path] = std::move(bytes);
    return *this;
}

MPPFixtureFile& MPPFixtureFile::addStorage(const std::string& path) {
    m_storages.push_back(path);
    return *this;
}

std::filesystem::path MPPFixtureFile::write(const std::filesystem::path& directory,
                                            const std::string& name) const {
    const std::filesystem::path path = directory / name;
    std::unique_ptr<SSLRoot> root = SSLRoot::forWritingToFile(path.string());
    EXPECT_TRUE(root != nullptr && root->lastError() == 0) << path;
    StorageTree tree(*root);
    for (const std::string& storage : m_storages) {
        tree.storage(splitPath(storage));
    }
    for (const auto& [streamPath, bytes] : m_streams) {
        std::vector<std::string> parts = splitPath(streamPath);
        const std::string streamName = parts.back();
        parts.pop_back();
        std::unique_ptr<SSLStream> stream = tree.storage(parts).createChildStreamWithName(streamName);
        EXPECT_TRUE(stream != nullptr) << streamPath;
        if (stream && !bytes.empty()) {
            stream->writeBuffer(bytes.data(), static_cast<int32_t>(bytes.size()));
        }
    }
    return path;
}

MPPFixtureFile::Bytes MPPFixtureFile::compObj(const std::optional<std::string>& applicationName,
                                              const std::optional<std::string>& fileFormat,
                                              const std::optional<std::string>& applicationID) {
    ByteWriter bytes;
    bytes.zeros(28);
    for (const std::optional<std::string>& text : {applicationName, fileFormat, applicationID}) {
        bytes.u32(text ? static_cast<uint32_t>(text->size() + 1) : 0);
        if (text) {
            bytes.bytes(Bytes(text->begin(), text->end())).u8(0);
        }
    }
    return bytes.data();
}

MPPFixtureFile::Bytes MPPFixtureFile::summaryInformation(std::optional<int16_t> codepage) {
    const uint32_t count = codepage ? 1 : 0;
    ByteWriter bytes;
    bytes.u16(0xFFFE).u16(0).u32(0x0002000A).zeros(16).u32(1); // byte order, version, system, class id,
                                                               // sections
    bytes.bytes(
        {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10, 0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9});
    bytes.u32(48);                        // the section follows
    bytes.u32(8 + count * 16).u32(count); // its size and property count
    if (codepage) {
        bytes.u32(1).u32(16); // the code page property at offset 16 of the section
        bytes.u32(2).u16(static_cast<uint16_t>(*codepage)).u16(0); // a 16-bit integer
    }
    return bytes.data();
}
