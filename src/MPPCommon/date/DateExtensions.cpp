#include "MPPCommon/date/DateExtensions.h"

#include "MPPCommon/date/DatePatternFormatter.h"
#include "MPPCommon/date/TVCalendar.h"

std::string initWithDateTime(TVDate date) {
    static const DatePatternFormatter formatter("yyyy-MM-dd'T'HH:mm:ss", *TVTimeZone::withName("UTC"));
    return formatter.stringFromDate(date);
}

std::optional<TVDate> initWithDateComponents(const TVDateComponents& components) {
    return TVCalendar().dateFromComponents(components);
}

std::string dateDescription(TVDate date) {
    static const DatePatternFormatter formatter("yyyy-MM-dd HH:mm:ss Z", TVTimeZone::gmt());
    return formatter.stringFromDate(date);
}
