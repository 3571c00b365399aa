#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPCommon/xml/KVMSPIXQuery.h"

#include <cstdint>
#include <optional>
#include <string>

// The answers of the mappers' path queries with "absent" made one case: a query that reports an error
// and a value that isn't there both give none. Optional values of a plan are read this way.
// Texts come without the characters that XML can't hold, ready for the bundle.
std::optional<std::string> queryString(KVMSPIXQuery& object, const std::string& xquery);
std::optional<int64_t> queryInt(KVMSPIXQuery& object, const std::string& xquery);
std::optional<double> queryFloat(KVMSPIXQuery& object, const std::string& xquery);
std::optional<bool> queryBool(KVMSPIXQuery& object, const std::string& xquery);
// The objects found, or none when the query reports an error.
std::optional<KVMSPIXQuery::Objects> queryObjects(KVMSPIXQuery& object, const std::string& xquery);
// The objects found; empty also when the query reports an error.
KVMSPIXQuery::Objects queryObjectsOrEmpty(KVMSPIXQuery& object, const std::string& xquery);
// Adds an element holding the text under the bundle element when there is a text.
void addTextChild(KVMSPCXMLElement& element, const char* name, const std::optional<std::string>& text);
