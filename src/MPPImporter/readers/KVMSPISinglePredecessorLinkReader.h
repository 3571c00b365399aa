#pragma once

#include "MPPImporter/readers/KVMSPISimpleObjectReaderBase.h"

#include <cstdint>
#include <memory>

// One link between two tasks: the dependent task, its predecessor, and the link's type, lag and lag
// format as stored.
class KVMSPISinglePredecessorLinkReader : public KVMSPISimpleObjectReaderBase {
public:
    KVMSPISinglePredecessorLinkReader(int32_t taskUID, int32_t preTaskUID, int16_t relType, int32_t lag,
                                      int16_t lagFormat, KVMSPIMPPDataDirectoryReader& constraintReader)
        : KVMSPISimpleObjectReaderBase(constraintReader), m_taskUID(taskUID), m_preTaskUID(preTaskUID),
          m_relType(relType), m_lag(lag), m_lagFormat(lagFormat) {}

    int32_t taskUID() const { return m_taskUID; }
    int32_t preTaskUID() const { return m_preTaskUID; }
    int16_t relType() const { return m_relType; }
    int32_t lag() const { return m_lag; }
    int16_t lagFormat() const { return m_lagFormat; }
    // The file doesn't mark a lag as a percentage here: always 0.
    uint8_t isPercentage() const { return 0; }

protected:
    std::unique_ptr<KVMSPIXQAdapter> newXQAdapter() override;

private:
    int32_t m_taskUID;
    int32_t m_preTaskUID;
    int16_t m_relType;
    int32_t m_lag;
    int16_t m_lagFormat;
};
