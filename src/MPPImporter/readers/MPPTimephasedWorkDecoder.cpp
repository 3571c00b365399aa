#include "MPPImporter/readers/MPPTimephasedWorkDecoder.h"

#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"
#include "MPPExporter/MPPObjects/ScheduleDateExtensions.h"
#include "MPPImporter/format/MPPMemRead.h"

namespace {

constexpr size_t kCountSize = 2;
constexpr size_t kFirstRecordOffset = 40;
constexpr size_t kRecordSize = 28;
constexpr size_t kWorkOffsetInRecord = 4;
constexpr double kOffsetUnitsPerMinute = 80.0;
constexpr double kWorkUnitsPerMinute = 1000.0;
constexpr double kSecondsPerDay = 86400.0;
// Every phase walks the calendar from the assignment's start through its offset and its work, at a
// cost that grows with the working time walked. The phases of a sound block ask for far less working
// time in all than this many times the span of an MPP date; a corrupt block that asks for more is cut
// off there, which bounds its cost.
constexpr double kWalkLimitInSpans = 4.0;

} // namespace

std::vector<MPPTimephasedPhase> MPPTimephasedWorkDecoder::decode(TVDate assignmentStart) const {
    std::vector<MPPTimephasedPhase> phases;
    if (m_size < kCountSize) {
        return phases;
    }
    const int32_t count = memReadShort(m_bytes, 0);
    const double walkLimit = kWalkLimitInSpans * KVMSPEScheduleCalendar::kMaxWalkDays * kSecondsPerDay;
    double walked = 0.0;
    double last = 0.0;
    for (int32_t index = 0; index < count; ++index) {
        const size_t recordOffset = kFirstRecordOffset + kRecordSize * static_cast<size_t>(index);
        if (recordOffset + kRecordSize > m_size) {
            break;
        }
        const int32_t offset = memReadDurationInt(m_bytes, static_cast<int32_t>(recordOffset));
        if (offset < 0) {
            break;
        }
        const double work =
            memReadDurationDouble(m_bytes, static_cast<int32_t>(recordOffset + kWorkOffsetInRecord));
        const double difference = work - last;
        last = work;
        // Tested after the conversion: a difference too small for a double vanishes in it.
        const double seconds = difference * 60.0 / kWorkUnitsPerMinute;
        if (!(seconds > 0.0)) {
            continue;
        }
        const double offsetSeconds = offset * 60.0 / kOffsetUnitsPerMinute;
        walked += offsetSeconds + seconds;
        if (walked > walkLimit) {
            break;
        }
        const TVDate start = dateAdvancedByDuration(assignmentStart, offsetSeconds, true, false, nullptr);
        phases.push_back({start, dateAdvancedByDuration(start, seconds, true, true, nullptr), seconds});
    }
    return phases;
}
