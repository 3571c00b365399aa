// A variable stream pair of one object storage from fuzz input, read through the object storage
// reader of a chosen format version: every block of the first objects, with every typed read.
// Input: version byte, storage byte, VarMeta part, Var2Data rest. The meta part follows the magic
// number. Internal-inconsistency exceptions are the reader's answer to some broken layouts and end a
// run normally.

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "StreamFuzzSupport.h"

namespace {

constexpr size_t kObjectsRead = 8;
constexpr int32_t kPropertiesRead = 64;

void readBlocks(KVMPPVarDataReader& reader) {
    const auto& uids = reader.uidArray();
    for (size_t index = 0; index < std::min(uids.size(), kObjectsRead); ++index) {
        for (int32_t property = -2; property < kPropertiesRead; ++property) {
            int32_t size = 0;
            if (!reader.getDataSize(size, uids[index], property)) {
                continue;
            }
            for (int32_t offset : {0, 2, size - 4}) {
                int32_t intValue = 0;
                double doubleValue = 0;
                TVDate date;
                std::string text;
                uint8_t bytes[16];
                reader.readDataInt(intValue, uids[index], property, offset);
                reader.readDataAsDouble(doubleValue, uids[index], property, offset);
                reader.readDataTimestamp(date, uids[index], property, offset);
                reader.readDataUnicode(&text, uids[index], property, offset);
                reader.readDataByteArray(bytes, sizeof bytes, uids[index], property, offset);
            }
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    streamfuzz::silenceLog();
    streamfuzz::InputReader input(data, size);
    streamfuzz::FileReader fileReader(input.byte());
    const char* storageName = streamfuzz::storageName(input.byte());
    std::map<std::string, std::vector<uint8_t>> streams;
    streams[kVarMetaStreamName] = streamfuzz::metaStream(input.part());
    streams[kVar2DataStreamName] = input.rest();

    streamfuzz::StorageFile file(storageName, streams);
    auto storage = file.takeStorage();
    if (!storage) {
        return 0;
    }
    try {
        KVMSPIMPPDataDirectoryReader reader(std::move(storage), storageName, &fileReader);
        if (reader.varDataReader() != nullptr) {
            readBlocks(*reader.varDataReader());
        }
    } catch (const TVException&) {
    }
    return 0;
}
