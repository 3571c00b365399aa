#include "MPPImporter/file/KVMSPIPropsReader.h"

#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/MSPCXMLText.h"
#include "MPPImporter/format/MPPMemRead.h"
#include "MPPImporter/text/WindowsCodePage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace {

using FormatID = std::array<uint8_t, 16>;

constexpr FormatID kSummaryInformationFormatID = {0xE0, 0x85, 0x9F, 0xF2, 0xF9, 0x4F, 0x68, 0x10,
                                                  0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
constexpr FormatID kDocumentSummaryInformationFormatID = {0x02, 0xD5, 0xCD, 0xD5, 0x9C, 0x2E, 0x1B, 0x10,
                                                          0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};
constexpr FormatID kUserDefinedPropertiesFormatID = {0x05, 0xD5, 0xCD, 0xD5, 0x9C, 0x2E, 0x1B, 0x10,
                                                     0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};

constexpr int32_t kTypeLPSTR = 30;
constexpr int32_t kTypeLPWSTR = 31;
constexpr uint32_t kDictionaryProperty = 0;
// Properties with this bit are not indexed.
constexpr uint32_t kUnindexedPropertyBit = 0x1000000;
constexpr size_t kPropsHeaderSize = 16;
constexpr int64_t kPropsEntryHeadSize = 12;
constexpr size_t kPropertySetHeaderSize = 28;
constexpr size_t kSectionHeadSize = 20;
constexpr uint64_t kMinIndexedSectionSize = 17;
// A dictionary name that isn't UTF-8 is replaced by this many bytes of the dictionary, as ASCII.
constexpr size_t kDictionaryFallbackNameSize = 16;

constexpr const char* kInitDomain = "MSPIPropsReader.initWithStream";
constexpr const char* kPropertyListDomain = "MSPIPropsReader.initPropertyList";
constexpr const char* kPacketHeaderDomain = "MSPIPropsReader.initPropertySetStreamPacket";
constexpr const char* kPacketDomain = "MSPIPropsReader.iitPropertySetStreamPacket";

bool isFormatID(const uint8_t* bytes, const FormatID& id) {
    return std::equal(id.begin(), id.end(), bytes);
}

bool isStringType(int32_t type) {
    return type == kTypeLPSTR || type == kTypeLPWSTR;
}

std::string asciiName(const uint8_t* bytes, size_t length) {
    std::string name;
    for (size_t i = 0; i < length; ++i) {
        name.push_back(bytes[i] < 0x80 ? static_cast<char>(bytes[i]) : '?');
    }
    return name;
}

std::string_view untilNul(std::string_view bytes) {
    return bytes.substr(0, bytes.find('\0'));
}

} // namespace

KVMSPIPropsReader::KVMSPIPropsReader(std::unique_ptr<SSLStream> stream) : _stream(std::move(stream)) {
    tvAssert(_stream != nullptr, "Property stream is not specified for this reader.");
    _name = _stream->streamName();
    _stream->rewind();
    checkStream(kInitDomain);
    uint8_t byteOrderMark[2] = {};
    _stream->readBytes(sizeof byteOrderMark, byteOrderMark);
    if (byteOrderMark[0] == 0xFE && byteOrderMark[1] == 0xFF) {
        initPropertySetStreamPacket();
    } else {
        initPropertyList();
    }
}

bool KVMSPIPropsReader::processError() {
    if (_error) {
        tvLog(stringWithFormat("ERROR: %s", _error->localizedDescription().c_str()));
        _error.reset();
    }
    return true;
}

bool KVMSPIPropsReader::checkStream(const char* domain) {
    if (_stream->lastError() == 0) {
        return true;
    }
    _error = TVError{domain, _stream->lastError(), {}};
    processError();
    return false;
}

void KVMSPIPropsReader::initPropertyList() {
    _stream->rewind();
    uint8_t header[kPropsHeaderSize] = {};
    _stream->readBytes(sizeof header, header);
    int16_t count = memReadShort(header, 12);
    // Only entry heads are counted off, never the data: the bound is loose, and reads of data behind
    // the stream's end simply fail later.
    int64_t remaining = _stream->bytesAvailable();
    for (int16_t i = 0; i < count; ++i) {
        uint32_t size = _stream->readUInt();
        checkStream(kPropertyListDomain);
        int32_t number = _stream->readInt();
        checkStream(kPropertyListDomain);
        _stream->readInt();
        checkStream(kPropertyListDomain);
        remaining -= kPropsEntryHeadSize;
        // A size of 0 wraps to the largest value and ends the list; so does one that no seek can pass.
        if (static_cast<int64_t>(size - 1u) >= remaining ||
            size > static_cast<uint32_t>(std::numeric_limits<int32_t>::max())) {
            break;
        }
        int64_t position = _stream->position();
        _stream->seekFromCurrentPos(static_cast<int32_t>(size));
        _propsMap[number] = Entry{position, static_cast<int32_t>(size), 0};
        if (size % 2 != 0) {
            _stream->seekFromCurrentPos(1);
        }
    }
}

void KVMSPIPropsReader::initPropertySetStreamPacket() {
    _stream->rewind();
    uint8_t header[kPropertySetHeaderSize] = {};
    _stream->readBytes(sizeof header, header);
    checkStream(kPacketHeaderDomain);
    int32_t sectionCount = memReadInt(header, 24);
    tvAssert(sectionCount >= 1 && sectionCount <= 2,
             stringWithFormat("Incorrect Section Count value: %ld", static_cast<long>(sectionCount)));

    uint8_t sectionHead[kSectionHeadSize] = {};
    _stream->readBytes(sizeof sectionHead, sectionHead);
    checkStream(kPacketDomain);
    EntryMap* target = nullptr;
    if (isFormatID(sectionHead, kSummaryInformationFormatID)) {
        target = &_propsMap;
    } else if (isFormatID(sectionHead, kDocumentSummaryInformationFormatID)) {
        target = &_customPropsMap;
    }
    uint32_t position = _stream->position();
    if (auto section = readSection(memReadUInt(sectionHead, 16), kPacketDomain)) {
        indexSection(*section, target, false);
    }
    _stream->seekFromStart(static_cast<int32_t>(position));
    if (sectionCount < 2) {
        return;
    }

    std::memset(sectionHead, 0, sizeof sectionHead);
    _stream->readBytes(sizeof sectionHead, sectionHead);
    checkStream(kPacketDomain);
    tvAssert(isFormatID(sectionHead, kUserDefinedPropertiesFormatID),
             "Incorrect second section format ID in Document Summary Info.");
    position = _stream->position();
    if (auto section = readSection(memReadUInt(sectionHead, 16), kPacketDomain)) {
        indexSection(*section, target, true);
    }
    _stream->seekFromStart(static_cast<int32_t>(position));
}

std::optional<KVMSPIPropsReader::Section> KVMSPIPropsReader::readSection(uint32_t offset,
                                                                         const char* domain) {
    if (offset > static_cast<uint32_t>(std::numeric_limits<int32_t>::max()) ||
        !_stream->seekFromStart(static_cast<int32_t>(offset))) {
        checkStream(domain);
        return std::nullopt;
    }
    int32_t declaredSize = _stream->readInt();
    if (!checkStream(domain) || declaredSize <= 0) {
        return std::nullopt;
    }
    // A section can't reach behind the end of the stream; only what is there is read.
    uint64_t available = uint64_t{_stream->bytesAvailable()} + sizeof declaredSize;
    Section section{offset,
                    std::vector<uint8_t>(std::min<uint64_t>(static_cast<uint32_t>(declaredSize), available))};
    _stream->seekFromStart(static_cast<int32_t>(offset));
    int32_t read = _stream->readBytes(static_cast<uint32_t>(section.bytes.size()), section.bytes.data());
    if (!checkStream(domain)) {
        return std::nullopt;
    }
    section.bytes.resize(static_cast<size_t>(std::max(read, 0)));
    return section;
}

void KVMSPIPropsReader::indexSection(const Section& section, EntryMap* target, bool userDefined) {
    const uint8_t* bytes = section.bytes.data();
    const uint64_t size = section.bytes.size();
    if (size < kMinIndexedSectionSize) {
        return;
    }
    const uint32_t count = memReadUInt(bytes, 4);
    bool dictionarySeen = false;
    for (uint64_t pair = 8, index = 0; index < count && pair + 8 <= size; ++index, pair += 8) {
        uint32_t number = memReadUInt(bytes, static_cast<int32_t>(pair));
        uint32_t propertyOffset = memReadUInt(bytes, static_cast<int32_t>(pair + 4));
        if (uint64_t{propertyOffset} + 4 >= size) {
            continue;
        }
        int32_t type = memReadInt(bytes, static_cast<int32_t>(propertyOffset));
        if (number == kDictionaryProperty) {
            tvAssert(userDefined,
                     "Do not expect dictionary property in SummaryInfo / DocumentSummaryInfo property set.");
            tvAssert(!dictionarySeen, "Expect only one dictionary per section.");
            dictionarySeen = true;
            readDictionary(section, propertyOffset);
            continue;
        }
        if ((number & kUnindexedPropertyBit) != 0 || target == nullptr) {
            continue;
        }
        Entry entry{0, isStringType(type) ? type : 0, type};
        // The first section's entries start behind the type word; the user-defined ones at it, except
        // for strings.
        if (userDefined) {
            entry.location = section.offset + propertyOffset + (isStringType(type) ? 4 : 0);
        } else {
            entry.location = section.offset + 4 + propertyOffset;
        }
        (*target)[static_cast<int32_t>(number)] = entry;
    }
}

void KVMSPIPropsReader::readDictionary(const Section& section, uint32_t offset) {
    const uint8_t* bytes = section.bytes.data();
    const uint64_t size = section.bytes.size();
    uint64_t position = uint64_t{offset} + 4;
    const uint32_t count = memReadUInt(bytes, static_cast<int32_t>(offset));
    for (uint32_t index = 0; index < count && position + 8 <= size; ++index) {
        uint32_t number = memReadUInt(bytes, static_cast<int32_t>(position));
        uint32_t length = memReadUInt(bytes, static_cast<int32_t>(position + 4));
        position += 8;
        if (length > size - position) {
            break;
        }
        std::string_view name =
            untilNul(std::string_view(reinterpret_cast<const char*>(bytes + position), length));
        if (utf8FromCodePage(name, kCodePageUTF8, InvalidBytes::fail)) {
            _propsNameMap[std::string(name)] = static_cast<int32_t>(number);
        } else {
            size_t fallbackSize = std::min<uint64_t>(kDictionaryFallbackNameSize, size - offset);
            _propsNameMap[asciiName(bytes + offset, fallbackSize)] = static_cast<int32_t>(number);
        }
        position += length;
    }
}

bool KVMSPIPropsReader::getPropertySize(int32_t* size, int32_t property) const {
    auto found = entry(property, false);
    if (found && size != nullptr) {
        *size = found->size;
    }
    return found.has_value();
}

bool KVMSPIPropsReader::getCustomPropertySize(int32_t* size, int32_t* type, int32_t property) const {
    auto found = entry(property, true);
    if (found && size != nullptr) {
        *size = found->size;
    }
    if (found && type != nullptr) {
        *type = found->type;
    }
    return found.has_value();
}

bool KVMSPIPropsReader::getCustomProperty(int32_t* property, const std::string& propertyName) const {
    auto found = _propsNameMap.find(propertyName);
    if (found == _propsNameMap.end()) {
        return false;
    }
    if (property != nullptr) {
        *property = found->second;
    }
    return true;
}

std::vector<int32_t> KVMSPIPropsReader::propertyNumbers(bool customProp) const {
    const EntryMap& map = customProp ? _customPropsMap : _propsMap;
    std::vector<int32_t> numbers;
    numbers.reserve(map.size());
    for (const auto& [number, entry] : map) {
        numbers.push_back(number);
    }
    return numbers;
}

std::optional<KVMSPIPropsReader::Entry> KVMSPIPropsReader::entry(int32_t property, bool customProp) const {
    const EntryMap& map = customProp ? _customPropsMap : _propsMap;
    auto found = map.find(property);
    return found != map.end() ? std::optional<Entry>(found->second) : std::nullopt;
}

const KVMSPIPropsReader::Entry* KVMSPIPropsReader::findEntry(int32_t property, bool customProp) {
    const EntryMap& map = customProp ? _customPropsMap : _propsMap;
    auto found = map.find(property);
    if (found == map.end()) {
        processError();
        return nullptr;
    }
    return &found->second;
}

const KVMSPIPropsReader::Entry* KVMSPIPropsReader::seekToEntry(int32_t property, bool customProp,
                                                               int32_t refusedSize, int64_t delta) {
    const Entry* entry = findEntry(property, customProp);
    if (entry == nullptr) {
        return nullptr;
    }
    if (refusedSize > 0 && entry->size >= refusedSize) {
        processError();
        return nullptr;
    }
    int64_t location = entry->location + delta;
    // A location outside the 32-bit range of seeks fails like a seek behind the stream's end.
    _stream->seekFromStart(location <= std::numeric_limits<int32_t>::max() ? static_cast<int32_t>(location)
                                                                           : -1);
    return entry;
}

template <typename Value, typename Read>
bool KVMSPIPropsReader::readValue(Value& value, int32_t property, bool customProp, int32_t refusedSize,
                                  Read read) {
    if (seekToEntry(property, customProp, refusedSize) == nullptr) {
        return false;
    }
    if (_stream->lastError() == 0) {
        value = read(*_stream);
    }
    return true;
}

bool KVMSPIPropsReader::readPropertyByte(int8_t& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 2, [](SSLStream& s) { return s.readByte(); });
}

bool KVMSPIPropsReader::readPropertyUByte(uint8_t& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 2, [](SSLStream& s) { return s.readUByte(); });
}

bool KVMSPIPropsReader::readPropertyShort(int16_t& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 0, [](SSLStream& s) { return s.readShort(); });
}

bool KVMSPIPropsReader::readPropertyUShort(uint16_t& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 3, [](SSLStream& s) { return s.readUShort(); });
}

bool KVMSPIPropsReader::readPropertyInt(int32_t& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 5, [](SSLStream& s) { return s.readInt(); });
}

bool KVMSPIPropsReader::readPropertyUInt(uint32_t& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 5, [](SSLStream& s) { return s.readUInt(); });
}

bool KVMSPIPropsReader::readPropertyFloat(float& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 5, [](SSLStream& s) { return s.readFloat(); });
}

bool KVMSPIPropsReader::readPropertyDouble(double& value, int32_t property, bool customProp) {
    return readValue(value, property, customProp, 9, [](SSLStream& s) { return s.readDouble(); });
}

bool KVMSPIPropsReader::readPropertyByteArray(void* bytes, uint32_t length, int32_t property,
                                              bool customProp) {
    if (seekToEntry(property, customProp, 0) == nullptr) {
        return false;
    }
    if (_stream->lastError() == 0) {
        _stream->readBytes(length, bytes);
    }
    return true;
}

bool KVMSPIPropsReader::readPropertyTimestamp(std::optional<TVDate>& value, int32_t property,
                                              bool customProp) {
    if (seekToEntry(property, customProp, 0) == nullptr || _stream->lastError() != 0) {
        return false;
    }
    value = _stream->readDateTime();
    return _stream->lastError() == 0;
}

bool KVMSPIPropsReader::readPropertyUTF8(std::string& text, int32_t property, bool customProp) {
    const Entry* entry = seekToEntry(property, customProp, 0);
    if (entry == nullptr || _stream->lastError() != 0) {
        return false;
    }
    auto read = _stream->readBytesIntoString(static_cast<uint32_t>(std::max(entry->size, 0)));
    if (!read) {
        return false;
    }
    text += *read;
    return true;
}

bool KVMSPIPropsReader::readWideString(std::string& text, int32_t property, bool customProp, int64_t delta) {
    const Entry* entry = seekToEntry(property, customProp, 0, delta);
    if (entry == nullptr || _stream->lastError() != 0) {
        return false;
    }
    auto read = _stream->readStringWithLength(static_cast<uint32_t>(std::max(entry->size, 0) / 2));
    if (!read) {
        return false;
    }
    text += *read;
    return true;
}

bool KVMSPIPropsReader::readPropertyUnicode(std::string& text, int32_t property, bool customProp) {
    return readWideString(text, property, customProp, 0);
}

bool KVMSPIPropsReader::readPropertyLPWSTR(std::string& text, int32_t property, bool customProp) {
    return readWideString(text, property, customProp, 4);
}

bool KVMSPIPropsReader::readPropertyLPSTR(std::string& text, int32_t property, bool customProp,
                                          int16_t codepage) {
    const Entry* entry = seekToEntry(property, customProp, 0, 4);
    if (entry == nullptr || _stream->lastError() != 0) {
        return false;
    }
    // The recorded size is no length: read that much, then on up to the string's NUL.
    std::string bytes(static_cast<size_t>(std::max(entry->size, 0)), '\0');
    int32_t read = _stream->readBytes(static_cast<uint32_t>(bytes.size()), bytes.data());
    bytes.resize(static_cast<size_t>(std::max(read, 0)));
    if (bytes.find('\0') == std::string::npos) {
        while (_stream->bytesAvailable() > 0) {
            char c = static_cast<char>(_stream->readUByte());
            bytes.push_back(c);
            if (c == '\0') {
                break;
            }
        }
    }
    // The code page is a 16-bit value: 65001 is stored as a negative number.
    auto decoded = utf8FromCodePage(untilNul(bytes), static_cast<uint16_t>(codepage), InvalidBytes::fail);
    if (!decoded) {
        return false;
    }
    text += filterInvalidXmlCharacters(*decoded);
    return true;
}
