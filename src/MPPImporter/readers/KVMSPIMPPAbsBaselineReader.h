#pragma once

#include <cstdint>

// The copy of one baseline that a task, resource or assignment holds.
class KVMSPIMPPAbsBaselineReader {
public:
    virtual ~KVMSPIMPPAbsBaselineReader() = default;

    // 0 to 10.
    virtual int32_t baselineNumber() const = 0;
    // Whether the object holds any value in this baseline.
    virtual bool hasBaselineData() const = 0;
};
