#include "MPPImporter/readers/KVMSPIMPPOutlCodeReader.h"

#include "MPPCommon/storage/SSLStorage.h"

KVMSPIMPPOutlCodeReader::KVMSPIMPPOutlCodeReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                 KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader), m_reads(*this) {}

KVMSPIMPPOutlCodeReader::~KVMSPIMPPOutlCodeReader() = default;

bool KVMSPIMPPOutlCodeReader::outlcodeIntValue(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.read(MPPField::outlineCodeValueInteger, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeDoubleValue(int32_t uid, double& value, TVError* error) {
    return m_reads.read(MPPField::outlineCodeValueNumber, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeTimestampValue(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.read(MPPField::outlineCodeValueDate, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeUnicodeValue(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::outlineCodeValueText, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeOutlCodeData(int32_t uid, std::string& value, TVError* error) {
    return m_reads.read(MPPField::outlineCodeData, uid, value, error);
}
