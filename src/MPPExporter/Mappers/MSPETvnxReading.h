#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

// Small reads of bundle elements that the export mappers share.
namespace tvnxread {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// The text of an attribute, or none.
std::optional<std::string> attribute(const KVMSPCXMLElement& element, const char* name);
// The single element that a query finds (the last of several), or null.
ElementPtr singleElement(KVMSPCXMLElement& element, const std::string& query);
// A date-time of the bundle as an instant: the wall clock of the system zone that it names. None
// for no text.
std::optional<TVDate> date(const std::optional<std::string>& text);
// The text of the date-time element that the query finds, as an instant.
std::optional<TVDate> dateForQuery(KVMSPCXMLElement& element, const std::string& query);

// The number of the element that the query finds, or `fallback` when the query reports an error
// (no such element, more than one, or no number).
double number(KVMSPCXMLElement& element, const std::string& query, double fallback);
// The leading decimal number of a text, 0 when it has none.
double doubleValue(const std::string& text);

// The `task` or `resource` children of a scenario by their `id`, for the walks of the outline and
// the resource tree. `onDuplicate` is called with the id of a second element of one id, so that the
// caller can end the export rather than pass over an element without a word.
std::map<std::string, ElementPtr> elementsById(KVMSPCXMLElement& scenario, const char* name,
                                               const std::function<void(const std::string& id)>& onDuplicate);

} // namespace tvnxread
