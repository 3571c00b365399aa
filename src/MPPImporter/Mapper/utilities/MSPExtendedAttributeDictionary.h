#pragma once

#include "MPPCommon/xml/KVMSPIXQuery.h"

#include <map>
#include <string>

// The custom fields of a task or resource as a dictionary from field name to text, made from the
// answers of their "ExtendedAttribute" query. A date field's text is the platform's text of its date;
// every other field keeps its value text. Of two fields with the same name the later one stands.
std::map<std::string, std::string>
newDictionaryWithMSPExtendedAttributes(const KVMSPIXQuery::Objects& attributes);
