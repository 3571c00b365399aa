#include "MPPImporter/Mapper/mapping/KVMSPIHammockTaskMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"

void KVMSPIHammockTaskMapper::addPreHammockTaskWithName(const std::string& taskId) {
    _preHammockTaskID = taskId;
    processHammockLinks();
}

void KVMSPIHammockTaskMapper::addPostHammockTaskWithName(const std::string& taskId) {
    _postHammockTaskID = taskId;
    processHammockLinks();
}

void KVMSPIHammockTaskMapper::addHammockTask(const KVMSPCXMLElement::ElementPtr& hammockTask) {
    _hammockTask = hammockTask;
    processHammockLinks();
}

void KVMSPIHammockTaskMapper::processHammockLinks() {
    using namespace tvnx;
    if (!_preHammockTaskID || !_postHammockTaskID || _hammockTask == nullptr) {
        return;
    }
    _hammockTask->addChildElementWithName(element::kPrerequisiteTask)
        ->setAttributeWithName(attribute::kIdref, *_preHammockTaskID);
    const KVMSPCXMLElement::ElementPtr post =
        _hammockTask->addChildElementWithName(element::kPrerequisiteTask);
    post->setAttributeWithName(attribute::kIdref, *_postHammockTaskID);
    post->setAttributeWithName(attribute::kKind, value::kDependencyStartToFinish);
}
