#pragma once

#include "MPPCommon/support/TVFileURL.h"
#include "MPPCommon/xml/KVMSPCXMLDocument.h"

#include <string>

// Name of the exception that a bundle document raises when it can't be loaded.
inline constexpr const char* kMSPEXMLException = "MSPEXMLException";

// The document in the file at `url`, owned by the caller. A file that is missing or doesn't parse
// raises kMSPEXMLException; the parser's own error is dropped.
KVMSPCXMLDocument::DocumentPtr newXmlDocFromUrl(const TVFileURL& url);

// Like newXmlDocFromUrl, with the default namespace declaration of the root taken off so that paths
// without prefix match. `defaultNamespaceURI` receives the URI it declared, or the empty string.
KVMSPCXMLDocument::DocumentPtr newXmlDocFromUrlStripNamespace(const TVFileURL& url,
                                                              std::string& defaultNamespaceURI);
