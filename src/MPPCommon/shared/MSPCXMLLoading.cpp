#include "MPPCommon/shared/MSPCXMLLoading.h"

#include "MPPCommon/support/TVException.h"

namespace {

KVMSPCXMLDocument::DocumentPtr requireDocument(KVMSPCXMLDocument::DocumentPtr document, const char* reason) {
    if (document == nullptr) {
        throw TVException(kMSPEXMLException, reason);
    }
    return document;
}

} // namespace

KVMSPCXMLDocument::DocumentPtr newXmlDocFromUrl(const TVFileURL& url) {
    TVError ignored;
    return requireDocument(KVMSPCXMLDocument::initWithContentsOfURL(url.path(), 0, &ignored),
                           "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.");
}

KVMSPCXMLDocument::DocumentPtr newXmlDocFromUrlStripNamespace(const TVFileURL& url,
                                                              std::string& defaultNamespaceURI) {
    TVError ignored;
    std::optional<std::string> xmlns;
    KVMSPCXMLDocument::DocumentPtr document = requireDocument(
        KVMSPCXMLDocument::initWithContentsOfURL(url.path(), 0, &xmlns, &ignored),
        "MSPEXMLExporter.newXmlDocFromUrlStripNamespace: Failed to build XML DOM from source data.");
    defaultNamespaceURI = xmlns.value_or(std::string());
    return document;
}
