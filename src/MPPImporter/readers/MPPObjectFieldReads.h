#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/format/MPPFieldCatalog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class KVMPPDataReader;
class KVMPPVarDataReader;
class KVMSPIMPPDataDirectoryReader;

// Typed reads of one object store's fields by their catalogue rows: in the object's fixed item, its meta
// item, its item or meta item in the second fixed stream, or its variable data. Every reader of an object
// store reads through these. A field the layout doesn't hold, a missing stream or a failed read answers
// false and leaves `value` alone; the error out-argument then takes the stream reader's error, if it has
// one. Text reads append to `value`.
class MPPObjectFieldReads {
public:
    explicit MPPObjectFieldReads(const KVMSPIMPPDataDirectoryReader& store) : m_store(store) {}

    // Reads a field, or its copy `number` (1 and up), by its catalogue row for the store's layout and
    // application, which picks the block, the place and the codec. `Value` is bool, an integer type,
    // double, TVDate, std::string (text) or a byte vector (a whole block). A field that the layout
    // doesn't hold answers false, as does a null date. Custom field values are read through the project
    // reader, which follows a value's reference to the outline code store.
    template <typename Value>
    bool read(MPPField field, int32_t uid, Value& value, TVError* error, int32_t number = 0) const;
    // Where the field or its copy lies in the store's layout; none where the layout doesn't hold it.
    std::optional<MPPFieldPlace> place(MPPField field, int32_t number = 0) const;

private:
    template <typename Value>
    bool readCustom(const MPPFieldPlace& place, int32_t uid, Value& value, TVError* error) const;
    template <typename Value>
    bool readExtended(const MPPFieldPlace& place, int32_t uid, Value& value, TVError* error) const;
    // Reads the `size` bytes at `position` of the object's block into `bytes`.
    bool readBytes(MPPFieldBlock block, int32_t uid, int32_t position, std::vector<uint8_t>& bytes) const;
    // The stream reader of a block, or none.
    const KVMPPDataReader* readerOf(MPPFieldBlock block) const;
    template <typename Value, typename Read>
    bool readVar(uint32_t property, int32_t uid, Value& value, TVError* error, Read read) const;
    // The text, appended to `value`, and the whole block, which replaces it, under a property number of
    // the variable data.
    bool readText(uint32_t property, int32_t uid, std::string& value, TVError* error) const;
    bool readBlock(uint32_t property, int32_t uid, std::vector<uint8_t>& value, TVError* error) const;

    const KVMSPIMPPDataDirectoryReader& m_store;
};
