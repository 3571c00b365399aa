#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPVarDataReader;
class KVMSPIMPPDataDirectoryReader;

// Typed reads of one object store's fields by property key: from the fixed item at the key's offset,
// from the second fixed stream's meta item, or from the variable data under the key's property number
// at offset 0. A key the version doesn't have, a missing stream or a failed read answers false and
// leaves `value` alone; the error out-argument then takes the stream reader's error, if it has one.
// Text reads append to `value`.
class MPPObjectFieldReads {
public:
    explicit MPPObjectFieldReads(const KVMSPIMPPDataDirectoryReader& store) : m_store(store) {}

    bool fixedDouble(int32_t key, int32_t uid, double& value, TVError* error) const;
    bool fixedInt(int32_t key, int32_t uid, int32_t& value, TVError* error) const;
    bool fixedShort(int32_t key, int32_t uid, int16_t& value, TVError* error) const;
    bool fixedUShort(int32_t key, int32_t uid, uint16_t& value, TVError* error) const;
    bool fixedTimestamp(int32_t key, int32_t uid, TVDate& value, TVError* error) const;
    bool fixed2MetaUByte(int32_t key, int32_t uid, uint8_t& value, TVError* error) const;
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

private:
    template <typename Value, typename Read>
    bool readFixed(int32_t key, int32_t uid, Value& value, TVError* error, Read read) const;
    template <typename Value, typename Read>
    bool readVar(std::optional<uint32_t> property, int32_t uid, Value& value, TVError* error,
                 Read read) const;

    const KVMSPIMPPDataDirectoryReader& m_store;
};
