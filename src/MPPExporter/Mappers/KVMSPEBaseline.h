#pragma once

#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <map>
#include <string>

// One baseline document of a bundle, a scenario like the actual plan, and the look-ups of its
// objects by the ids they share with the actual plan.
class KVMSPEBaseline {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    explicit KVMSPEBaseline(KVMSPCXMLDocument::DocumentPtr xmlDoc);

    const KVMSPCXMLDocument::DocumentPtr& xmlDoc() const { return _xmlDoc; }
    // The task of that id, or null when the baseline doesn't hold it.
    ElementPtr getTaskById(const std::string& id) const;

private:
    KVMSPCXMLDocument::DocumentPtr _xmlDoc;
    // Built once: a plan of many tasks would otherwise search the document once for every task.
    std::map<std::string, ElementPtr> _tasks;
};
