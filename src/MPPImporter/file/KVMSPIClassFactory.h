#pragma once

#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"

#include <cstdint>
#include <memory>
#include <string>

class KVMSPIMPPPropertyList;
class SSLStorage;
struct TVError;

// Codes of kTVMSPGeneralErrorDomain with which a file's format is refused.
inline constexpr int kTVMSPUnsupportedApplicationError = 1;
inline constexpr int kTVMSPFormatDowngradeError = 3;

// Picks the property list of a file from its CompObj strings and creates the file's reader, or
// refuses the file.
class KVMSPIClassFactory {
public:
    // The application version (9, 12, 14, 15, 16) of an application name as CompObj spells it
    // exactly ("Microsoft Project 9.0", "Microsoft.Project 14.0"); 0 for any other name.
    static int32_t appVersionFromApplicationName(const std::string& applicationName);

    // The property list of a format string of the families 9, 12 and 14 ("MSProject.MPP14",
    // "MSProject.MPT14", "MSProject.GLOBAL14"); none for any other.
    static const KVMSPIMPPPropertyList* propertyListForFormat(const std::string& fileFormat);

    // A reader for a file in `msProjectFormat` written by `msProjectApp`. Files that applications 15
    // and 16 write in format 14 get their own lists. An unknown format or application is refused with
    // code 1; a format of another version than its application with code 3, unless
    // `acceptDowngradedMPP`: then the format's list reads it with the application's version.
    // The list that a file's task store reads through. Application 14 saves some format 9 and 12 files
    // with task items of its own layout, 206 bytes where the format's items hold 240 or more; the size
    // of the summary task's item tells them. Every other task store reads through the file's list.
    static const KVMSPIMPPPropertyList& taskLayout(const KVMSPIMPPPropertyList& fileList, int32_t appVersion,
                                                   int32_t summaryTaskItemSize);

    static std::unique_ptr<KVMSPIMPPReader>
    createReaderWithMSProjectFormat(const std::string& msProjectFormat, const std::string& msProjectApp,
                                    std::unique_ptr<SSLStorage> rootStorage, bool acceptDowngradedMPP,
                                    TVError* error,
                                    const KVMSPIMPPReader::ProjectReaderFactory& projectReaderFactory = {});
};
