#include "MPPImporter/readers/KVMSPIMPPOutlCodeReader.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/format/MPPLinkPropertyKeys.h"

KVMSPIMPPOutlCodeReader::KVMSPIMPPOutlCodeReader(std::unique_ptr<SSLStorage> directory, std::string name,
                                                 KVMSPIParentReader* parentReader)
    : KVMSPIMPPDataDirectoryReader(std::move(directory), std::move(name), parentReader), m_reads(*this),
      m_propValueListValue(MPPPropertyList().propertyID(kOutlCodeValueListValueKey)),
      m_propValueListDescription(MPPPropertyList().propertyID(kOutlCodeValueListDescriptionKey)),
      m_propValueListUnknown(MPPPropertyList().propertyID(kOutlCodeValueListUnknownKey)),
      m_propOutlineCodeData(MPPPropertyList().propertyID(kOutlCodeDataKey)) {}

KVMSPIMPPOutlCodeReader::~KVMSPIMPPOutlCodeReader() = default;

bool KVMSPIMPPOutlCodeReader::outlcodeIntValue(int32_t uid, int32_t& value, TVError* error) {
    return m_reads.propertyInt(m_propValueListValue, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeDoubleValue(int32_t uid, double& value, TVError* error) {
    return m_reads.propertyAsDouble(m_propValueListValue, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeTimestampValue(int32_t uid, TVDate& value, TVError* error) {
    return m_reads.propertyTimestamp(m_propValueListValue, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeUnicodeValue(int32_t uid, std::string& value, TVError* error) {
    return m_reads.propertyUnicode(m_propValueListValue, uid, value, error);
}

bool KVMSPIMPPOutlCodeReader::outlcodeOutlCodeData(int32_t uid, std::string& value, TVError* error) {
    return m_reads.propertyUnicode(m_propOutlineCodeData, uid, value, error);
}
