#include "MPPImporter/readers/MPPObjectFieldReads.h"

#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPFixedDataReader.h"
#include "MPPImporter/file/KVMPPVarDataReader.h"
#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/format/MPPExtendedFieldBlock.h"
#include "MPPImporter/readers/KVMSPIMPPAbsProjectReader.h"

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
std::optional<MPPFieldPlace> MPPObjectFieldReads::place(MPPField field, int32_t number) const {
    return m_store.MPPPropertyList().fieldPlace(field, m_store.appVersion(), number);
}

template <typename Value>
bool MPPObjectFieldReads::read(MPPField field, int32_t uid, Value& value, TVError* error,
                               int32_t number) const {
    const auto place = this->place(field, number);
    if (!place) {
        return false;
    }
    const MPPFieldRow& row = *place->row;
    const auto position = static_cast<int32_t>(place->position);
    if (row.block == MPPFieldBlock::custom) {
        return readCustom(*place, uid, value, error);
    }
    if (row.block == MPPFieldBlock::extended) {
        return readExtended(*place, uid, value, error);
    }
    if constexpr (std::is_same_v<Value, std::string>) {
        tvAssert(row.codec == MPPFieldCodec::text, std::string("The field ") + row.name + " is no text.");
        return readText(place->position, uid, value, error);
    } else if constexpr (std::is_same_v<Value, std::vector<uint8_t>>) {
        tvAssert(row.codec == MPPFieldCodec::bytes, std::string("The field ") + row.name + " is no block.");
        return readBlock(place->position, uid, value, error);
    } else if (row.codec == MPPFieldCodec::number) {
        std::vector<uint8_t> bytes;
        return readBlock(place->position, uid, bytes, error) &&
               assign(decodeMPPField(*place, bytes), value, row);
    } else {
        std::vector<uint8_t> bytes(mppFieldSize(row));
        if (!readBytes(row.block, uid, position, bytes)) {
            return failed(readerOf(row.block), error);
        }
        return assign(decodeMPPField(*place, bytes), value, row);
    }
}

// The project reader decodes custom field values, as only it knows the outline code store.
template <typename Value>
bool MPPObjectFieldReads::readCustom(const MPPFieldPlace& place, int32_t uid, Value& value,
                                     TVError* error) const {
    auto* project = dynamic_cast<KVMSPIMPPAbsProjectReader*>(m_store.parentReader());
    KVMPPVarDataReader* var = m_store.varDataReader();
    if (project == nullptr || var == nullptr) {
        return false;
    }
    const MPPFieldCodec codec = place.row->codec;
    const auto property = static_cast<int32_t>(place.position);
    if constexpr (std::is_same_v<Value, double>) {
        if (codec == MPPFieldCodec::number) {
            return project->customFieldDoubleValue(value, *var, uid, property, nullptr, error);
        }
    } else if constexpr (std::is_same_v<Value, int32_t>) {
        if (codec == MPPFieldCodec::int32) {
            return project->customFieldIntValue(value, *var, uid, property, nullptr, error);
        }
    } else if constexpr (std::is_same_v<Value, TVTimeSpan>) {
        if (codec == MPPFieldCodec::duration) {
            return project->customFieldDurationValue(value, *var, uid, property, nullptr, error);
        }
    } else if constexpr (std::is_same_v<Value, TVDate>) {
        if (codec == MPPFieldCodec::timestamp) {
            return project->customFieldTimestampValue(value, *var, uid, property, nullptr, error);
        }
    } else if constexpr (std::is_same_v<Value, std::string>) {
        if (codec == MPPFieldCodec::text) {
            return project->customFieldUnicodeValue(value, *var, uid, property, nullptr, error);
        }
    }
    tvAssert(false,
             std::string("The custom field ") + place.row->name + " is read into a value of another kind.");
    return false;
}

template <typename Value>
bool MPPObjectFieldReads::readExtended(const MPPFieldPlace& place, int32_t uid, Value& value,
                                       TVError* error) const {
    std::vector<uint8_t> bytes;
    if (!readBlock(place.container, uid, bytes, error)) {
        return false;
    }
    const MPPExtendedFieldBlock block(std::move(bytes));
    const auto entry = block.value(place.position, mppFieldSize(*place.row));
    return entry && assign(decodeMPPField(place, *entry), value, *place.row);
}

template bool MPPObjectFieldReads::read(MPPField, int32_t, bool&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, uint8_t&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, int16_t&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, int32_t&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, int64_t&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, double&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, TVDate&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, std::string&, TVError*, int32_t) const;
template bool MPPObjectFieldReads::read(MPPField, int32_t, std::vector<uint8_t>&, TVError*, int32_t) const;

const KVMPPDataReader* MPPObjectFieldReads::readerOf(MPPFieldBlock block) const {
    switch (block) {
    case MPPFieldBlock::fixed:
    case MPPFieldBlock::fixedMeta:
        return m_store.fixedDataReader();
    case MPPFieldBlock::fixed2:
    case MPPFieldBlock::fixed2Meta:
        return m_store.fixed2DataReader();
    case MPPFieldBlock::var:
    case MPPFieldBlock::custom:
    case MPPFieldBlock::extended:
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
    case MPPFieldBlock::custom:   // read through the project reader
    case MPPFieldBlock::extended: // read from the block of extended fields
        return false;
    }
    KVMPPVarDataReader* var = m_store.varDataReader();
    return var != nullptr && var->readDataByteArray(bytes.data(), size, uid, position, 0);
}

template <typename Value, typename Read>
bool MPPObjectFieldReads::readVar(uint32_t property, int32_t uid, Value& value, TVError* error,
                                  Read read) const {
    KVMPPVarDataReader* reader = m_store.varDataReader();
    Value scratch{};
    if (reader != nullptr && read(*reader, scratch, uid, static_cast<int32_t>(property))) {
        store(value, scratch);
        return true;
    }
    return failed(reader, error);
}

bool MPPObjectFieldReads::readBlock(uint32_t property, int32_t uid, std::vector<uint8_t>& value,
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

bool MPPObjectFieldReads::readText(uint32_t property, int32_t uid, std::string& value, TVError* error) const {
    return readVar(property, uid, value, error,
                   [](KVMPPVarDataReader& reader, std::string& v, int32_t u, int32_t p) {
                       return reader.readDataUnicode(&v, u, p, 0);
                   });
}
