#include "MPPExporter/Mappers/KVMSPETaskBaselineMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPExporter/Mappers/KVMSPEBaseline.h"
#include "MPPExporter/Mappers/MSPETvnxReading.h"

#include <initializer_list>

namespace {

// The text of a task's child element, or none.
std::optional<std::string> childText(const KVMSPCXMLElement& task, const char* name) {
    const auto children = task.elementsForName(name);
    return children.empty() ? std::nullopt : children.front()->stringValue();
}

// A saved date of the task. A baseline saved by the planning application states the computed date;
// one that an import wrote states a saved start as the leveled start, and a saved date of a task
// scheduled by hand as its lock. Reading the computed dates alone would drop every baseline of an
// imported plan on its way back into a plan file. An import also states the actual plan's locks where
// the baseline holds no date, so a lock that the actual task states alike is no saved value.
std::optional<TVDate> savedDate(const KVMSPCXMLElement& saved, const KVMSPCXMLElement& actual,
                                std::initializer_list<const char*> stated, const char* lock) {
    for (const char* name : stated) {
        if (const auto text = childText(saved, name)) {
            return tvnxread::date(text);
        }
    }
    const auto locked = childText(saved, lock);
    return locked != childText(actual, lock) ? tvnxread::date(locked) : std::nullopt;
}

} // namespace

std::optional<TVDate> KVMSPETaskBaselineMapper::savedStart(const KVMSPCXMLElement& saved,
                                                           const KVMSPCXMLElement& actual) {
    return savedDate(saved, actual, {tvnx::element::kStartDate, tvnx::element::kLeveledStart},
                     tvnx::element::kLockedStartDate);
}

std::optional<TVDate> KVMSPETaskBaselineMapper::savedFinish(const KVMSPCXMLElement& saved,
                                                            const KVMSPCXMLElement& actual) {
    return savedDate(saved, actual, {tvnx::element::kEndDate}, tvnx::element::kLockedEndDate);
}

std::optional<KVMPPTaskBaseline>
KVMSPETaskBaselineMapper::newBaselineFromTvnxTask(const KVMSPCXMLElement& tvnxTask) const {
    const auto saved =
        baseline().getTaskById(tvnxread::attribute(tvnxTask, tvnx::attribute::kId).value_or(""));
    if (!saved) {
        return std::nullopt;
    }
    KVMPPTaskBaseline result;
    result.number = static_cast<int64_t>(baselineNumber());
    result.name = stringWithFormat("Baseline%d", static_cast<int>(baselineNumber()));
    result.start = savedStart(*saved, tvnxTask);
    result.finish = savedFinish(*saved, tvnxTask);
    if (const auto duration = saved->stringValueForXQuery(tvnx::element::kDuration, nullptr)) {
        result.duration = tvnxread::doubleValue(*duration);
    }
    if (const auto effort = saved->stringValueForXQuery(tvnx::element::kEffort, nullptr)) {
        result.work = tvnxread::doubleValue(*effort);
    }
    result.fixedCost = money(tvnxread::number(*saved, tvnx::element::kStaticCost, result.fixedCost));
    result.cost = money(tvnxread::number(*saved, tvnx::element::kTotalCost, result.cost));
    return result;
}
