#include "MPPImporter/file/KVMPPFixedDataReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIOLE2StreamError.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPMemRead.h"
#include "MPPImporter/format/MPPStreamLayout.h"

#include <algorithm>

namespace {

bool isPair(const std::string& meta, const std::string& data, const char* expectedMeta,
            const char* expectedData) {
    return meta == expectedMeta && data == expectedData;
}

} // namespace

KVMPPFixedDataReader::KVMPPFixedDataReader(std::unique_ptr<SSLStream> metaStream, std::string metaStreamName,
                                           int32_t metaStreamItemSize, uint32_t metaStreamMagicNumber,
                                           std::shared_ptr<MPPIndexMap> indexMap, int64_t firstIndex,
                                           std::unique_ptr<SSLStream> dataStream, std::string dataStreamName,
                                           int32_t dataStreamMinItemSize, int32_t dataStreamMaxItemSize,
                                           KVMSPIMPPDataDirectoryReader* dataDirectoryReader)
    : KVMPPDataReader(std::move(metaStream), std::move(metaStreamName), std::move(dataStream),
                      std::move(dataStreamName), dataDirectoryReader),
      _metaStreamItemSize(metaStreamItemSize), _metaStreamMagicNumber(metaStreamMagicNumber),
      _dataStreamMinItemSize(dataStreamMinItemSize), _dataStreamMaxItemSize(dataStreamMaxItemSize),
      _indexMap(std::move(indexMap)), _firstIndex(firstIndex) {
    bool isFirstPair = isPair(_metaStreamName, _dataStreamName, kFixedMetaStreamName, kFixedDataStreamName);
    _isFixed2Stream = isPair(_metaStreamName, _dataStreamName, kFixed2MetaStreamName, kFixed2DataStreamName);
    tvAssert(isFirstPair || _isFixed2Stream, "Unexpected Fixed stream names.");
    tvAssert(_isFixed2Stream == (_indexMap != nullptr),
             "Inappropriate indexMap argument for this Fixed streams reader.");
    tvAssert(_metaStreamItemSize >= kFixedMetaItemKindFieldsOffset, "Fixed meta items are too small.");
    _lastObjectMetaItem.resize(static_cast<size_t>(_metaStreamItemSize));
}

bool KVMPPFixedDataReader::open() {
    if (!openMetaStream() || !openDataStream()) {
        return false;
    }
    std::vector<int32_t> firstFields;
    std::vector<int32_t> dataItemOffsets;
    getMetaFirstFields(firstFields, dataItemOffsets);
    makeUidMap(firstFields, dataItemOffsets);
    makeUidArray();
    return true;
}

int32_t KVMPPFixedDataReader::metaItemSizeForItems(SSLStream& metaStream, int64_t itemCount,
                                                   int32_t tableSize) {
    const int64_t itemBytes = int64_t{streamSize(metaStream)} - kFixedMetaHeaderSize;
    metaStream.rewind();
    if (itemCount <= 0 || itemBytes <= 0 || itemBytes % itemCount != 0) {
        return tableSize;
    }
    return static_cast<int32_t>(std::max<int64_t>(itemBytes / itemCount, tableSize));
}

int64_t KVMPPFixedDataReader::metaItemsInStream(SSLStream& metaStream, int32_t itemSize) {
    const int64_t itemBytes = int64_t{streamSize(metaStream)} - kFixedMetaHeaderSize;
    return itemSize > 0 && itemBytes > 0 ? itemBytes / itemSize : 0;
}

bool KVMPPFixedDataReader::openMetaStream() {
    _metaStream->rewind();
    uint32_t magicNumber = _metaStream->readUInt();
    if (!checkError(*_metaStream, "MPPFixedDataReader.openMetaStream")) {
        return false;
    }
    return magicNumber == _metaStreamMagicNumber;
}

bool KVMPPFixedDataReader::openDataStream() {
    _dataStream->rewind();
    return checkError(*_dataStream, "MPPFixedDataReader.openDataStream");
}

void KVMPPFixedDataReader::getMetaFirstFields(std::vector<int32_t>& firstFields,
                                              std::vector<int32_t>& dataItemOffsets) {
    const char* domain = "MPPFixedDataReader.getMetaFirstFields";
    uint32_t metaSize = streamSize(*_metaStream);
    tvAssert(_metaStream->position() == 0, "Incorect position in fixed meta stream.");
    _metaStream->seekFromStart(kFixedMetaElementCountOffset);
    const int32_t itemsInUse = _metaStream->readInt();
    const bool countRead = checkError(*_metaStream, domain);
    _metaStream->readInt();
    checkError(*_metaStream, domain);
    uint32_t position = _metaStream->position();
    tvAssert(position == kFixedMetaHeaderSize,
             stringWithFormat("Invalid Fixed data meta table offset (%d). Table should begin at %d.",
                              static_cast<int32_t>(position), kFixedMetaHeaderSize));

    // The table keeps growing when objects are deleted: the header counts the items in use, and the
    // items behind them are left over from earlier saves (deleted rows and links, older copies of live
    // objects, offsets that would cut the last live item short). A count of 0 leaves no object.
    _metaStreamItemCount = static_cast<int32_t>((metaSize - kFixedMetaHeaderSize) / _metaStreamItemSize);
    if (countRead && itemsInUse >= 0 && itemsInUse < _metaStreamItemCount) {
        _metaStreamItemCount = itemsInUse;
    }
    firstFields.reserve(static_cast<size_t>(_metaStreamItemCount));
    dataItemOffsets.reserve(static_cast<size_t>(_metaStreamItemCount));
    std::vector<uint8_t> item(static_cast<size_t>(_metaStreamItemSize));
    for (int32_t index = 0; index < _metaStreamItemCount; ++index) {
        if (!streamGetByteArrayPtr(*_metaStream, item.data(), static_cast<uint32_t>(item.size()))) {
            reportStreamError(*_metaStream, domain);
            _metaStreamItemCount = index;
            break;
        }
        firstFields.push_back(memReadInt(item.data(), kFixedMetaItemFirstFieldOffset));
        dataItemOffsets.push_back(memReadInt(item.data(), kFixedMetaItemDataOffsetOffset));
    }
}

void KVMPPFixedDataReader::makeUidMap(const std::vector<int32_t>& firstFields,
                                      const std::vector<int32_t>& dataItemOffsets) {
    const int64_t dataSize = streamSize(*_dataStream);
    tvAssert(_dataStream->position() == 0, "Incorect position in fixed data stream.");
    tvAssert(_isFixed2Stream == (_indexMap != nullptr), "Inconsistent _indexMap value.");
    const auto count = static_cast<int64_t>(dataItemOffsets.size());
    tvAssert(count == 0 || dataSize != 0, "Don't know fixed data stream size.");
    if (!_isFixed2Stream) {
        _indexMap = std::make_shared<MPPIndexMap>();
    }
    _nullIDs.clear();
    // Behind the leading items, the first field 4 of a task store marks a null task, a blank row that
    // keeps its UID and ID (the application lists it as a null task); other stores hold no object there.
    const bool holdsNullTasks = _dataDirectoryReader != nullptr && _dataDirectoryReader->holdsNullTasks();

    int64_t current = count > 0 ? dataItemOffsets[0] : 0;
    for (int64_t index = 0; index < count; ++index) {
        const bool hasNext = index + 1 < count;
        const int64_t next = hasNext ? dataItemOffsets[static_cast<size_t>(index + 1)] : dataSize;
        if (hasNext && next > dataSize) {
            // The item is dropped and the next one is measured from the same start.
            continue;
        }
        int64_t size = next - current;
        if (size == 0) {
            size = _dataStreamMinItemSize;
        }
        if (size < 0 || size > dataSize - current) {
            size = dataSize - current;
        }
        if (_dataStreamMaxItemSize != 0 && size > _dataStreamMaxItemSize) {
            size = _dataStreamMaxItemSize;
        }
        const int32_t firstField = firstFields[static_cast<size_t>(index)];
        if (index >= _firstIndex && firstField != kFixedMetaFirstFieldGap &&
            (firstField != kFixedMetaFirstFieldHeader || holdsNullTasks)) {
            const int32_t uid =
                uidOfItem(index, firstField, static_cast<int32_t>(current), static_cast<int32_t>(size));
            if (uid >= 0) {
                const auto metaOffset =
                    static_cast<int32_t>(kFixedMetaHeaderSize + index * _metaStreamItemSize);
                _uidMap.try_emplace(uid, MPPDataItemInfo{static_cast<int32_t>(index), metaOffset,
                                                         _metaStreamItemSize, static_cast<int32_t>(current),
                                                         static_cast<int32_t>(size)});
            }
        }
        current = next;
    }
}

int32_t KVMPPFixedDataReader::uidOfItem(int64_t index, int32_t firstField, int32_t dataOffset,
                                        int32_t dataSize) {
    if (_isFixed2Stream) {
        auto found = _indexMap->find(index);
        return found != _indexMap->end() ? found->second : 0;
    }
    int64_t objectID = -1;
    bool isNull = false;
    const int32_t uid = objectUIDFromStream(firstField, dataOffset, dataSize, &objectID, &isNull);
    if (uid < 0) {
        return uid;
    }
    (*_indexMap)[index] = uid;
    if (isNull) {
        _nullIDs.insert(uid);
    }
    if (objectID >= 0) {
        _uid2IdMap[uid] = objectID;
    }
    return uid;
}

void KVMPPFixedDataReader::makeUidArray() {
    _uniqueIDs.clear();
    _uniqueIDs.reserve(_uidMap.size());
    for (const auto& entry : _uidMap) {
        _uniqueIDs.push_back(entry.first);
    }
}

int32_t KVMPPFixedDataReader::objectUIDFromStream(int32_t metaFirstField, int32_t dataItemOffset,
                                                  int32_t dataItemSize, int64_t* objectID, bool* isNull) {
    if (_dataDirectoryReader == nullptr) {
        return -1;
    }
    return _dataDirectoryReader->objectUIDFromStream(*_dataStream, metaFirstField, dataItemOffset,
                                                     dataItemSize, objectID, isNull, *this);
}

bool KVMPPFixedDataReader::dataItemInfo(MPPDataItemInfo* info, int32_t uid) const {
    auto found = _uidMap.find(uid);
    if (found == _uidMap.end()) {
        return false;
    }
    if (info != nullptr) {
        *info = found->second;
    }
    return true;
}

int64_t KVMPPFixedDataReader::objectIDforUniqueID(int32_t uid) const {
    auto found = _uid2IdMap.find(uid);
    return found != _uid2IdMap.end() ? found->second : -1;
}

bool KVMPPFixedDataReader::validateObjectUID(int32_t uid) {
    MPPDataItemInfo info;
    if (!dataItemInfo(&info, uid)) {
        return false;
    }
    _lastObjectDataOffset = info.dataOffset;
    _lastObjectDataSize = info.dataSize;
    _metaStream->seekFromStart(info.metaOffset);
    if (!streamGetByteArrayPtr(*_metaStream, _lastObjectMetaItem.data(),
                               static_cast<uint32_t>(_lastObjectMetaItem.size()))) {
        return reportStreamError(*_metaStream, "MPPFixedDataReader.validateObjectUID");
    }
    tvAssert(memReadInt(_lastObjectMetaItem.data(), kFixedMetaItemDataOffsetOffset) == info.dataOffset,
             "Inconsistent data item offset values found in cache.");
    return true;
}

bool KVMPPFixedDataReader::refuseRead(const std::string& description) {
    _error = KVMSPIOLE2StreamError::errorWithStream(*_dataStream, description);
    return false;
}

bool KVMPPFixedDataReader::validateMetaObjectUID(int32_t uid, int32_t offset, int32_t size) {
    if (!validateObjectUID(uid)) {
        return refuseRead(stringWithFormat("Invalid object UID value (%d).", uid));
    }
    if (offset < 0 || int64_t{_metaStreamItemSize} - size <= offset) {
        return refuseRead(stringWithFormat(
            "Invalid meta data offset (%d) and size (%d) for object with UID=%d.", offset, size, uid));
    }
    return true;
}

bool KVMPPFixedDataReader::validateDataObjectUID(int32_t uid, int32_t offset, int32_t size) {
    if (!validateObjectUID(uid)) {
        return refuseRead(stringWithFormat("Invalid object UID value (%d).", uid));
    }
    if (offset < 0 || int64_t{_lastObjectDataSize} - size < offset) {
        return refuseRead(stringWithFormat("Invalid data offset (%d) and size (%d) for object with UID=%d.",
                                           offset, size, uid));
    }
    return true;
}

template <typename Value, typename Decode>
bool KVMPPFixedDataReader::readMeta(Value& value, int32_t uid, int32_t offset, Decode decode) {
    if (!validateMetaObjectUID(uid, offset, static_cast<int32_t>(sizeof(Value)))) {
        return false;
    }
    value = decode(_lastObjectMetaItem.data(), offset);
    return true;
}

bool KVMPPFixedDataReader::readMetaByte(int8_t& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadByte);
}

bool KVMPPFixedDataReader::readMetaUByte(uint8_t& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadUByte);
}

bool KVMPPFixedDataReader::readMetaShort(int16_t& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadShort);
}

bool KVMPPFixedDataReader::readMetaUShort(uint16_t& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadUShort);
}

bool KVMPPFixedDataReader::readMetaInt(int32_t& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadInt);
}

bool KVMPPFixedDataReader::readMetaUInt(uint32_t& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadUInt);
}

bool KVMPPFixedDataReader::readMetaFloat(float& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadFloat);
}

bool KVMPPFixedDataReader::readMetaDouble(double& value, int32_t uid, int32_t offset) {
    return readMeta(value, uid, offset, memReadDouble);
}

bool KVMPPFixedDataReader::readMetaByteArray(void* bytes, int32_t length, int32_t uid, int32_t offset) {
    if (length < 0 || !validateMetaObjectUID(uid, offset, length)) {
        return false;
    }
    memReadByteArray(bytes, _lastObjectMetaItem.data(), offset, static_cast<size_t>(length));
    return true;
}

template <typename Value, typename Read>
bool KVMPPFixedDataReader::readData(Value& value, int32_t uid, int32_t offset, int32_t size,
                                    bool stopWhenRefused, Read read, const char* operation) {
    _error.reset();
    const bool valid = size >= 0 && validateDataObjectUID(uid, offset, size);
    if (!valid && (stopWhenRefused || size < 0)) {
        return false;
    }
    const std::string domain = std::string("MPPFixedDataReader.") + operation;
    if (!seekStream(*_dataStream, int64_t{_lastObjectDataOffset} + offset)) {
        return reportStreamError(*_dataStream, domain);
    }
    value = read(*_dataStream);
    if (_dataStream->lastError() != 0) {
        return reportStreamError(*_dataStream, domain);
    }
    return valid;
}

bool KVMPPFixedDataReader::readDataByte(int8_t& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 1, false,
        [](SSLStream& stream) { return static_cast<int8_t>(stream.readUByte()); },
        "readDataByte:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataUByte(uint8_t& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 1, false, [](SSLStream& stream) { return stream.readUByte(); },
        "readDataUByte:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataShort(int16_t& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 2, false, [](SSLStream& stream) { return stream.readShort(); },
        "readDataShort:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataUShort(uint16_t& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 2, false, [](SSLStream& stream) { return stream.readUShort(); },
        "readDataUShort:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataInt(int32_t& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 4, true, [](SSLStream& stream) { return stream.readInt(); },
        "readDataInt:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataUInt(uint32_t& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 4, false, [](SSLStream& stream) { return stream.readUInt(); },
        "readDataUInt:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataFloat(float& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 4, false, [](SSLStream& stream) { return stream.readFloat(); },
        "readDataFloat:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataDouble(double& value, int32_t uid, int32_t offset) {
    return readData(
        value, uid, offset, 8, false, [](SSLStream& stream) { return stream.readDouble(); },
        "readDataDouble:objectUID:offset");
}

bool KVMPPFixedDataReader::readDataByteArray(void* bytes, int32_t length, int32_t uid, int32_t offset) {
    int32_t bytesRead = 0;
    return readData(
               bytesRead, uid, offset, length, false,
               [&](SSLStream& stream) { return stream.readBytes(static_cast<uint32_t>(length), bytes); },
               "readDataByteArray:length:objectUID:offset") &&
           bytesRead == length; // a stream that ends inside the item gives less
}

bool KVMPPFixedDataReader::readDataTimestamp(TVDate& value, int32_t uid, int32_t offset) {
    // The field is 4 bytes, but the item must hold 8 from the offset on.
    std::optional<TVDate> timestamp;
    if (!readData(
            timestamp, uid, offset, 8, true, [](SSLStream& stream) { return stream.readDateTime(); },
            "readDataTimestamp:objectUID:offset") ||
        !timestamp) {
        return false;
    }
    value = *timestamp;
    return true;
}

bool KVMPPFixedDataReader::readMetaRawByteArray(void* bytes, int32_t length, int32_t offset) {
    return length >= 0 && seekStream(*_metaStream, offset) &&
           streamGetByteArrayPtr(*_metaStream, bytes, static_cast<uint32_t>(length));
}

bool KVMPPFixedDataReader::readDataRawByteArray(void* bytes, int32_t length, int32_t offset) {
    return length >= 0 && seekStream(*_dataStream, offset) &&
           streamGetByteArrayPtr(*_dataStream, bytes, static_cast<uint32_t>(length));
}
