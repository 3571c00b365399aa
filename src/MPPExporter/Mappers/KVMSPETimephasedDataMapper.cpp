#include "MPPExporter/Mappers/KVMSPETimephasedDataMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPExporter/Mappers/KVMSPEMapper.h"
#include "MPPExporter/Mappers/KVMSPEProjectMapper.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

std::vector<KVMSPETimephasedDataMapper::ElementPtr>
KVMSPETimephasedDataMapper::childTvnxTasksFromTvnxSplitTask(KVMSPCXMLElement& tvnxTask) const {
    std::vector<ElementPtr> pieces;
    if (!tvnxread::singleElement(tvnxTask, tvnx::element::kSplit)) {
        return pieces;
    }
    for (const auto& child : tvnxTask.elementsForName(tvnx::element::kChildTask)) {
        const std::string id = tvnxread::attribute(*child, tvnx::attribute::kIdref).value_or("");
        if (ElementPtr piece = mapper().projectMapper()->taskElement(id)) {
            pieces.push_back(std::move(piece));
        }
    }
    return pieces;
}

std::vector<KVMSPETimephasedDataInfo>
KVMSPETimephasedDataMapper::newTimephasedDataFromSplitedTasks(const std::vector<ElementPtr>& pieces) {
    std::vector<KVMSPETimephasedDataInfo> infos;
    for (const ElementPtr& piece : pieces) {
        const auto number = [&piece](const char* name) { return tvnxread::number(*piece, name, 0.0); };
        KVMSPETimephasedDataInfo info;
        info.startDate = tvnxread::dateForQuery(*piece, tvnx::element::kStartDate);
        info.endDate = tvnxread::dateForQuery(*piece, tvnx::element::kEndDate);
        info.effort = number(tvnx::element::kEffort);
        info.effortDone = number(tvnx::element::kEffortDone);
        info.duration = number(tvnx::element::kDuration);
        info.actualDuration = number(tvnx::element::kActualDuration);
        infos.push_back(info);
    }
    return infos;
}
