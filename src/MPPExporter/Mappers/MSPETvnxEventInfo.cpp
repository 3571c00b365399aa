#include "MPPExporter/Mappers/MSPETvnxEventInfo.h"

#include "MPPCommon/bundle/KVTVNXNames.h"
#include "MPPCommon/date/KVMSPCDateTimeConverter.h"
#include "MPPCommon/date/StringExtensions.h"
#include "MPPCommon/date/TVCalendar.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"

namespace {

std::optional<TVDate> dateAttribute(const KVMSPCXMLElement& event, const char* name) {
    const auto attribute = event.attributeForName(name);
    const auto text = attribute ? attribute->stringValue() : std::nullopt;
    return text ? KVMSPIUtilities::tvnxToMppDateTime(*text) : std::nullopt;
}

} // namespace

MSPETvnxEventInfo::MSPETvnxEventInfo(TVDate fromDate, TVDate toDate, double start, double end)
    : _hasTimeRange(true), _fromDate(fromDate), _toDate(toDate), _start(start), _end(end) {}

MSPETvnxEventInfo::MSPETvnxEventInfo(TVDate fromDate, TVDate toDate)
    : _hasTimeRange(false), _fromDate(fromDate), _toDate(toDate) {}

std::optional<MSPETvnxEventInfo> MSPETvnxEventInfo::initWithTvnxEvent(const KVMSPCXMLElement& event) {
    const auto startDate = dateAttribute(event, tvnx::attribute::kStart);
    const auto endDate = dateAttribute(event, tvnx::attribute::kEnd);
    const auto first = startDate ? dayOf(*startDate) : std::nullopt;
    const auto last = endDate ? dayOf(*endDate) : std::nullopt;
    if (!first || !last) {
        return std::nullopt;
    }
    MSPETvnxEventInfo info(first->first, last->last, first->secondsOfDay, last->secondsOfDay);
    tvAssert(info._end >= info._start,
             stringWithFormat("Incoorrect calendar event start (%s) and end (%s) time.",
                              hourMinSecFromDuration(info._start).c_str(),
                              hourMinSecFromDuration(info._end).c_str()));
    if (info._end == info._start) {
        // An event that ends at the midnight it started at covers whole days, up to the day before
        // its end.
        tvAssert(info._start == 0.0,
                 "Calendar event start and end times may be equal only at midnight (00:00:00).");
        tvAssert(info._toDate.secondsSince(info._fromDate) >= kSecondsPerDay,
                 "Calendar event start and end days are too close.");
        info._toDate = info._toDate.addingSeconds(-kSecondsPerDay);
        info._end = kSecondsPerDay - 1.0;
    }
    return info;
}

std::optional<MSPETvnxEventInfo::Day> MSPETvnxEventInfo::dayOf(TVDate date) {
    const TVCalendar calendar;
    auto components = calendar.components(kTVCalendarUnitEra | kTVCalendarUnitYear | kTVCalendarUnitMonth |
                                              kTVCalendarUnitDay | kTVCalendarUnitHour |
                                              kTVCalendarUnitMinute | kTVCalendarUnitSecond,
                                          date);
    if (!components) {
        return std::nullopt;
    }
    const double secondsOfDay =
        static_cast<double>(components->hour * 3600 + components->minute * 60 + components->second);
    components->hour = 0;
    components->minute = 0;
    components->second = 0;
    const auto first = calendar.dateFromComponents(*components);
    components->hour = 23;
    components->minute = 59;
    components->second = 59;
    const auto last = calendar.dateFromComponents(*components);
    if (!first || !last) {
        return std::nullopt;
    }
    return Day{*first, *last, secondsOfDay};
}

std::string MSPETvnxEventInfo::description() const {
    return stringWithFormat("MSPETvnxEventInfo: fromDate='%s' toDate='%s' start=%s end=%s",
                            KVMSPCDateTimeConverter::tvnxFromMppDateTime(_fromDate).c_str(),
                            KVMSPCDateTimeConverter::tvnxFromMppDateTime(_toDate).c_str(),
                            hourMinSecFromDuration(_start).c_str(), hourMinSecFromDuration(_end).c_str());
}
