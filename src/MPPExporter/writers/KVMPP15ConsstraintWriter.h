#pragma once

#include "MPPExporter/writers/KVMPPWriter.h"

#include <span>

class KVMPPConstraint;

// Regenerates the storage "TBkndCons", the task links: one record per link of the project in the
// fixed and second fixed stream pairs, by the catalogue's link rows. The variable meta stream, which
// holds nothing for links, is the template's.
class KVMPP15ConsstraintWriter : public KVMPPWriter {
public:
    using KVMPPWriter::KVMPPWriter;

    bool writeDataForProject(const KVMPPProject* project) override;

private:
    void writeFixedData();
    void writeFixedMeta();
    void writeFixed2Data();
    void writeFixed2Meta();
    void writeLinkFixedData(const KVMPPConstraint& link, uint32_t uid);
};
