#include "MPPImporter/file/KVMPPVarDataReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/MPPMemReadUnicode.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/format/MPPMemRead.h"
#include "MPPImporter/format/MPPStreamLayout.h"

#include <algorithm>
#include <limits>

namespace {

constexpr const char* kBuildDomain = "MPPFixedDataReader.makeUidPropertyMap";

} // namespace

size_t KVMPPVarDataReader::KeyHash::operator()(const Key& key) const {
    return std::hash<uint64_t>()((static_cast<uint64_t>(static_cast<uint32_t>(key.uid)) << 32) |
                                 static_cast<uint32_t>(key.property));
}

KVMPPVarDataReader::KVMPPVarDataReader(std::unique_ptr<SSLStream> metaStream, std::string metaStreamName,
                                       int32_t metaStreamItemSize, uint32_t metaStreamMagicNumber,
                                       std::unique_ptr<SSLStream> dataStream, std::string dataStreamName,
                                       KVMSPIMPPDataDirectoryReader* dataDirectoryReader)
    : KVMPPDataReader(std::move(metaStream), std::move(metaStreamName), std::move(dataStream),
                      std::move(dataStreamName), dataDirectoryReader),
      _metaStreamItemSize(metaStreamItemSize), _metaStreamMagicNumber(metaStreamMagicNumber) {}

int32_t KVMPPVarDataReader::mppVersion() const {
    return _dataDirectoryReader != nullptr ? _dataDirectoryReader->version() : 0;
}

bool KVMPPVarDataReader::open() {
    if (!openMetaStream() || !openDataStream()) {
        return false;
    }
    makeUidPropertyMap();
    return true;
}

bool KVMPPVarDataReader::openMetaStream() {
    _metaStream->rewind();
    uint32_t magicNumber = _metaStream->readUInt();
    if (!checkError(*_metaStream, "MPPFixedDataReader.openMetaStream")) {
        return false;
    }
    return magicNumber == _metaStreamMagicNumber;
}

bool KVMPPVarDataReader::openDataStream() {
    _dataStream->rewind();
    return checkError(*_dataStream, "MPPVarDataReader.openDataStream");
}

KVMPPVarDataReader::MetaItem KVMPPVarDataReader::decodeMetaItem(const uint8_t* item, int32_t version) const {
    MetaItem decoded;
    switch (version) {
    case kMSPDIVersion_2003:
        decoded.uid = static_cast<int32_t>(memReadUInt(item, kVarMeta9ItemUIDOffset) & 0xFFFFFF);
        // Unsigned: version 9 files keep task notes under 144 and task costs under 134 to 143.
        decoded.property = memReadUByte(item, kVarMeta9ItemPropertyOffset);
        decoded.dataOffset = memReadInt(item, kVarMeta9ItemDataOffsetOffset);
        break;
    case kMSPDIVersion_2007:
    case kMSPDIVersion_2010:
    case kMSPDIVersion_2013:
    case kMSPDIVersion_2016:
        decoded.uid = memReadInt(item, kVarMetaItemUIDOffset);
        decoded.dataOffset = memReadInt(item, kVarMetaItemDataOffsetOffset);
        decoded.property = memReadShort(item, kVarMetaItemPropertyOffset);
        break;
    default:
        tvAssert(false, stringWithFormat("Unsupported MPP format version (%d).", version));
    }
    return decoded;
}

void KVMPPVarDataReader::makeUidPropertyMap() {
    const uint32_t metaSize = streamSize(*_metaStream);
    tvAssert(_metaStream->position() == 0, "Incorect position in fixed meta stream.");
    _metaStream->seekFromStart(kVarMetaItemCountOffset);
    _metaStreamItemCount = _metaStream->readInt();
    checkError(*_metaStream, kBuildDomain);
    _metaStream->seekFromStart(kVarMetaCumulativeSizeOffset);
    _metaStream->readInt();
    checkError(*_metaStream, kBuildDomain);
    const uint32_t tableStart = _metaStream->position();
    tvAssert(tableStart == kVarMetaHeaderSize,
             stringWithFormat("Invalid Fixed data meta table offset (%d). Table should begin at %d.",
                              static_cast<int32_t>(tableStart), kVarMetaHeaderSize));

    // A count beyond the table's bytes stops at the first item that can't be read.
    const int32_t version = mppVersion();
    const int64_t dataSize = streamSize(*_dataStream);
    const int64_t itemsInStream =
        (int64_t{metaSize} - kVarMetaHeaderSize + _metaStreamItemSize - 1) / _metaStreamItemSize;
    const int64_t count = std::min(_metaStreamItemCount, itemsInStream + 1);
    std::vector<uint8_t> item(static_cast<size_t>(std::max(_metaStreamItemSize, kVarMetaItemSize)));
    for (int64_t index = 0; index < count; ++index) {
        const uint32_t itemPosition = _metaStream->position();
        std::fill(item.begin(), item.end(), 0);
        if (!streamGetByteArrayPtr(*_metaStream, item.data(), static_cast<uint32_t>(_metaStreamItemSize))) {
            reportStreamError(*_metaStream, kBuildDomain);
            break;
        }
        const MetaItem entry = decodeMetaItem(item.data(), version);
        if (!seekStream(*_dataStream, entry.dataOffset)) {
            reportStreamError(*_dataStream, kBuildDomain);
            continue;
        }
        const int32_t blockSize = _dataStream->readInt();
        if (!checkError(*_dataStream, kBuildDomain) || blockSize <= 0) {
            continue;
        }
        tvAssert(itemPosition == _metaStreamItemSize * index + kVarMetaHeaderSize,
                 "Incorrect offset of var meta item.");
        const int64_t blockOffset = int64_t{entry.dataOffset} + kVarDataBlockHeaderSize;
        // A size word beyond the stream's end keeps what the stream holds, so that no read allocates
        // more than the file has.
        const int64_t heldSize = std::min<int64_t>(blockSize, dataSize - blockOffset);
        if (heldSize <= 0 || blockOffset > std::numeric_limits<int32_t>::max()) {
            continue;
        }
        const int32_t property = _dataDirectoryReader != nullptr
                                     ? _dataDirectoryReader->listPropertyOfStored(entry.property)
                                     : entry.property;
        _uidPropMap.try_emplace(Key{entry.uid, property},
                                Block{static_cast<int32_t>(blockOffset), static_cast<int32_t>(heldSize)});
        _uidArray.push_back(entry.uid);
    }
    std::sort(_uidArray.begin(), _uidArray.end());
    _uidArray.erase(std::unique(_uidArray.begin(), _uidArray.end()), _uidArray.end());
}

bool KVMPPVarDataReader::hasDataForObjectUID(int32_t uid, int32_t property) const {
    return _uidPropMap.contains(Key{uid, property});
}

bool KVMPPVarDataReader::getDataSize(int32_t& size, int32_t uid, int32_t property) const {
    auto found = _uidPropMap.find(Key{uid, property});
    if (found == _uidPropMap.end()) {
        return false;
    }
    size = found->second.size;
    return true;
}

bool KVMPPVarDataReader::validateObjectUID(int32_t uid, int32_t property, int32_t offset, int32_t size,
                                           int32_t* dataStreamOffset, int32_t* dataStreamSize) const {
    auto found = _uidPropMap.find(Key{uid, property});
    if (found == _uidPropMap.end() || offset < 0 || size < 0 || found->second.size - size < offset) {
        return false;
    }
    if (dataStreamOffset != nullptr) {
        *dataStreamOffset = found->second.offset + offset;
    }
    if (dataStreamSize != nullptr) {
        *dataStreamSize = found->second.size - offset;
    }
    return true;
}

template <typename Value, typename Read>
bool KVMPPVarDataReader::readData(Value& value, int32_t uid, int32_t property, int32_t offset, int32_t size,
                                  Read read, const char* operation) {
    _error.reset();
    int32_t position = 0;
    if (!validateObjectUID(uid, property, offset, size, &position, nullptr)) {
        return false;
    }
    const std::string domain = std::string("MPPVarDataReader.") + operation;
    if (!seekStream(*_dataStream, position)) {
        return reportStreamError(*_dataStream, domain);
    }
    value = read(*_dataStream);
    if (_dataStream->lastError() != 0) {
        return reportStreamError(*_dataStream, domain);
    }
    return true;
}

bool KVMPPVarDataReader::readDataByte(int8_t& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 1, [](SSLStream& stream) { return stream.readByte(); }, "readDataByte");
}

bool KVMPPVarDataReader::readDataUByte(uint8_t& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 1, [](SSLStream& stream) { return stream.readUByte(); },
        "readDataUByte");
}

bool KVMPPVarDataReader::readDataShort(int16_t& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 2, [](SSLStream& stream) { return stream.readShort(); },
        "readDataShort");
}

bool KVMPPVarDataReader::readDataUShort(uint16_t& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 2, [](SSLStream& stream) { return stream.readUShort(); },
        "readDataUShort");
}

bool KVMPPVarDataReader::readDataInt(int32_t& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 4, [](SSLStream& stream) { return stream.readInt(); }, "readDataInt");
}

bool KVMPPVarDataReader::readDataUInt(uint32_t& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 4, [](SSLStream& stream) { return stream.readUInt(); }, "readDataUInt");
}

bool KVMPPVarDataReader::readDataFloat(float& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 4, [](SSLStream& stream) { return stream.readFloat(); },
        "readDataFloat");
}

bool KVMPPVarDataReader::readDataDouble(double& value, int32_t uid, int32_t property, int32_t offset) {
    return readData(
        value, uid, property, offset, 8, [](SSLStream& stream) { return stream.readDouble(); },
        "readDataDouble");
}

bool KVMPPVarDataReader::readDataAsDouble(double& value, int32_t uid, int32_t property, int32_t offset) {
    int32_t blockSize = 0;
    if (!getDataSize(blockSize, uid, property)) {
        return false;
    }
    auto readConverted = [&](auto integer, auto read) {
        if (!(this->*read)(integer, uid, property, offset)) {
            return false;
        }
        value = static_cast<double>(integer);
        return true;
    };
    switch (blockSize) {
    case 1:
        return readConverted(int8_t{0}, &KVMPPVarDataReader::readDataByte);
    case 2:
        return readConverted(int16_t{0}, &KVMPPVarDataReader::readDataShort);
    case 4:
        return readConverted(int32_t{0}, &KVMPPVarDataReader::readDataInt);
    case 8:
        return readDataDouble(value, uid, property, offset);
    default:
        return true;
    }
}

bool KVMPPVarDataReader::readDataByteArray(void* bytes, int32_t length, int32_t uid, int32_t property,
                                           int32_t offset) {
    int32_t bytesRead = 0;
    return readData(
               bytesRead, uid, property, offset, length,
               [&](SSLStream& stream) { return stream.readBytes(static_cast<uint32_t>(length), bytes); },
               "readDataByteArray") &&
           bytesRead == length; // a stream that ends inside the block gives less
}

bool KVMPPVarDataReader::readDataTimestamp(TVDate& value, int32_t uid, int32_t property, int32_t offset) {
    double seconds = -1.0;
    if (!readData(
            seconds, uid, property, offset, 4, [](SSLStream& stream) { return stream.readTimeInterval(); },
            "readDataTimestamp") ||
        seconds == -1.0) {
        return false;
    }
    value = getMPPEpoch().addingSeconds(seconds);
    return true;
}

bool KVMPPVarDataReader::readDataUnicode(std::string* text, int32_t uid, int32_t property, int32_t offset) {
    int32_t remaining = 0;
    if (!validateObjectUID(uid, property, offset, 0, nullptr, &remaining)) {
        return false;
    }
    if (text == nullptr) {
        return true;
    }
    std::vector<uint8_t> bytes;
    auto readRest = [&](SSLStream& stream) {
        bytes.resize(static_cast<size_t>(remaining));
        return stream.readBytes(static_cast<uint32_t>(remaining), bytes.data());
    };
    int32_t bytesRead = 0;
    if (!readData(bytesRead, uid, property, offset, 0, readRest, "readDataUnicode") || bytesRead <= 0) {
        return false;
    }
    memReadUnicode(*text, bytes.data(), 0, bytesRead);
    return true;
}

bool KVMPPVarDataReader::readDataRawByteArray(void* bytes, int32_t length, int32_t offset) {
    return length >= 0 && seekStream(*_dataStream, offset) &&
           streamGetByteArrayPtr(*_dataStream, bytes, static_cast<uint32_t>(length));
}
