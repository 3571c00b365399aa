#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/shared/MSPCAtomicWrite.h"
#include "MPPCommon/shared/MSPCXMLLoading.h"
#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/storage/SSLStream.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPCommon/support/TVPath.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/pipeline/MSPITvnxDocumentCheck.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"

#include <filesystem>

namespace {

using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;

constexpr const char* kAssertionDescription = "assertion was raised";
// The security property of the summary information, whose bit 0 marks a file that opens only with
// its password.
constexpr int32_t kSecurityProperty = 19;
constexpr int32_t kPasswordProtectedSecurity = 0x1;

void raiseImporterException(const char* reason) {
    throw TVException(kTVMPPImporterException,
                      stringWithFormat("MSPIMPPImporter importFromMppURL:toTvnxBundleURL:%s", reason));
}

// A URL whose path the file system can take: absolute and without NUL, which would cut it short.
bool isFileSystemURL(const TVFileURL& url) {
    return url.path().front() == '/' && url.path().find('\0') == std::string::npos;
}

void checkSourceURL(const TVFileURL& mppURL) {
    if (mppURL.isEmpty()) {
        raiseImporterException(" Source URL not specified.");
    }
    if (!isFileSystemURL(mppURL)) {
        raiseImporterException(" Source must be a file system.");
    }
    const std::string extension = lowercasedPathExtension(mppURL.path());
    if (extension != "mpp" && extension != "mpt") {
        raiseImporterException(" Source must be a MS Project MPP document.");
    }
}

void checkDestinationURL(const TVFileURL& tvnxBundleURL) {
    if (tvnxBundleURL.isEmpty()) {
        raiseImporterException(" Destination URL not specified.");
    }
    if (!isFileSystemURL(tvnxBundleURL)) {
        raiseImporterException(" Destination must be a file system.");
    }
    if (lowercasedPathExtension(tvnxBundleURL.path()) != tvnx::kBundleExtension) {
        raiseImporterException(" Destination must be a Tarvane 2 document bundle (.tvnx directory).");
    }
}

// Whether the file opens only with its password. The application obfuscates the data streams of such
// a file, so that a plan read from them would be garbage; the readers aren't even built on them. A
// password that only guards saving leaves the mark clear and the streams readable.
bool isReadPasswordProtected(SSLRoot& root) {
    const std::unique_ptr<SSLStorage> storage = root.rootStorage();
    std::unique_ptr<SSLStream> stream =
        storage ? storage->childStreamWithName(kSummaryInfoFileName) : nullptr;
    int32_t security = 0;
    return stream != nullptr &&
           KVMSPIPropsReader(std::move(stream)).readPropertyInt(security, kSecurityProperty, false) &&
           (security & kPasswordProtectedSecurity) != 0;
}

// The destination itself when nothing is there, else the first free "<name>-<n>.tvnx" beside it.
TVFileURL freeDestinationURL(const TVFileURL& tvnxBundleURL) {
    const std::string freePath = firstFreeNumberedPath(tvnxBundleURL.path());
    return freePath == tvnxBundleURL.path() ? tvnxBundleURL : TVFileURL(freePath, true);
}

// Copies the template's whole tree to `destination`, which must not exist yet. Links are followed, so
// that no file of the bundle can lead back into the template.
void copyTemplateBundle(const TVFileURL& templateURL, const TVFileURL& destination) {
    std::error_code failure = std::make_error_code(std::errc::file_exists);
    if (!pathExists(destination.path())) {
        failure.clear();
        std::filesystem::copy(templateURL.path(), destination.path(),
                              std::filesystem::copy_options::recursive, failure);
    }
    if (failure) {
        raiseImporterException("Failed to copy TV2 Template bundle to destination directory.");
    }
}

// The scenario that the mapper made, or none. The shape check is advisory: a document that fails it
// is written all the same, with a warning.
DocumentPtr mappedDocument(std::unique_ptr<KVMSPIMapperInterface> mapper) {
    if (mapper == nullptr) {
        return nullptr;
    }
    mapper->map();
    DocumentPtr document = mapper->tvnxXmlDoc();
    if (document != nullptr && !isWellFormedTvnxDoc(*document)) {
        tvLog("    !!! WARNING: The mapped scenario lacks a part of the scenario form.");
    }
    return document;
}

// Pretty printed and written atomically; a failed write is not reported, and the file stays as it was.
void writeDocument(const KVMSPCXMLDocument& document, const TVFileURL& url) {
    writeDataAtomically(url.path(), document.XMLDataWithOptions(kXMLNodePrettyPrint));
}

// "{\n    key = value;\n}" for user data, the empty string for none.
std::string userInfoDescription(const TVException::UserInfo& userInfo) {
    if (userInfo.empty()) {
        return std::string();
    }
    std::string description = "{\n";
    for (const auto& [key, value] : userInfo) {
        description += stringWithFormat("    %s = %s;\n", key.c_str(), value.c_str());
    }
    return description + "}";
}

TVError errorOfException(const TVException& exception) {
    if (exception.name() == kInternalInconsistencyException) {
        // The error names no more than the kind; the log keeps the check that failed.
        tvLog(stringWithFormat("ASSERTION: %s", exception.reason().c_str()));
        return TVError::make(kTVMSPGeneralErrorDomain, kTVMSPExceptionRaisedError, kAssertionDescription);
    }
    tvLog(stringWithFormat("EXCEPTION: %s\n%s\n%s", exception.name().c_str(), exception.reason().c_str(),
                           userInfoDescription(exception.userInfo()).c_str()));
    return TVError{kTVMSPGeneralErrorDomain, kTVMSPExceptionRaisedError, exception.userInfo()};
}

} // namespace

KVMSPIMPPImporter::KVMSPIMPPImporter(const TVInfoDictionary& info, KVMSPIMapperFactory makeMapper)
    : _info(info), _makeMapper(std::move(makeMapper)) {}

KVMSPIMPPImporter::~KVMSPIMPPImporter() = default;

bool KVMSPIMPPImporter::importFromMppURL(const TVFileURL& mppURL, const TVFileURL& tvnxBundleURL,
                                         bool acceptDowngradedMPP, TVError* error) {
    try {
        return importBundle(mppURL, tvnxBundleURL, acceptDowngradedMPP, error);
    } catch (const TVException& exception) {
        setError(error, errorOfException(exception));
    } catch (const std::exception& exception) {
        // Failures of the runtime itself (memory, file system) end the import like any other exception.
        setError(error, errorOfException(TVException("std::exception", exception.what())));
    }
    clearScenarioKeys();
    return false;
}

bool KVMSPIMPPImporter::importBundle(const TVFileURL& mppURL, const TVFileURL& tvnxBundleURL,
                                     bool acceptDowngradedMPP, TVError* error) {
    checkSourceURL(mppURL);
    checkDestinationURL(tvnxBundleURL);
    const TVFileURL bundleURL = freeDestinationURL(tvnxBundleURL);
    tvLog("Importing MS Project document to Tarvane document bundle...");
    tvLog(stringWithFormat("  Input:  '%s'", mppURL.path().c_str()));
    tvLog(stringWithFormat("  Output: '%s'", bundleURL.path().c_str()));

    const TVFileURL* templateURL = _info.urlForKey(kInfoTVNXTemplateUrl);
    tvAssert(templateURL != nullptr, "URL of Template tvnx document not specified.");
    copyTemplateBundle(*templateURL, bundleURL);

    const TVFileURL actualURL = bundleURL.appendingPathComponent(tvnx::kActualFileName, false);
    const TVFileURL tocURL = bundleURL.appendingPathComponent(tvnx::kTOCFileName, false);
    std::string actualNamespaceURI;
    std::string tocNamespaceURI;
    const DocumentPtr templateDoc = newXmlDocFromUrlStripNamespace(actualURL, actualNamespaceURI);
    const DocumentPtr tocDoc = newXmlDocFromUrlStripNamespace(tocURL, tocNamespaceURI);

    tvLog("Step 1: Get version of MS Project input MPP document...");
    std::unique_ptr<KVMSPIMPPVersionReader> versionReader = std::make_unique<KVMSPIMPPVersionReader>(
        mppURL.absoluteString(), KVMSPIMPPProjectReader::projectReaderFactory());
    SSLRoot root(mppURL.path());
    if (root.lastError() != 0) {
        setError(error, TVError::make(kTVMSPGeneralErrorDomain, kTVMSPInvalidMPPFileError,
                                      "MSPIMPPImporter: Couldn't open an invalid MPP file."));
        return false;
    }

    if (isReadPasswordProtected(root)) {
        setError(error, TVError::make(kTVMSPGeneralErrorDomain, kTVMSPPasswordProtectedError,
                                      "PASSWORD PROTECTED: The file opens only with its password, and its "
                                      "data is obfuscated; it can't be imported."));
        return false;
    }

    tvLog("Step 2: Create appropriate MPP Reader for it...");
    TVError readerError;
    const std::unique_ptr<KVMSPIMPPReader> reader =
        versionReader->getMppReader(root, acceptDowngradedMPP, &readerError);
    versionReader.reset();
    if (reader == nullptr) {
        setError(error, readerError);
        return false;
    }

    tvLog("Step 3: Create the mapper...");
    setScenarioKeys(tvnx::kActualBaselineNumber);
    std::unique_ptr<KVMSPIMapperInterface> actualMapper = newMapper(*reader, templateDoc, tocDoc);
    tvLog("Step 4: Map the source MS Project document...");
    const DocumentPtr actualDoc = mappedDocument(std::move(actualMapper));
    clearScenarioKeys();
    if (actualDoc == nullptr) {
        return false;
    }
    tvLog("  Writing out imported Tarvane document bundle ...");
    writeDocument(*actualDoc, actualURL);

    // Every baseline gets its own mapper; one that yields no document is not in the plan.
    for (int baselineNumber = 0; baselineNumber < tvnx::kBaselineCount; ++baselineNumber) {
        setScenarioKeys(baselineNumber);
        const DocumentPtr baselineDoc = mappedDocument(newMapper(*reader, templateDoc, tocDoc));
        clearScenarioKeys();
        if (baselineDoc != nullptr) {
            const std::string name = tvnx::scenarioNameForBaseline(baselineNumber);
            writeDocument(*baselineDoc,
                          bundleURL.appendingPathComponent(tvnx::scenarioFileName(name), false));
        }
    }

    if (!tocNamespaceURI.empty()) {
        tocDoc->rootElement()->addNamespace(KVMSPCXMLNode::namespaceWithName("", tocNamespaceURI));
    }
    writeDocument(*tocDoc, tocURL);
    return true;
}

std::unique_ptr<KVMSPIMapperInterface> KVMSPIMPPImporter::newMapper(KVMSPIMPPReader& reader,
                                                                    const DocumentPtr& templateDoc,
                                                                    const DocumentPtr& tocDoc) const {
    return _makeMapper ? _makeMapper(reader, templateDoc, tocDoc, _info) : nullptr;
}

void KVMSPIMPPImporter::setScenarioKeys(int baselineNumber) {
    if (baselineNumber == tvnx::kActualBaselineNumber) {
        _info.removeValue(kInfoMSPBaselineNumber);
    } else {
        _info.setNumber(kInfoMSPBaselineNumber, baselineNumber);
    }
    _info.setString(kInfoTVNXScenarioName, tvnx::scenarioNameForBaseline(baselineNumber));
}

void KVMSPIMPPImporter::clearScenarioKeys() {
    _info.removeValue(kInfoMSPBaselineNumber);
    _info.removeValue(kInfoTVNXScenarioName);
}
