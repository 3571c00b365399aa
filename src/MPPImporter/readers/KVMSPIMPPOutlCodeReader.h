#pragma once

#include "MPPImporter/file/KVMSPIMPPDataDirectoryReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsOutlCodeReader.h"
#include "MPPImporter/readers/MPPObjectFieldReads.h"

// The outline code values of the "TBkndOutlCode" storage: the value lists behind the custom fields
// that refer to an outline code, read by their catalogue rows by outline code UID.
class KVMSPIMPPOutlCodeReader : public KVMSPIMPPDataDirectoryReader, public KVMSPIMPPAbsOutlCodeReader {
public:
    KVMSPIMPPOutlCodeReader(std::unique_ptr<SSLStorage> directory, std::string name,
                            KVMSPIParentReader* parentReader);
    ~KVMSPIMPPOutlCodeReader() override;

    bool outlcodeIntValue(int32_t uid, int32_t& value, TVError* error = nullptr) override;
    bool outlcodeDoubleValue(int32_t uid, double& value, TVError* error = nullptr) override;
    bool outlcodeTimestampValue(int32_t uid, TVDate& value, TVError* error = nullptr) override;
    bool outlcodeUnicodeValue(int32_t uid, std::string& value, TVError* error = nullptr) override;
    bool outlcodeOutlCodeData(int32_t uid, std::string& value, TVError* error = nullptr) override;

private:
    MPPObjectFieldReads m_reads;
};
