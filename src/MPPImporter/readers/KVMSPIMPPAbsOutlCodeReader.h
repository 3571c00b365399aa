#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/support/TVError.h"

#include <cstdint>
#include <string>

// What the custom field operations of the project reader ask of the outline code values: each reads
// the value of one outline code, by its UID. False when the version has no such property or the read
// fails; text operations append to `value`.
class KVMSPIMPPAbsOutlCodeReader {
public:
    virtual ~KVMSPIMPPAbsOutlCodeReader() = default;

    virtual bool outlcodeIntValue(int32_t uid, int32_t& value, TVError* error = nullptr) = 0;
    virtual bool outlcodeDoubleValue(int32_t uid, double& value, TVError* error = nullptr) = 0;
    virtual bool outlcodeTimestampValue(int32_t uid, TVDate& value, TVError* error = nullptr) = 0;
    virtual bool outlcodeUnicodeValue(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
    virtual bool outlcodeOutlCodeData(int32_t uid, std::string& value, TVError* error = nullptr) = 0;
};
