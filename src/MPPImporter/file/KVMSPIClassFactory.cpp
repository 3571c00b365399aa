#include "MPPImporter/file/KVMSPIClassFactory.h"

#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVError.h"
#include "MPPImporter/file/KVMSPIMPP12PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP15PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP16PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9From14PropertyList.h"
#include "MPPImporter/file/KVMSPIMPP9PropertyList.h"
#include "MPPImporter/format/MPPFormatConstants.h"

#include <array>
#include <map>
#include <utility>

int32_t KVMSPIClassFactory::appVersionFromApplicationName(const std::string& applicationName) {
    // Up to 12.0 with a blank after the word Microsoft, from 14.0 on with a full stop.
    static const std::array<std::pair<const char*, int32_t>, 5> kApplications = {{
        {"Microsoft Project 9.0", kMSPDIVersion_2003},
        {"Microsoft Project 12.0", kMSPDIVersion_2007},
        {"Microsoft.Project 14.0", kMSPDIVersion_2010},
        {"Microsoft.Project 15.0", kMSPDIVersion_2013},
        {"Microsoft.Project 16.0", kMSPDIVersion_2016},
    }};
    for (const auto& [name, version] : kApplications) {
        if (applicationName == name) {
            return version;
        }
    }
    return 0;
}

const KVMSPIMPPPropertyList* KVMSPIClassFactory::propertyListForFormat(const std::string& fileFormat) {
    static const std::map<std::string, const KVMSPIMPPPropertyList*> kLists = {
        {"MSProject.MPP9", &KVMSPIMPP9PropertyList::shared()},
        {"MSProject.MPT9", &KVMSPIMPP9PropertyList::shared()},
        {"MSProject.GLOBAL9", &KVMSPIMPP9PropertyList::shared()},
        {"MSProject.MPP12", &KVMSPIMPP12PropertyList::shared()},
        {"MSProject.MPT12", &KVMSPIMPP12PropertyList::shared()},
        {"MSProject.GLOBAL12", &KVMSPIMPP12PropertyList::shared()},
        {"MSProject.MPP14", &KVMSPIMPP14PropertyList::shared()},
        {"MSProject.MPT14", &KVMSPIMPP14PropertyList::shared()},
        {"MSProject.GLOBAL14", &KVMSPIMPP14PropertyList::shared()},
    };
    const auto found = kLists.find(fileFormat);
    return found != kLists.end() ? found->second : nullptr;
}

const KVMSPIMPPPropertyList& KVMSPIClassFactory::taskLayout(const KVMSPIMPPPropertyList& fileList,
                                                            int32_t appVersion, int32_t summaryTaskItemSize) {
    const int32_t format = fileList.mppVersion();
    if (appVersion != kMSPDIVersion_2010 || summaryTaskItemSize >= fileList.taskFixedDataMinItemSize() ||
        summaryTaskItemSize < KVMSPIMPPPropertyList::taskMinExpectedSizeForAppVersion(appVersion)) {
        return fileList;
    }
    if (format == kMSPDIVersion_2003) {
        return KVMSPIMPP9From14PropertyList::shared();
    }
    // Format 12 numbers the variable data as application 14 does.
    return format == kMSPDIVersion_2007 ? KVMSPIMPP14PropertyList::shared() : fileList;
}

std::unique_ptr<KVMSPIMPPReader> KVMSPIClassFactory::createReaderWithMSProjectFormat(
    const std::string& msProjectFormat, const std::string& msProjectApp,
    std::unique_ptr<SSLStorage> rootStorage, bool acceptDowngradedMPP, TVError* error,
    const KVMSPIMPPReader::ProjectReaderFactory& projectReaderFactory) {
    const KVMSPIMPPPropertyList* list = propertyListForFormat(msProjectFormat);
    const int32_t appVersion = appVersionFromApplicationName(msProjectApp);
    if (list == nullptr || appVersion == 0) {
        setError(error, TVError::make(
                            kTVMSPGeneralErrorDomain, kTVMSPUnsupportedApplicationError,
                            stringWithFormat("UNSUPPORTED APPLICATION DETECTED: File was saved by '%s' app.",
                                             msProjectApp.c_str())));
        return nullptr;
    }

    const int32_t formatVersion = list->mppVersion();
    if (formatVersion == kMSPDIVersion_2010 && appVersion == kMSPDIVersion_2013) {
        list = &KVMSPIMPP15PropertyList::shared();
    } else if (formatVersion == kMSPDIVersion_2010 && appVersion == kMSPDIVersion_2016) {
        list = &KVMSPIMPP16PropertyList::shared();
    } else if (appVersion != formatVersion && !acceptDowngradedMPP) {
        setError(error, TVError::make(
                            kTVMSPGeneralErrorDomain, kTVMSPFormatDowngradeError,
                            stringWithFormat("FORMAT DOWNGRADE: File in '%s' format was saved by '%s' app.",
                                             msProjectFormat.c_str(), msProjectApp.c_str())));
        return nullptr;
    }
    return std::make_unique<KVMSPIMPPReader>(std::move(rootStorage), list, appVersion, projectReaderFactory);
}
