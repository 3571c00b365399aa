#pragma once

#include "MPPImporter/readers/KVMSPIMPPAbsBaselineReader.h"
#include "MPPImporter/readers/KVMSPISingleObjectReaderBase.h"

// One assignment's copy of one baseline. Assignment baselines aren't read from the file, so it never
// holds data.
class KVMSPISingleAssignmentBaselineReader : public KVMSPISingleObjectReaderBase,
                                             public KVMSPIMPPAbsBaselineReader {
public:
    // A number outside 0 to 10 is an assertion failure.
    KVMSPISingleAssignmentBaselineReader(int32_t uid, int32_t baselineNumber,
                                         KVMSPIMPPDataDirectoryReader& reader);

    int32_t baselineNumber() const override { return m_baselineNumber; }
    bool hasBaselineData() const override { return false; }

private:
    int32_t m_baselineNumber;
};
