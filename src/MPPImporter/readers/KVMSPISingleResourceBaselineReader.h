#pragma once

#include "MPPImporter/readers/KVMSPISingleBaselineReaderBase.h"

#include <cstdint>
#include <string>

class KVMSPIMPPResourceReader;

// One resource's copy of one baseline, read at creation and kept in the file's units: cost as stored,
// work in thousandths of a minute. Baseline 0 has fixed fields of its own; baselines 1 to 10 are
// custom field values of the variable data.
class KVMSPISingleResourceBaselineReader : public KVMSPISingleBaselineReaderBase {
public:
    // A number outside 0 to 10 is an assertion failure.
    KVMSPISingleResourceBaselineReader(int32_t uid, int32_t baselineNumber, KVMSPIMPPResourceReader& reader);

    // Whether the baseline is set for the resource and holds its cost or its work.
    bool hasBaselineData() const override { return m_isSet && (m_hasCost || m_hasWork); }

    bool hasCost() const { return m_hasCost; }
    double resourceCost() const { return m_resourceCost; }
    bool hasWork() const { return m_hasWork; }
    double resourceWork() const { return m_resourceWork; }

    std::string description() const;

private:
    // Whether the resource's baseline is set; format 9 has no marks and counts every baseline as set.
    bool m_isSet = false;
    bool m_hasCost = false;
    double m_resourceCost = 0;
    bool m_hasWork = false;
    double m_resourceWork = 0;
};
