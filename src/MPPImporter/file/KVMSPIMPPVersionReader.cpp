#include "MPPImporter/file/KVMSPIMPPVersionReader.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVError.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/file/KVMPPCompObjReader.h"
#include "MPPImporter/file/KVMSPIClassFactory.h"
#include "MPPImporter/format/MPPFormatConstants.h"

KVMSPIMPPVersionReader::KVMSPIMPPVersionReader(std::string mppUrl,
                                               KVMSPIMPPReader::ProjectReaderFactory projectReaderFactory)
    : m_mppUrl(std::move(mppUrl)), m_projectReaderFactory(std::move(projectReaderFactory)) {}

std::unique_ptr<KVMSPIMPPReader> KVMSPIMPPVersionReader::getMppReader(SSLRoot& root, bool acceptDowngradedMPP,
                                                                      TVError* error) const {
    std::unique_ptr<SSLStorage> rootStorage = root.rootStorage();
    tvAssert(root.lastError() == 0 && rootStorage != nullptr,
             stringWithFormat("Error %d getting root storage", root.lastError()));
    tvAssert(rootStorage->childCount() >= 0, "OLE2CDF Root is not a directory.");

    std::unique_ptr<SSLStream> compObjStream = rootStorage->childStreamWithName(kCompObjFileName);
    tvAssert(rootStorage->lastError() == 0 && compObjStream != nullptr,
             stringWithFormat("Error %d getting \001CompObj stream", rootStorage->lastError()));
    const KVMPPCompObjReader compObj(std::move(compObjStream));
    const std::string format = compObj.fileFormat().value_or("(null)");
    const std::string application = compObj.applicationName().value_or("(null)");
    tvLog(stringWithFormat("  Importing MS Project binary document in '%s' format created by '%s' app.",
                           format.c_str(), application.c_str()));

    if (!compObj.fileFormat()) {
        return nullptr;
    }
    TVError localError;
    std::unique_ptr<KVMSPIMPPReader> reader = KVMSPIClassFactory::createReaderWithMSProjectFormat(
        *compObj.fileFormat(), application, std::move(rootStorage), acceptDowngradedMPP, &localError,
        m_projectReaderFactory);
    setError(error, localError);
    return reader;
}
