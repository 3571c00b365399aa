#include "MPPExporter/Mappers/KVMSPEBaseline.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

KVMSPEBaseline::KVMSPEBaseline(KVMSPCXMLDocument::DocumentPtr xmlDoc) : _xmlDoc(std::move(xmlDoc)) {
    if (const auto root = _xmlDoc ? _xmlDoc->rootElement() : nullptr) {
        // A second task of one id is passed over: the first answers, as a search in document order
        // would find it first.
        _tasks = tvnxread::elementsById(*root, tvnx::element::kTask, [](const std::string&) {});
    }
}

KVMSPEBaseline::ElementPtr KVMSPEBaseline::getTaskById(const std::string& id) const {
    const auto found = _tasks.find(id);
    return found == _tasks.end() ? nullptr : found->second;
}
