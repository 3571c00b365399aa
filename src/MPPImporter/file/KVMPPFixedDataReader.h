#pragma once

#include "MPPImporter/file/KVMPPDataReader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

// Where the fixed-size record of one object lies: its item in the meta stream and its item in the
// data stream.
struct MPPDataItemInfo {
    int32_t metaIndex = 0;
    int32_t metaOffset = 0;
    int32_t metaSize = 0;
    int32_t dataOffset = 0;
    int32_t dataSize = 0;
};

// Meta item index to object UID, built by the reader of "FixedMeta"/"FixedData" and shared with the
// reader of "Fixed2Meta"/"Fixed2Data", whose item i belongs to the object of item i of the first.
using MPPIndexMap = std::unordered_map<int64_t, int32_t>;

// Reads a fixed stream pair of one object kind: builds the map from object UID to its meta and data
// items and answers typed reads by UID and offset. Call open() once, then read.
class KVMPPFixedDataReader : public KVMPPDataReader {
public:
    // `indexMap` is given exactly for the Fixed2 pair. A maximum item size of 0 means no limit.
    KVMPPFixedDataReader(std::unique_ptr<SSLStream> metaStream, std::string metaStreamName,
                         int32_t metaStreamItemSize, uint32_t metaStreamMagicNumber,
                         std::shared_ptr<MPPIndexMap> indexMap, int64_t firstIndex,
                         std::unique_ptr<SSLStream> dataStream, std::string dataStreamName,
                         int32_t dataStreamMinItemSize, int32_t dataStreamMaxItemSize,
                         KVMSPIMPPDataDirectoryReader* dataDirectoryReader);

    // True if both streams opened. A meta stream without the magic number gives false and no
    // objects, and no error is logged.
    bool open() override;

    // The meta item size of a table of `itemCount` items: the count divides the bytes behind the header
    // exactly. `tableSize` if it doesn't, or if that gives a smaller size. Leaves the stream at its start.
    static int32_t metaItemSizeForItems(SSLStream& metaStream, int64_t itemCount, int32_t tableSize);
    // The count of items that a meta stream holds behind its header, in use or not.
    static int64_t metaItemsInStream(SSLStream& metaStream, int32_t itemSize);

    // True if the UID is known; fills `info` when given.
    bool dataItemInfo(MPPDataItemInfo* info, int32_t uid) const;
    // The object's row number, -1 if unknown.
    int64_t objectIDforUniqueID(int32_t uid) const;

    int32_t itemCount() const { return _metaStreamItemCount; }
    int32_t metaStreamItemSize() const { return _metaStreamItemSize; }
    const std::shared_ptr<MPPIndexMap>& indexMap() const { return _indexMap; }
    const std::vector<int32_t>& uniqueIDs() const { return _uniqueIDs; }
    const std::unordered_set<int32_t>& nullIDs() const { return _nullIDs; }

    // Reads from the object's meta item. The last byte of an item can't be read.
    bool readMetaByte(int8_t& value, int32_t uid, int32_t offset);
    bool readMetaUByte(uint8_t& value, int32_t uid, int32_t offset);
    bool readMetaShort(int16_t& value, int32_t uid, int32_t offset);
    bool readMetaUShort(uint16_t& value, int32_t uid, int32_t offset);
    bool readMetaInt(int32_t& value, int32_t uid, int32_t offset);
    bool readMetaUInt(uint32_t& value, int32_t uid, int32_t offset);
    bool readMetaFloat(float& value, int32_t uid, int32_t offset);
    bool readMetaDouble(double& value, int32_t uid, int32_t offset);
    bool readMetaByteArray(void* bytes, int32_t length, int32_t uid, int32_t offset);

    // Reads from the object's data item. Apart from readDataInt and readDataTimestamp, a read whose
    // UID or range is refused still reads at the offset in the previous object's item and answers
    // false, so its destination may change.
    bool readDataByte(int8_t& value, int32_t uid, int32_t offset);
    bool readDataUByte(uint8_t& value, int32_t uid, int32_t offset);
    bool readDataShort(int16_t& value, int32_t uid, int32_t offset);
    bool readDataUShort(uint16_t& value, int32_t uid, int32_t offset);
    bool readDataInt(int32_t& value, int32_t uid, int32_t offset);
    bool readDataUInt(uint32_t& value, int32_t uid, int32_t offset);
    bool readDataFloat(float& value, int32_t uid, int32_t offset);
    bool readDataDouble(double& value, int32_t uid, int32_t offset);
    bool readDataByteArray(void* bytes, int32_t length, int32_t uid, int32_t offset);
    // A time word then a day word; false for a null value, without an error.
    bool readDataTimestamp(TVDate& value, int32_t uid, int32_t offset);

    // Reads at an absolute offset of the meta or the data stream.
    bool readMetaRawByteArray(void* bytes, int32_t length, int32_t offset);
    bool readDataRawByteArray(void* bytes, int32_t length, int32_t offset);

protected:
    // The UID of one data item of the first pair, -1 for none; the directory reader's UID reader of
    // the object kind answers it.
    virtual int32_t objectUIDFromStream(int32_t metaFirstField, int32_t dataItemOffset, int32_t dataItemSize,
                                        int64_t* objectID, bool* isNull);

private:
    bool openMetaStream();
    bool openDataStream();
    void getMetaFirstFields(std::vector<int32_t>& firstFields, std::vector<int32_t>& dataItemOffsets);
    void makeUidMap(const std::vector<int32_t>& firstFields, const std::vector<int32_t>& dataItemOffsets);
    void makeUidArray();
    // The UID of item `index`, -1 for none: from the index map in a Fixed2 reader, otherwise from the
    // UID reader, recording the item's index, null mark and object id.
    int32_t uidOfItem(int64_t index, int32_t firstField, int32_t dataOffset, int32_t dataSize);

    bool validateObjectUID(int32_t uid);
    bool validateMetaObjectUID(int32_t uid, int32_t offset, int32_t size);
    bool validateDataObjectUID(int32_t uid, int32_t offset, int32_t size);
    // Leaves a stream error in hand, unlogged, and answers false.
    bool refuseRead(const std::string& description);

    // Validates `size` bytes at `offset` of the object's data item, then seeks there in the current
    // object's item and reads one value with `read`. A refused range still reads unless
    // `stopWhenRefused`, and answers false.
    template <typename Value, typename Read>
    bool readData(Value& value, int32_t uid, int32_t offset, int32_t size, bool stopWhenRefused, Read read,
                  const char* operation);
    template <typename Value, typename Decode>
    bool readMeta(Value& value, int32_t uid, int32_t offset, Decode decode);

    int32_t _metaStreamItemSize;
    uint32_t _metaStreamMagicNumber;
    int32_t _dataStreamMinItemSize;
    int32_t _dataStreamMaxItemSize;
    int32_t _metaStreamItemCount = 0;
    bool _isFixed2Stream;
    std::shared_ptr<MPPIndexMap> _indexMap;
    int64_t _firstIndex;
    std::unordered_map<int32_t, MPPDataItemInfo> _uidMap;
    std::unordered_map<int32_t, int64_t> _uid2IdMap;
    std::vector<int32_t> _uniqueIDs;
    std::unordered_set<int32_t> _nullIDs;

    // The current object, which the last validated read chose.
    int32_t _lastObjectDataOffset = 0;
    int32_t _lastObjectDataSize = 0;
    std::vector<uint8_t> _lastObjectMetaItem;
};
