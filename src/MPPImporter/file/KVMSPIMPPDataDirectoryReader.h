#pragma once

#include "MPPImporter/file/KVMSPOLE2DirectoryReader.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class KVMPPDataReader;
class KVMPPFixedDataReader;
class KVMPPVarDataReader;
class SSLStream;

// Base of the readers of one object kind's storage ("TBkndTask", "TBkndRsc", "TBkndAssn",
// "TBkndCal", "TBkndCons", "TBkndOutlCode"). It opens the kind's fixed, Fixed2 and variable stream
// pairs as far as the version's stream parameters use them and the storage holds them; a missing or
// unreadable pair simply leaves its reader out. It stands two levels under the file reader.
class KVMSPIMPPDataDirectoryReader : public KVMSPOLE2DirectoryReader {
public:
    // Any storage name other than the six kinds is an assertion failure.
    KVMSPIMPPDataDirectoryReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                 KVMSPIParentReader* parentReader);
    ~KVMSPIMPPDataDirectoryReader() override;

    // The objects' UIDs in the fixed data reader's order; empty without a fixed data reader.
    const std::vector<int32_t>& uniqueIDs() const;
    bool isValidUID(int32_t uid) const;
    // The object's row number, -1 if unknown.
    int64_t objectIDforUniqueID(int32_t uid) const;

    // The UID of one fixed data item, read by the property list's UID reader of this storage's kind;
    // outline codes have none and answer -1. The fixed data reader calls it while it opens.
    int32_t objectUIDFromStream(SSLStream& stream, int32_t metaFirstField, int32_t dataItemOffset,
                                int32_t dataItemSize, int64_t* objectID, bool* isNull,
                                KVMPPDataReader& caller) const;

    // True for the task store, whose fixed items include null tasks.
    bool holdsNullTasks() const { return m_kind == Kind::task; }

    // The property number of this version's list for what the variable data keeps under `stored`: the
    // same, but where the application that saved the file numbers this kind's data otherwise.
    int32_t listPropertyOfStored(int32_t stored) const;

    // The name that the user gave the task or resource custom field of this version's property
    // number, from the storage's "Props" stream (format 9: the data directory's); none for a field
    // without one.
    const std::string* fieldAlias(int32_t property) const;

    KVMPPFixedDataReader* fixedDataReader() const { return m_fixedDataReader.get(); }
    KVMPPFixedDataReader* fixed2DataReader() const { return m_fixed2DataReader.get(); }
    KVMPPVarDataReader* varDataReader() const { return m_varDataReader.get(); }

private:
    enum class Kind { assignment, calendar, constraint, outlineCode, resource, task };

    std::unique_ptr<KVMPPFixedDataReader> m_fixedDataReader;
    std::unique_ptr<KVMPPFixedDataReader> m_fixed2DataReader;
    std::unique_ptr<KVMPPVarDataReader> m_varDataReader;
    Kind m_kind;
    std::map<int32_t, std::string> m_fieldAliases;

    void readFieldAliases();
    void readFieldNameList();
};
