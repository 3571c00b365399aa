#pragma once

#include "MPPImporter/file/KVMPPDataReader.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

// Reads the variable stream pair of one object kind ("VarMeta"/"Var2Data"): builds the map from
// (object UID, property number) to a block of the data stream and answers typed reads inside a
// block. An unknown pair is no error: the read answers false and logs nothing.
class KVMPPVarDataReader : public KVMPPDataReader {
public:
    KVMPPVarDataReader(std::unique_ptr<SSLStream> metaStream, std::string metaStreamName,
                       int32_t metaStreamItemSize, uint32_t metaStreamMagicNumber,
                       std::unique_ptr<SSLStream> dataStream, std::string dataStreamName,
                       KVMSPIMPPDataDirectoryReader* dataDirectoryReader);

    // True when both streams opened. A meta stream without the magic number gives false and no
    // blocks, and no error is logged.
    bool open() override;
    bool openMetaStream();
    bool openDataStream();
    void makeUidPropertyMap();

    bool hasDataForObjectUID(int32_t uid, int32_t property) const;
    bool getDataSize(int32_t& size, int32_t uid, int32_t property) const;
    // UIDs that have at least one block, ascending.
    const std::vector<int32_t>& uidArray() const { return _uidArray; }
    int64_t itemCount() const { return _metaStreamItemCount; }

    // True if the pair has a block holding `size` bytes from `offset` on; gives where they are in
    // the data stream and how many bytes of the block remain from `offset`.
    bool validateObjectUID(int32_t uid, int32_t property, int32_t offset, int32_t size,
                           int32_t* dataStreamOffset, int32_t* dataStreamSize) const;

    bool readDataByte(int8_t& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataUByte(uint8_t& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataShort(int16_t& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataUShort(uint16_t& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataInt(int32_t& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataUInt(uint32_t& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataFloat(float& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataDouble(double& value, int32_t uid, int32_t property, int32_t offset);
    // A block of 1, 2 or 4 bytes as a signed integer, of 8 bytes as a double. Blocks of other sizes
    // answer true and leave the value alone.
    bool readDataAsDouble(double& value, int32_t uid, int32_t property, int32_t offset);
    bool readDataByteArray(void* bytes, int32_t length, int32_t uid, int32_t property, int32_t offset);
    // A time word then a day word; false for a null value.
    bool readDataTimestamp(TVDate& value, int32_t uid, int32_t property, int32_t offset);
    // The rest of the block from `offset` as text (RTF or NUL-terminated UTF-16), appended to `text`.
    // Without a string it only tests that the block is there.
    bool readDataUnicode(std::string* text, int32_t uid, int32_t property, int32_t offset);

    // Reads at an absolute offset of the data stream.
    bool readDataRawByteArray(void* bytes, int32_t length, int32_t offset);

protected:
    // The format version of the file, which decides the layout of a meta item.
    virtual int32_t mppVersion() const;

private:
    struct Key {
        int32_t uid;
        int32_t property;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        size_t operator()(const Key& key) const;
    };
    // Where a block's data lie: behind its size word, and how many bytes.
    struct Block {
        int32_t offset;
        int32_t size;
    };
    struct MetaItem {
        int32_t uid = 0;
        int32_t dataOffset = 0;
        int32_t property = 0;
    };

    MetaItem decodeMetaItem(const uint8_t* item, int32_t version) const;
    // Validates `size` bytes at `offset` of the pair's block, seeks there and reads one value.
    template <typename Value, typename Read>
    bool readData(Value& value, int32_t uid, int32_t property, int32_t offset, int32_t size, Read read,
                  const char* operation);

    int32_t _metaStreamItemSize;
    uint32_t _metaStreamMagicNumber;
    int64_t _metaStreamItemCount = 0;
    std::unordered_map<Key, Block, KeyHash> _uidPropMap;
    std::vector<int32_t> _uidArray;
};
