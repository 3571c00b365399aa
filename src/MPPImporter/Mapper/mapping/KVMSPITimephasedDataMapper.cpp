#include "MPPImporter/Mapper/mapping/KVMSPITimephasedDataMapper.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIProjectMapper.h"
#include "MPPImporter/Mapper/mapping/MSPIQueryAnswers.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"

#include <algorithm>

namespace {

using ElementPtr = KVMSPCXMLElement::ElementPtr;

// Timephased types of the actual work, of baseline 0, and of baseline b from 1 (10 + 6 × b).
constexpr int64_t kFirstActualType = 1;
constexpr int64_t kLastActualType = 3;
constexpr int64_t kBaselineZeroType = 4;

void addDateChild(KVMSPCXMLElement& element, const char* name, const std::optional<std::string>& date) {
    if (date) {
        element.addChildElementWithName(name, *date);
    }
}

} // namespace

KVMSPITimephasedDataMapper::KVMSPITimephasedDataMapper(KVMSPIMapper& mapper)
    : KVMSPIObjectMapperBase(mapper) {}

bool KVMSPITimephasedDataMapper::isAcceptedType(int64_t type, int32_t baselineNumber) {
    if (baselineNumber < 0) {
        return type >= kFirstActualType && type <= kLastActualType;
    }
    return type == (baselineNumber == 0 ? kBaselineZeroType : 10 + 6 * int64_t{baselineNumber});
}

std::vector<ElementPtr> KVMSPITimephasedDataMapper::newSplitTasksFromMspdiTask(KVMSPIXQuery& mspTask) {
    using namespace tvnx;
    const std::string name = queryString(mspTask, "Name").value_or(std::string());
    const auto uid = queryInt(mspTask, "UID");
    Spans spans;
    double planned = 0.0;
    double phased = 0.0;
    const auto assignments =
        uid ? queryObjectsOrEmpty(
                  *_mapper.mspProject(),
                  stringWithFormat("Assignments/Assignment[TaskUID=%lld]", static_cast<long long>(*uid)))
            : KVMSPIXQuery::Objects();
    for (const auto& assignment : assignments) {
        if (const auto work = queryString(*assignment, "Work")) {
            planned += KVMSPIUtilities::mspdiToMppDuration(*work);
        }
        for (const auto& datum : queryObjectsOrEmpty(*assignment, "TimephasedData")) {
            // A type that can't be read passes.
            const auto type = queryInt(*datum, "Type");
            if (type && !isAcceptedType(*type, _mapper.baselineNumber())) {
                continue;
            }
            MSPITimephasedDataInfo span(name, type.value_or(0), queryString(*datum, "Start"),
                                        queryString(*datum, "Finish"), queryString(*datum, "Value"));
            // A span without dates can't be placed; it has no share in the pieces.
            if (span.startDate() && span.endDate()) {
                phased += span.duration();
                spans.push_back(std::move(span));
            }
        }
    }
    // Phased work that doesn't add up to the planned work is scaled up to it on the pieces.
    if (planned != phased && planned > 0.0 && phased > 0.0) {
        for (MSPITimephasedDataInfo& span : spans) {
            span.setWorkScale(planned / phased);
        }
    }
    const KVMSPEScheduleCalendar& calendar =
        _mapper.scheduleCalendar() ? *_mapper.scheduleCalendar() : KVMSPEScheduleCalendar::standardCalendar();
    Spans pieces = mergedSpans(std::move(spans), calendar);
    if (pieces.size() < 2) {
        return {};
    }
    std::vector<ElementPtr> tasks;
    for (MSPITimephasedDataInfo& piece : pieces) {
        TVDate start = *piece.startDate();
        if (calendar.startDate(&start, *piece.startDate(), true)) {
            piece.setStartDate(start);
        }
        const ElementPtr task = KVMSPCXMLElement::initWithName(element::kTask);
        task->setAttributeWithName(attribute::kId, _mapper.projectMapper()->getTempSplitTaskID());
        task->addChildElementWithName(element::kTitle, name);
        const double scale = piece.workScale() != 0.0 ? piece.workScale() : 1.0;
        task->addChildElementWithName(element::kEffort,
                                      KVMSPIUtilities::mppToTvnxDuration(piece.duration() * scale));
        const auto tvnxStart = KVMSPIUtilities::mppToTvnxDateTime(*piece.startDate());
        addDateChild(*task, element::kStartConstraintDate, tvnxStart);
        addDateChild(*task, element::kStartDate, tvnxStart);
        addDateChild(*task, element::kEndDate, KVMSPIUtilities::mppToTvnxDateTime(*piece.endDate()));
        task->addChildElementWithName(element::kDuration,
                                      KVMSPIUtilities::mppToTvnxDuration(piece.duration()));
        _taskEndDate = _taskEndDate ? std::max(*_taskEndDate, *piece.endDate()) : *piece.endDate();
        tasks.push_back(task);
    }
    return tasks;
}

KVMSPITimephasedDataMapper::Spans
KVMSPITimephasedDataMapper::mergedSpans(Spans spans, const KVMSPEScheduleCalendar& calendar) {
    Spans merged;
    if (spans.size() < 2) {
        return merged;
    }
    std::stable_sort(spans.begin(), spans.end(), [](const auto& first, const auto& second) {
        return *first.startDate() != *second.startDate() ? *first.startDate() < *second.startDate()
                                                         : *first.endDate() > *second.endDate();
    });
    for (const MSPITimephasedDataInfo& span : spans) {
        if (span.duration() == 0.0) {
            continue;
        }
        if (merged.empty() || *merged.back().endDate() < *span.startDate()) {
            if (span.duration() > 0.0) {
                merged.push_back(span);
            }
            continue;
        }
        MSPITimephasedDataInfo& piece = merged.back();
        tvAssert(*piece.startDate() <= *span.startDate(), "Unexpected order of time span start dates.");
        const TVDate pieceEnd = *piece.endDate();
        // The span's end is taken even where it lies earlier: a shorter span that starts with the piece
        // ends it.
        piece.setEndDate(span.endDate());
        if (pieceEnd == *span.startDate()) {
            piece.setDuration(piece.duration() + span.duration());
        } else {
            tvAssert(pieceEnd > *span.startDate(), "Unexpected order of time span dates.");
            piece.setDuration(calendar.workingTimeFromDate(*piece.startDate(), *piece.endDate()));
        }
    }
    return merged;
}
