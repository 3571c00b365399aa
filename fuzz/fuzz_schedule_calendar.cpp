// Builds a calendar from an arbitrary `schedule` element and runs the working-time arithmetic on it
// with arbitrary dates and durations: every call must end, without a crash or a hang, in a finite
// date or none, and measured working time is never negative. A schedule that no sound bundle holds
// (a day with fewer periods than the iterator's place) may end in an assertion, as export expects.
//
// Input: 4 bytes of minutes since 1970 (signed), 2 bytes of a duration in minutes, 1 byte of flags
// (bit 0 forward, bit 1 edge time allowed), then the schedule's XML text.
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/xml/KVMSPCXMLElement.h"
#include "MPPExporter/MPPObjects/KVMSPEScheduleCalendar.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

template <typename T>
T readValue(const uint8_t* data) {
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kHeaderSize = 7;
    if (size < kHeaderSize) {
        return 0;
    }
    const TVDate date{static_cast<double>(readValue<int32_t>(data)) * 60.0};
    const double duration = static_cast<double>(readValue<uint16_t>(data + 4)) * 60.0;
    const bool forward = (data[6] & 1) != 0;
    const bool allowEdgeTime = (data[6] & 2) != 0;
    const std::string text(reinterpret_cast<const char*>(data + kHeaderSize), size - kHeaderSize);
    const auto schedule = KVMSPCXMLElement::initWithXMLString(text, nullptr);
    if (!schedule) {
        return 0;
    }
    try {
        const KVMSPEScheduleCalendar calendar(*schedule);
        const auto advanced = calendar.date(date, duration, forward, allowEdgeTime);
        if (advanced && !std::isfinite(advanced->seconds)) {
            std::abort();
        }
        const TVDate other = advanced.value_or(date.addingSeconds(duration));
        if (!(calendar.workingTimeFromDate(std::min(date, other), std::max(date, other)) >= 0.0)) {
            std::abort();
        }
    } catch (const TVException& exception) {
        if (exception.name() != kInternalInconsistencyException) {
            throw;
        }
    }
    return 0;
}
