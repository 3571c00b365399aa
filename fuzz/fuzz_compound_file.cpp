// Opens arbitrary bytes as a compound file from memory, lists the whole tree and reads every stream,
// whole and with the typed reads. Any input must end in a result code: no crash, no hang, and no
// allocation beyond what the input's size justifies.
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

void readStream(SSLStream& stream) {
    std::vector<unsigned char> chunk(4096);
    while (stream.bytesAvailable() > 0 &&
           stream.readBytes(static_cast<uint32_t>(chunk.size()), chunk.data()) > 0) {
    }
    stream.rewind();
    stream.readDateTime();
    stream.readTimeInterval();
    stream.readStringWithLength(0xFFFFFFFF);
    stream.rewind();
    stream.readBytesIntoString(0xFFFFFFFF);
}

void walk(SSLStorage& storage) {
    storage.storageName();
    const int32_t count = storage.childCount();
    for (int32_t i = 0; i < count; ++i) {
        const std::string name = storage.childNameByIndex(i);
        if (storage.childTypeByIndex(i) == 0) {
            if (auto child = storage.childStorageWithName(name)) {
                walk(*child);
            }
        } else if (auto stream = storage.childStreamWithName(name)) {
            readStream(*stream);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::unique_ptr<SSLRoot> root = SSLRoot::rootWithBytes(std::vector<unsigned char>(data, data + size));
    if (root->lastError() != 0) {
        return 0;
    }
    if (std::unique_ptr<SSLStorage> storage = root->rootStorage()) {
        walk(*storage);
    }
    return 0;
}
