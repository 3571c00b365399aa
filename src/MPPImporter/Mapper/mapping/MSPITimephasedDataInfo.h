#pragma once

#include "MPPCommon/support/TVDate.h"

#include <cstdint>
#include <optional>
#include <string>

// One span of timephased work of a task: its dates, the work in it, and the factor that brings the
// phased work up to the planned work (0 for none).
class MSPITimephasedDataInfo {
public:
    // Dates and duration as MSPDI text; an absent duration is no work.
    MSPITimephasedDataInfo(std::string taskName, int64_t type, const std::optional<std::string>& startDate,
                           const std::optional<std::string>& endDate,
                           const std::optional<std::string>& duration);

    const std::string& taskName() const { return _taskName; }
    int64_t type() const { return _type; }
    const std::optional<TVDate>& startDate() const { return _startDate; }
    const std::optional<TVDate>& endDate() const { return _endDate; }
    double duration() const { return _duration; }
    double workScale() const { return _workScale; }
    void setStartDate(std::optional<TVDate> date) { _startDate = date; }
    void setEndDate(std::optional<TVDate> date) { _endDate = date; }
    void setDuration(double duration) { _duration = duration; }
    void setWorkScale(double workScale) { _workScale = workScale; }

private:
    std::string _taskName;
    int64_t _type;
    std::optional<TVDate> _startDate;
    std::optional<TVDate> _endDate;
    double _duration = 0.0;
    double _workScale = 0.0;
};
