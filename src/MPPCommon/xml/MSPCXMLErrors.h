#pragma once

#include "MPPCommon/support/TVError.h"

#include <optional>

// Domain of the errors of the XML layer: code 0 no data, code 1 a document that doesn't parse, and
// libxml2's own error codes for everything that its error hook reports.
inline constexpr const char* kMSPCXMLErrorDomain = "MSPCXMLErrorDomain";
inline constexpr int kMSPCXMLNoDataError = 0;
inline constexpr int kMSPCXMLParseError = 1;

// Sets libxml2 up for this thread once: quiet generic errors, the structured error hook, blank text
// dropped on parsing, and an external entity loader that refuses every request, so that no document
// can make the parser read a file or reach the network. Every entry into libxml2 calls it first.
void mspcxmlInitialize();

// The last error that libxml2 reported on this thread, in the layer's error domain, or none.
std::optional<TVError> lastError();

// Forgets the stored error, so that the next lastError() tells about a later operation only.
void clearLastError();
