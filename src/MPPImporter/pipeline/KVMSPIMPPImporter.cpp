#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"

#include "MPPCommon/support/Log.h"

// Until the import pipeline is built in, every import fails as an unreadable plan file does.

namespace {
constexpr const char* kTVMSPGeneralErrorDomain = "TVMSPFilter.GeneralErrorDomain";
constexpr const char* kInvalidMPPFileText = "MSPIMPPImporter: Couldn't open an invalid MPP file.";
} // namespace

KVMSPIMPPImporter::KVMSPIMPPImporter(const TVInfoDictionary& info) : _info(info) {}

KVMSPIMPPImporter::~KVMSPIMPPImporter() = default;

bool KVMSPIMPPImporter::importFromMppURL(const TVFileURL& mppURL, const TVFileURL&, bool, TVError* error) {
    tvLog(stringWithFormat("%s (%s)", kInvalidMPPFileText, mppURL.path().c_str()));
    setError(error, TVError::make(kTVMSPGeneralErrorDomain, 4, kInvalidMPPFileText));
    return false;
}
