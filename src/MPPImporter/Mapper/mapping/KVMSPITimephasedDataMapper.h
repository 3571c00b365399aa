#pragma once

#include "MPPCommon/support/TVDate.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPImporter/Mapper/mapping/KVMSPIObjectMapperBase.h"
#include "MPPImporter/Mapper/mapping/MSPITimephasedDataInfo.h"

#include <optional>
#include <vector>

class KVMSPEScheduleCalendar;

// Finds the pieces of a split task. A plan marks no split; it shows as gaps in the timephased work of
// the task's assignments. The spans of all assignments are merged, and two or more pieces make the
// task a split task whose pieces become tasks of their own.
class KVMSPITimephasedDataMapper : public KVMSPIObjectMapperBase {
public:
    using ElementPtr = KVMSPCXMLElement::ElementPtr;
    using Spans = std::vector<MSPITimephasedDataInfo>;

    explicit KVMSPITimephasedDataMapper(KVMSPIMapper& mapper);

    // The piece tasks, with temporary ids; empty for a task that isn't split.
    std::vector<ElementPtr> newSplitTasksFromMspdiTask(KVMSPIXQuery& mspTask);
    // The end of the last piece, after newSplitTasksFromMspdiTask.
    const std::optional<TVDate>& taskEndDate() const { return _taskEndDate; }

    // Whether a span of the timephased type belongs to the scenario: the actual work (1 to 3) to the
    // actual plan, a baseline's own type to that baseline.
    static bool isAcceptedType(int64_t type, int32_t baselineNumber);
    // The pieces of a task's spans: spans that touch or overlap join, a gap (a span without work
    // included) parts them. Overlapping pieces measure their work on the calendar.
    static Spans mergedSpans(Spans spans, const KVMSPEScheduleCalendar& calendar);

private:
    std::optional<TVDate> _taskEndDate;
};
