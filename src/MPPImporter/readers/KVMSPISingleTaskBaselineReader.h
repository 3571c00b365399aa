#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPImporter/readers/KVMSPISingleBaselineReaderBase.h"

#include <cstdint>
#include <string>

class KVMSPIMPPTaskReader;

// One task's copy of one baseline, read at creation and kept in the file's units: cost in hundredths
// of the currency unit, duration in tenths of a minute, work in thousandths of a minute. Baseline 0
// shares its work with the actual plan.
class KVMSPISingleTaskBaselineReader : public KVMSPISingleBaselineReaderBase {
public:
    // A number outside 0 to 10 is an assertion failure.
    KVMSPISingleTaskBaselineReader(int32_t uid, int32_t baselineNumber, KVMSPIMPPTaskReader& reader);

    // False when there is neither start nor finish and the duration is 0; otherwise whether any value
    // was read.
    bool hasBaselineData() const override;

    bool hasCost() const { return m_hasCost; }
    double taskCost() const { return m_taskCost; }
    bool hasDuration() const { return m_hasDuration; }
    int32_t taskDuration() const { return m_taskDuration; }
    bool hasFinish() const { return m_hasFinish; }
    TVDate taskFinish() const { return m_taskFinish; }
    bool hasStart() const { return m_hasStart; }
    TVDate taskStart() const { return m_taskStart; }
    bool hasWork() const { return m_hasWork; }
    double taskWork() const { return m_taskWork; }

    std::string description() const;
    void dbgPrint() const;

private:
    bool m_hasCost = false;
    double m_taskCost = 0;
    bool m_hasDuration = false;
    int32_t m_taskDuration = 0;
    bool m_hasFinish = false;
    TVDate m_taskFinish;
    bool m_hasStart = false;
    TVDate m_taskStart;
    bool m_hasWork = false;
    double m_taskWork = 0;
};
