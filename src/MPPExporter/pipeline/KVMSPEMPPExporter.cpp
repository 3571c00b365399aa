#include "MPPExporter/pipeline/KVMSPEMPPExporter.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/shared/MSPCXMLLoading.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVPath.h"
#include "MPPExporter/MPPObjects/KVMPPProject.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/writers/KVMPP15ProjectWriter.h"

#include <vector>

namespace {

using DocumentPtr = KVMSPCXMLDocument::DocumentPtr;

constexpr const char* kLogPrefix = "exportTvnxBundle:toMppURL:withMppTemplate: ";

bool check(bool condition, const char* failure) {
    if (!condition) {
        tvLog(std::string(kLogPrefix) + failure);
    }
    return condition;
}

DocumentPtr loadDocument(const TVFileURL& url) {
    std::string namespaceURI;
    return newXmlDocFromUrlStripNamespace(url, namespaceURI);
}

std::string userInfoDescription(const TVException::UserInfo& userInfo) {
    std::string description;
    for (const auto& [key, value] : userInfo) {
        description += stringWithFormat("%s = %s;\n", key.c_str(), value.c_str());
    }
    return description;
}

// The table of contents' choice of documents: the scenario being edited, and every other scenario in
// the order of the table as a baseline.
struct BundleDocuments {
    DocumentPtr tableOfContents;
    DocumentPtr editing;
    std::vector<DocumentPtr> baselines;
};

BundleDocuments loadBundle(const TVFileURL& bundleURL) {
    BundleDocuments documents;
    documents.tableOfContents = loadDocument(bundleURL.appendingPathComponent(tvnx::kTOCFileName, false));
    const auto root = documents.tableOfContents->rootElement();
    const auto project = root ? std::dynamic_pointer_cast<KVMSPCXMLElement>(
                                    root->singleObjectForXQuery(tvnx::element::kProject, nullptr))
                              : nullptr;
    if (!project) {
        throw TVException(kMSPEMPPExporterException,
                          "MSPEMPPExporter.exportTVNXBundle: No 'project' element found in source document.");
    }
    // Windows stand beside the project, under the root of the table of contents.
    const auto windows = root->elementsForName(tvnx::element::kWindow);
    if (windows.empty()) {
        throw TVException(kMSPEMPPExporterException,
                          "MSPEMPPExporter.exportTVNXBundle: No window elements found in source document.");
    }
    const std::string editingId =
        windows.front()->stringValueForXQuery(tvnx::element::kEditingScenario, nullptr).value_or("");
    for (const auto& scenario : project->elementsForName(tvnx::element::kScenario)) {
        const auto attribute = [&scenario](const char* name) {
            const auto node = scenario->attributeForName(name);
            return node ? node->stringValue().value_or("") : "";
        };
        DocumentPtr document =
            loadDocument(bundleURL.appendingPathComponent(attribute(tvnx::attribute::kFilename), false));
        if (!documents.editing && attribute(tvnx::attribute::kId) == editingId) {
            documents.editing = std::move(document);
        } else {
            documents.baselines.push_back(std::move(document));
        }
    }
    return documents;
}

} // namespace

KVMSPEMPPExporter::KVMSPEMPPExporter(const TVInfoDictionary& info) : _info(info) {}

KVMSPEMPPExporter::~KVMSPEMPPExporter() = default;

bool KVMSPEMPPExporter::verifyInputUrl(const TVFileURL& bundleURL, const TVFileURL& mppURL,
                                       const TVFileURL& templateURL) {
    return check(!bundleURL.isEmpty(), "Source URL not specified.") &&
           check(lowercasedPathExtension(bundleURL.lastPathComponent()) == tvnx::kBundleExtension,
                 "Source must be a Tarvane 2 document bundle (.tvnx directory).") &&
           check(!mppURL.isEmpty(), "Destination URL not specified.") &&
           check(lowercasedPathExtension(mppURL.lastPathComponent()) == "mpp",
                 "Destination must be a MS Project MPP document.") &&
           check(!templateURL.isEmpty(), "Template URL not specified.") &&
           check(lowercasedPathExtension(templateURL.lastPathComponent()) == "mpp",
                 "Template must be a MS Project MPP document.");
}

bool KVMSPEMPPExporter::exportTvnxBundle(const TVFileURL& bundleURL, const TVFileURL& mppURL,
                                         const TVFileURL& templateURL) {
    if (!verifyInputUrl(bundleURL, mppURL, templateURL)) {
        return false;
    }
    // An existing file is never overwritten here: the front end deletes it first when asked to.
    const TVFileURL outputURL(firstFreeNumberedPath(mppURL.path()), false);
    tvLog("MSPEXMLExporter: Exporting Tarvane document bundle to MPP file...");
    tvLog(stringWithFormat("Input:  '%s'", bundleURL.path().c_str()));
    tvLog(stringWithFormat("Output: '%s'", outputURL.path().c_str()));
    bool succeeded = false;
    try {
        TVInfoDictionary info = _info;
        info.setURL(kInfoMPPTemplateUrl, templateURL);
        const std::shared_ptr<KVMPPProject> project = newProjectFromBundle(bundleURL, info);
        succeeded = project && writeProject(*project, outputURL, templateURL);
    } catch (const TVException& exception) {
        tvLog(stringWithFormat("EXCEPTION: %s\n%s\n%s", exception.name().c_str(), exception.reason().c_str(),
                               userInfoDescription(exception.userInfo()).c_str()));
    }
    tvLog(stringWithFormat("MSPEMPPExporter: Finished with success=%s", succeeded ? "YES" : "NO"));
    return succeeded;
}

std::shared_ptr<KVMPPProject> KVMSPEMPPExporter::newProjectFromBundle(const TVFileURL& bundleURL,
                                                                      const TVInfoDictionary& info) {
    BundleDocuments documents = loadBundle(bundleURL);
    tvLog("Mapping Tarvane document ...");
    KVMSPEMapper mapper(std::move(documents.editing), std::move(documents.tableOfContents),
                        std::move(documents.baselines), info);
    mapper.map();
    return mapper.mppProject();
}

bool KVMSPEMPPExporter::writeProject(KVMPPProject& project, const TVFileURL& mppURL,
                                     const TVFileURL& templateURL) {
    return KVMPP15ProjectWriter::writeProject(project, mppURL.path(), templateURL.path());
}
