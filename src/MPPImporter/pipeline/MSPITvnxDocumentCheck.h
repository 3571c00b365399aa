#pragma once

#include "MPPCommon/xml/KVMSPCXMLDocument.h"

// Whether a scenario document has the frame that the application expects: a "scenario" root with one
// namespace and an id, the top resource "r-1" of type "Group" as the first resource, and the top task
// "t-1" of type "group" as the first task.
bool isWellFormedTvnxDoc(const KVMSPCXMLDocument& document);
