#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"

#include <type_traits>

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

// Hands a decoded value on to a destination of its kind; false for a null date, and an assertion for
// a destination of another kind, which is a fault of the calling reader.
template <typename Value>
bool assign(const MPPFieldValue& decoded, Value& value, const MPPFieldRow& row) {
    if constexpr (std::is_same_v<Value, bool>) {
        if (const bool* flag = std::get_if<bool>(&decoded)) {
            value = *flag;
            return true;
        }
    } else if constexpr (std::is_integral_v<Value>) {
        if (const int64_t* number = std::get_if<int64_t>(&decoded)) {
            value = static_cast<Value>(*number);
            return true;
        }
    } else if constexpr (std::is_same_v<Value, double>) {
        if (const double* number = std::get_if<double>(&decoded)) {
            value = *number;
            return true;
        }
    } else if constexpr (std::is_same_v<Value, TVDate>) {
        if (const auto* date = std::get_if<std::optional<TVDate>>(&decoded)) {
            if (*date) {
                value = **date;
            }
            return date->has_value();
        }
    }
    tvAssert(false, std::string("The field ") + row.name + " is read into a value of another kind.");
    return false;
}

} // namespace

// The store's property list knows where the keys of its layout lie, also for layouts that mix those of
// the key tables.
std::optional<MPPFieldPlace> MPPObjectFieldReads::place(MPPField field) const {
    return m_store.MPPPropertyList().fieldPlace(field, m_store.appVersion());
}

template <typename Value>
bool MPPObjectFieldReads::read(MPPField field, int32_t uid, Value& value, TVError* error) const {
    const auto place = this->place(field);
    if (!place) {
        return false;
    }
    const MPPFieldRow& row = *place->row;
    const auto position = static_cast<int32_t>(place->position);
    if constexpr (std::is_same_v<Value, std::string>) {
        tvAssert(row.codec == MPPFieldCodec::text, std::string("The field ") + row.name + " is no text.");
        return propertyUnicode(place->position, uid, value, error);
    } else if constexpr (std::is_same_v<Value, std::vector<uint8_t>>) {
        tvAssert(row.codec == MPPFieldCodec::bytes, std::string("The field ") + row.name + " is no block.");
        return varBlock(place->position, uid, value, error);
    } else {
        std::vector<uint8_t> bytes(mppFieldSize(row));
        if (!readBytes(row.block, uid, position, bytes)) {
            return failed(readerOf(row.block), error);
        }
        return assign(decodeMPPField(*place, bytes), value, row);
    }
}

template bool MPPObjectFieldReads::read(MPPField, int32_t, bool&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, uint8_t&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, int16_t&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, int32_t&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, int64_t&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, double&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, TVDate&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, std::string&, TVError*) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, std::vector<uint8_t>&, TVError*) const;

const KVMPPDataReader* MPPObjectFieldReads::readerOf(MPPFieldBlock block) const {
    switch (block) {
    case MPPFieldBlock::fixed:
    case MPPFieldBlock::fixedMeta:
        return m_store.fixedDataReader();
    case MPPFieldBlock::fixed2:
    case MPPFieldBlock::fixed2Meta:
        return m_store.fixed2DataReader();
    case MPPFieldBlock::var:
        break;
    case MPPFieldBlock::props: // the project's, no object store's
        return nullptr;
    }
    return m_store.varDataReader();
}

bool MPPObjectFieldReads::readBytes(MPPFieldBlock block, int32_t uid, int32_t position,
                                    std::vector<uint8_t>& bytes) const {
    const auto size = static_cast<int32_t>(bytes.size());
    KVMPPFixedDataReader* fixed = block == MPPFieldBlock::fixed2 || block == MPPFieldBlock::fixed2Meta
                                      ? m_store.fixed2DataReader()
                                      : m_store.fixedDataReader();
    switch (block) {
    case MPPFieldBlock::fixed:
    case MPPFieldBlock::fixed2:
        return fixed != nullptr && fixed->readDataByteArray(bytes.data(), size, uid, position);
    case MPPFieldBlock::fixedMeta:
    case MPPFieldBlock::fixed2Meta:
        return fixed != nullptr && fixed->readMetaByteArray(bytes.data(), size, uid, position);
    case MPPFieldBlock::var:
        break;
    case MPPFieldBlock::props:
        return false;
    }
    KVMPPVarDataReader* var = m_store.varDataReader();
    return var != nullptr && var->readDataByteArray(bytes.data(), size, uid, position, 0);
}

template <typename Value, typename Read>
bool MPPObjectFieldReads::readFixed(KVMPPFixedDataReader* reader, int32_t key, int32_t uid, Value& value,
                                    TVError* error, Read read) const {
    const auto offset = m_store.MPPPropertyList().propertyOffset(key);
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
    return varBlock(m_store.MPPPropertyList().propertyID(key), uid, value, error);
}

bool MPPObjectFieldReads::varBlock(std::optional<uint32_t> property, int32_t uid, std::vector<uint8_t>& value,
                                   TVError* error) const {
    return readVar(property, uid, value, error,
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
