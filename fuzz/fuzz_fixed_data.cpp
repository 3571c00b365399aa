// Fixed stream pairs of one object storage from fuzz input, read through the object storage reader
// of a chosen format version: every object's meta item and data item, with every typed read.
// Input: version byte, storage byte, FixedMeta part, FixedData part, Fixed2Meta part, Fixed2Data rest.
// The meta parts follow the magic number. Internal-inconsistency exceptions are the readers' answer to
// some broken layouts and end a run normally.

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "StreamFuzzSupport.h"

namespace {

void readEveryItem(KVMPPFixedDataReader& reader) {
    for (int32_t uid : reader.uniqueIDs()) {
        MPPDataItemInfo info;
        reader.dataItemInfo(&info, uid);
        for (int32_t offset : {0, 4, 8, info.dataSize - 8, info.dataSize - 1}) {
            int8_t byte = 0;
            int16_t shortValue = 0;
            int32_t intValue = 0;
            double doubleValue = 0;
            TVDate date;
            uint8_t bytes[16];
            reader.readMetaByte(byte, uid, offset);
            reader.readMetaShort(shortValue, uid, offset);
            reader.readMetaInt(intValue, uid, offset);
            reader.readMetaDouble(doubleValue, uid, offset);
            reader.readMetaByteArray(bytes, sizeof bytes, uid, offset);
            reader.readDataByte(byte, uid, offset);
            reader.readDataShort(shortValue, uid, offset);
            reader.readDataInt(intValue, uid, offset);
            reader.readDataDouble(doubleValue, uid, offset);
            reader.readDataTimestamp(date, uid, offset);
            reader.readDataByteArray(bytes, sizeof bytes, uid, offset);
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
    streams[kFixedMetaStreamName] = streamfuzz::metaStream(input.part());
    streams[kFixedDataStreamName] = input.part();
    streams[kFixed2MetaStreamName] = streamfuzz::metaStream(input.part());
    streams[kFixed2DataStreamName] = input.rest();

    streamfuzz::StorageFile file(storageName, streams);
    auto storage = file.takeStorage();
    if (!storage) {
        return 0;
    }
    try {
        KVMSPIMPPDataDirectoryReader reader(std::move(storage), storageName, &fileReader);
        for (auto* fixed : {reader.fixedDataReader(), reader.fixed2DataReader()}) {
            if (fixed != nullptr) {
                readEveryItem(*fixed);
            }
        }
    } catch (const TVException&) {
    }
    return 0;
}
