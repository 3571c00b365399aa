#include "MPPImporter/readers/MPPTimephasedWorkDecoder.h"

#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPImporter/format/MPPTimephasedWorkBlock.h"
#include "MPPImporter/readers/MPPWallClockWorkingTime.h"

namespace {

// Every phase walks the calendar from the assignment's start through its offset and its work, at a
// cost that grows with the working time walked. The phases of a sound block ask for far less working
// time in all than this many times the span of an MPP date; a corrupt block that asks for more is cut
// off there, which bounds its cost.
constexpr double kWalkLimitInSpans = 4.0;

} // namespace

std::vector<MPPTimephasedPhase> MPPTimephasedWorkDecoder::decode(TVDate assignmentStart) const {
    std::vector<MPPTimephasedPhase> phases;
    const double walkLimit = kWalkLimitInSpans * KVMSPEScheduleCalendar::kMaxWalkDays * kSecondsPerDay;
    double walked = 0.0;
    double last = 0.0;
    const MPPWallClockWorkingTime workingTime(KVMSPEScheduleCalendar::standardCalendar());
    for (const MPPTimephasedWorkRecord& record : MPPTimephasedWorkBlock(m_bytes, m_size).records()) {
        const double work = record.cumulativeWork;
        const double difference = work - last;
        last = work;
        // Tested after the conversion: a difference too small for a double vanishes in it.
        const double seconds = MPPTimephasedWorkRecord::workSeconds(difference);
        if (!(seconds > 0.0)) {
            continue;
        }
        const double offsetSeconds = MPPTimephasedWorkRecord::offsetSeconds(record.offset);
        walked += offsetSeconds + seconds;
        if (walked > walkLimit) {
            break;
        }
        const TVDate start = workingTime.advanced(assignmentStart, offsetSeconds, false);
        phases.push_back({start, workingTime.advanced(start, seconds, true), seconds});
    }
    return phases;
}
