#include "MPPImporter/pipeline/MSPIImportNames.h"

#include "MPPCommon/support/TVPath.h"

std::string mspAppNameFromMspVersion(int32_t version) {
    switch (version) {
    case 9:
        return "MS Project 2003";
    case 12:
        return "MS Project 2007";
    case 14:
        return "MS Project 2010";
    default:
        return "MS Project ????";
    }
}

std::string directoryFromFilePath(const TVFileURL& url) {
    const std::string folder = deletingLastPathComponent(url.path());
    return folder.size() > 1 ? folder.substr(1) : std::string();
}
