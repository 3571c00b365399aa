#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPDataReader;
class KVMPPFixedDataReader;
class KVMPPVarDataReader;
class KVMSPIMPPDataDirectoryReader;

// Typed reads of one object store's fields by property key: at the key's offset of the object's fixed
// item, of its meta item, or of its item or meta item in the second fixed stream; or from the variable
// data under the key's property number at offset 0. Every reader of an object store reads through
// these. A key the version doesn't have, a missing stream or a failed read answers false and leaves
// `value` alone; the error out-argument then takes the stream reader's error, if it has one. Text
// reads append to `value`.
class MPPObjectFieldReads {
public:
    explicit MPPObjectFieldReads(const KVMSPIMPPDataDirectoryReader& store) : m_store(store) {}

    // Reads a field by its catalogue row for the store's layout and application, which picks the block, the
    // place and the codec. `Value` is bool, an integer type, double, TVDate, std::string (text) or a byte
    // vector (a whole block). A field that the layout doesn't hold answers false, as does a null date.
    template <typename Value>
    bool read(MPPField field, int32_t uid, Value& value, TVError* error) const;
    // Where the field lies in the store's layout; none where the layout doesn't hold it.
    std::optional<MPPFieldPlace> place(MPPField field) const;

    bool fixedDouble(int32_t key, int32_t uid, double& value, TVError* error) const;
    bool fixedInt(int32_t key, int32_t uid, int32_t& value, TVError* error) const;
    bool fixedShort(int32_t key, int32_t uid, int16_t& value, TVError* error) const;
    bool fixedUShort(int32_t key, int32_t uid, uint16_t& value, TVError* error) const;
    bool fixedUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const;
    bool fixedTimestamp(int32_t key, int32_t uid, TVDate& value, TVError* error) const;
    bool fixedMetaUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const;
    bool fixed2UByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const;
    bool fixed2MetaUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const;
    bool varDouble(int32_t key, int32_t uid, double& value, TVError* error) const;
    bool varInt(int32_t key, int32_t uid, int32_t& value, TVError* error) const;
    bool varTimestamp(int32_t key, int32_t uid, TVDate& value, TVError* error) const;
    bool varUnicode(int32_t key, int32_t uid, std::string& value, TVError* error) const;
    // The whole variable data block, which replaces `value`.
    bool varBytes(int32_t key, int32_t uid, std::vector<uint8_t>& value, TVError* error) const;

    // The same reads of the variable data under a property number that the caller resolved.
    bool propertyInt(std::optional<uint32_t> property, int32_t uid, int32_t& value, TVError* error) const;
    bool propertyAsDouble(std::optional<uint32_t> property, int32_t uid, double& value, TVError* error) const;
    bool propertyTimestamp(std::optional<uint32_t> property, int32_t uid, TVDate& value,
                           TVError* error) const;
    bool propertyUnicode(std::optional<uint32_t> property, int32_t uid, std::string& value,
                         TVError* error) const;
    bool varBlock(std::optional<uint32_t> property, int32_t uid, std::vector<uint8_t>& value,
                  TVError* error) const;

private:
    // Reads the `size` bytes at `position` of the object's block into `bytes`.
    bool readBytes(MPPFieldBlock block, int32_t uid, int32_t position, std::vector<uint8_t>& bytes) const;
    // The stream reader of a block, or none.
    const KVMPPDataReader* readerOf(MPPFieldBlock block) const;
    // `reader` is the store's first or second fixed data reader, or none.
    template <typename Value, typename Read>
    bool readFixed(KVMPPFixedDataReader* reader, int32_t key, int32_t uid, Value& value, TVError* error,
                   Read read) const;
    template <typename Value, typename Read>
    bool readVar(std::optional<uint32_t> property, int32_t uid, Value& value, TVError* error,
                 Read read) const;

    const KVMSPIMPPDataDirectoryReader& m_store;
};
