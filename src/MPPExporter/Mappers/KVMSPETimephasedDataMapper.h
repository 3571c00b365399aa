#pragma once

#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/Mappers/KVMSPEObjectMapperBase.h"
#include "MPPExporter/Mappers/KVMSPETimephasedDataInfo.h"

#include <vector>

// Reads the pieces of a split task: the tasks that its `child-task` entries name, each with its
// dates, effort and durations.
class KVMSPETimephasedDataMapper : public KVMSPEObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;

    explicit KVMSPETimephasedDataMapper(KVMSPEMapper& mapper) : KVMSPEObjectMapperBase(mapper) {}

    // The piece elements in order; empty for a task without `split`. Dangling references are skipped.
    std::vector<ElementPtr> childTvnxTasksFromTvnxSplitTask(KVMSPCXMLElement& tvnxTask) const;
    static std::vector<KVMSPETimephasedDataInfo>
    newTimephasedDataFromSplitedTasks(const std::vector<ElementPtr>& pieces);
};
