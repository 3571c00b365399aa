#pragma once

#include "MPPCommon/xml/KVMSPCXMLDocument.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"

#include <map>
#include <string>
#include <utility>

// One baseline document of a bundle, a scenario like the actual plan, and the look-ups of its
// objects by the ids they share with the actual plan.
class KVMSPEBaseline {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    explicit KVMSPEBaseline(KVMSPCXMLDocument::DocumentPtr xmlDoc);

    const KVMSPCXMLDocument::DocumentPtr& xmlDoc() const { return _xmlDoc; }
    // The task of that id, or null when the baseline doesn't hold it.
    ElementPtr getTaskById(const std::string& id) const;
    // The resource of that id, or null.
    ElementPtr getResourceById(const std::string& id) const;
    // The assignment of the resource to the task, or null.
    ElementPtr getAssignmentByTaskId(const std::string& taskId, const std::string& resourceId) const;

private:
    KVMSPCXMLDocument::DocumentPtr _xmlDoc;
    // Built once: a plan of many tasks would otherwise search the document once for every task,
    // resource and assignment. The first of one id answers, as a search in document order would find it.
    std::map<std::string, ElementPtr> _tasks;
    std::map<std::string, ElementPtr> _resources;
    // By task id and resource id.
    std::map<std::pair<std::string, std::string>, ElementPtr> _assignments;
};
