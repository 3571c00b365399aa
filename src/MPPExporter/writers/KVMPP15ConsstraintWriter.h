#pragma once

#include "MPPExporter/writers/MPPObjectStorageWriter.h"

#include <span>

class KVMPPConstraint;

// Regenerates the storage "TBkndCons", the task links: one record per link of the project in the
// fixed and second fixed stream pairs, by the catalogue's link rows. The variable meta stream, which
// holds nothing for links, is the template's.
class KVMPP15ConsstraintWriter : public MPPObjectStorageWriter {
public:
    using MPPObjectStorageWriter::MPPObjectStorageWriter;

private:
    const MPPObjectStorageLayout& storageLayout() const override;
    void writeFixedDataRecords() override;
    void writeFixedMetaEntries() override;
    void writeFixed2DataRecords() override;
    void writeFixed2MetaEntries() override;
    void writeLinkFixedData(const KVMPPConstraint& link, uint32_t uid);
};
