#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/readers/KVMSPISingleBaselineReaderBase.h"

#include <cstdint>

// One assignment's copy of one baseline, read at creation and kept in the file's units: work in
// thousandths of a minute, cost in hundredths. Baseline 0 has fields of its own; baselines 1 to 10 are
// custom field values of the variable data.
class KVMSPISingleAssignmentBaselineReader : public KVMSPISingleBaselineReaderBase {
public:
    // A number outside 0 to 10 is an assertion failure.
    KVMSPISingleAssignmentBaselineReader(int32_t uid, int32_t baselineNumber,
                                         KVMSPIMPPDataDirectoryReader& reader);

    // Whether the baseline holds the assignment's dates, or work or cost that isn't 0: the application
    // saves the dates with every baseline of an assignment and leaves them null, with zeros, where it
    // saved none; a baseline without dates but with work is one the export wrote.
    bool hasBaselineData() const override {
        return m_hasStart || m_hasFinish || (m_hasWork && m_work != 0) || (m_hasCost && m_cost != 0);
    }

    bool hasStart() const { return m_hasStart; }
    TVDate start() const { return m_start; }
    bool hasFinish() const { return m_hasFinish; }
    TVDate finish() const { return m_finish; }
    bool hasWork() const { return m_hasWork; }
    double work() const { return m_work; }
    bool hasCost() const { return m_hasCost; }
    double cost() const { return m_cost; }

private:
    bool m_hasStart = false;
    TVDate m_start;
    bool m_hasFinish = false;
    TVDate m_finish;
    bool m_hasWork = false;
    double m_work = 0;
    bool m_hasCost = false;
    double m_cost = 0;
};
