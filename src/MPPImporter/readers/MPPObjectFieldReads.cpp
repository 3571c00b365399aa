#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

namespace {

// Hands a value on from the scratch variable it was read into: a refused fixed read may still write to
// its destination, which must then stay untouched. Text is appended.
template <typename Value>
void store(Value& destination, Value& read) {
    destination = std::move(read);
}

void store(std::string& destination, std::string& read) {
    destination += read;
}

// The byte reads of a data item and of a meta item, of either fixed stream.
bool readDataUByte(KVMPPFixedDataReader& reader, uint8_t& value, int32_t uid, int32_t offset) {
    return reader.readDataUByte(value, uid, offset);
}

bool readMetaUByte(KVMPPFixedDataReader& reader, uint8_t& value, int32_t uid, int32_t offset) {
    return reader.readMetaUByte(value, uid, offset);
}

// False, after handing on the stream reader's error.
bool failed(const KVMPPDataReader* reader, TVError* error) {
    if (reader != nullptr && reader->error()) {
        setError(error, *reader->error());
    }
    return false;
}

} // namespace

template <typename Value, typename Read>
bool MPPObjectFieldReads::readFixed(KVMPPFixedDataReader* reader, int32_t key, int32_t uid, Value& value,
                                    TVError* error, Read read) const {
    const auto offset = m_store.MPPPropertyList().propertyOffsetForAppVersion(key, m_store.appVersion());
    Value scratch{};
    if (reader != nullptr && offset && read(*reader, scratch, uid, static_cast<int32_t>(*offset))) {
        store(value, scratch);
        return true;
    }
    return failed(reader, error);
}

template <typename Value, typename Read>
bool MPPObjectFieldReads::readVar(std::optional<uint32_t> property, int32_t uid, Value& value, TVError* error,
                                  Read read) const {
    KVMPPVarDataReader* reader = m_store.varDataReader();
    Value scratch{};
    if (reader != nullptr && property && read(*reader, scratch, uid, static_cast<int32_t>(*property))) {
        store(value, scratch);
        return true;
    }
    return failed(reader, error);
}

bool MPPObjectFieldReads::fixedDouble(int32_t key, int32_t uid, double& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error,
                     [](KVMPPFixedDataReader& reader, double& v, int32_t u, int32_t o) {
                         return reader.readDataDouble(v, u, o);
                     });
}

bool MPPObjectFieldReads::fixedInt(int32_t key, int32_t uid, int32_t& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error,
                     [](KVMPPFixedDataReader& reader, int32_t& v, int32_t u, int32_t o) {
                         return reader.readDataInt(v, u, o);
                     });
}

bool MPPObjectFieldReads::fixedShort(int32_t key, int32_t uid, int16_t& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error,
                     [](KVMPPFixedDataReader& reader, int16_t& v, int32_t u, int32_t o) {
                         return reader.readDataShort(v, u, o);
                     });
}

bool MPPObjectFieldReads::fixedUShort(int32_t key, int32_t uid, uint16_t& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error,
                     [](KVMPPFixedDataReader& reader, uint16_t& v, int32_t u, int32_t o) {
                         return reader.readDataUShort(v, u, o);
                     });
}

bool MPPObjectFieldReads::fixedTimestamp(int32_t key, int32_t uid, TVDate& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error,
                     [](KVMPPFixedDataReader& reader, TVDate& v, int32_t u, int32_t o) {
                         return reader.readDataTimestamp(v, u, o);
                     });
}

bool MPPObjectFieldReads::fixedUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error, readDataUByte);
}

bool MPPObjectFieldReads::fixedMetaUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const {
    return readFixed(m_store.fixedDataReader(), key, uid, value, error, readMetaUByte);
}

bool MPPObjectFieldReads::fixed2UByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const {
    return readFixed(m_store.fixed2DataReader(), key, uid, value, error, readDataUByte);
}

bool MPPObjectFieldReads::fixed2MetaUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const {
    return readFixed(m_store.fixed2DataReader(), key, uid, value, error, readMetaUByte);
}

bool MPPObjectFieldReads::varDouble(int32_t key, int32_t uid, double& value, TVError* error) const {
    return readVar(m_store.MPPPropertyList().propertyID(key), uid, value, error,
                   [](KVMPPVarDataReader& reader, double& v, int32_t u, int32_t p) {
                       return reader.readDataDouble(v, u, p, 0);
                   });
}

bool MPPObjectFieldReads::varInt(int32_t key, int32_t uid, int32_t& value, TVError* error) const {
    return propertyInt(m_store.MPPPropertyList().propertyID(key), uid, value, error);
}

bool MPPObjectFieldReads::varTimestamp(int32_t key, int32_t uid, TVDate& value, TVError* error) const {
    return propertyTimestamp(m_store.MPPPropertyList().propertyID(key), uid, value, error);
}

bool MPPObjectFieldReads::varUnicode(int32_t key, int32_t uid, std::string& value, TVError* error) const {
    return propertyUnicode(m_store.MPPPropertyList().propertyID(key), uid, value, error);
}

bool MPPObjectFieldReads::varBytes(int32_t key, int32_t uid, std::vector<uint8_t>& value,
                                   TVError* error) const {
    return readVar(m_store.MPPPropertyList().propertyID(key), uid, value, error,
                   [](KVMPPVarDataReader& reader, std::vector<uint8_t>& bytes, int32_t u, int32_t p) {
                       int32_t size = 0;
                       if (!reader.getDataSize(size, u, p) || size < 0) {
                           return false;
                       }
                       bytes.resize(static_cast<size_t>(size));
                       return size == 0 || reader.readDataByteArray(bytes.data(), size, u, p, 0);
                   });
}

bool MPPObjectFieldReads::propertyInt(std::optional<uint32_t> property, int32_t uid, int32_t& value,
                                      TVError* error) const {
    return readVar(property, uid, value, error,
                   [](KVMPPVarDataReader& reader, int32_t& v, int32_t u, int32_t p) {
                       return reader.readDataInt(v, u, p, 0);
                   });
}

bool MPPObjectFieldReads::propertyAsDouble(std::optional<uint32_t> property, int32_t uid, double& value,
                                           TVError* error) const {
    return readVar(property, uid, value, error,
                   [](KVMPPVarDataReader& reader, double& v, int32_t u, int32_t p) {
                       return reader.readDataAsDouble(v, u, p, 0);
                   });
}

bool MPPObjectFieldReads::propertyTimestamp(std::optional<uint32_t> property, int32_t uid, TVDate& value,
                                            TVError* error) const {
    return readVar(property, uid, value, error,
                   [](KVMPPVarDataReader& reader, TVDate& v, int32_t u, int32_t p) {
                       return reader.readDataTimestamp(v, u, p, 0);
                   });
}

bool MPPObjectFieldReads::propertyUnicode(std::optional<uint32_t> property, int32_t uid, std::string& value,
                                          TVError* error) const {
    return readVar(property, uid, value, error,
                   [](KVMPPVarDataReader& reader, std::string& v, int32_t u, int32_t p) {
                       return reader.readDataUnicode(&v, u, p, 0);
                   });
}
