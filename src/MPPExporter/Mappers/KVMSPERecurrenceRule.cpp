#include "MPPExporter/Mappers/KVMSPERecurrenceRule.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <string_view>

namespace {

using namespace std::chrono;

// The periods (days, weeks, months or years) looked at for one series: a rule that selects few or no
// days, such as the 31st of every February, ends after this many, and so does a series without a
// near end. It is the span in days of the dates a plan file holds, so a daily series is never cut.
constexpr int64_t kMaxPeriods = 65536;
constexpr int64_t kMaxInterval = 32767;
constexpr int kMaxOrdinal = 5;
constexpr std::array<std::string_view, 7> kDayNames = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

std::optional<int64_t> integerOf(std::string_view text, int64_t low, int64_t high) {
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value < low ||
        value > high) {
        return std::nullopt;
    }
    return value;
}

std::optional<unsigned> weekdayOf(std::string_view name) {
    const auto found = std::find(kDayNames.begin(), kDayNames.end(), name);
    return found == kDayNames.end()
               ? std::nullopt
               : std::optional<unsigned>(static_cast<unsigned>(found - kDayNames.begin()));
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

// UNTIL as a day: "YYYYMMDD", optionally followed by "THHMMSS" and "Z"; the time doesn't matter on
// whole days.
std::optional<sys_days> untilDay(const std::string& value) {
    const bool timed = value.size() == 15 || (value.size() == 16 && value.back() == 'Z');
    if ((value.size() != 8 && !timed) || (timed && value[8] != 'T')) {
        return std::nullopt;
    }
    const auto yearValue = integerOf(std::string_view(value).substr(0, 4), 1, 9999);
    const auto monthValue = integerOf(std::string_view(value).substr(4, 2), 1, 12);
    const auto dayValue = integerOf(std::string_view(value).substr(6, 2), 1, 31);
    if (!yearValue || !monthValue || !dayValue) {
        return std::nullopt;
    }
    const year_month_day date{year(static_cast<int>(*yearValue)), month(static_cast<unsigned>(*monthValue)),
                              day(static_cast<unsigned>(*dayValue))};
    return date.ok() ? std::optional<sys_days>(sys_days(date)) : std::nullopt;
}

// A list of comma-separated values, each read by `read`; false when any is wrong.
template <typename Value, typename Read>
bool parseList(const std::string& value, std::vector<Value>& list, Read read) {
    for (const std::string& item : split(value, ',')) {
        const auto parsed = read(item);
        if (!parsed) {
            return false;
        }
        list.push_back(*parsed);
    }
    return !list.empty();
}

} // namespace

std::optional<KVMSPERecurrenceRule> KVMSPERecurrenceRule::initWithString(const std::string& text) {
    KVMSPERecurrenceRule rule;
    for (const std::string& part : split(text, ';')) {
        const size_t equals = part.find('=');
        if (part.empty()) {
            continue;
        }
        if (equals == std::string::npos || !rule.parsePart(part.substr(0, equals), part.substr(equals + 1))) {
            return std::nullopt;
        }
    }
    const bool ordinals = std::any_of(rule._byDay.begin(), rule._byDay.end(),
                                      [](const WeekdayEntry& entry) { return entry.ordinal != 0; });
    const bool withinMonth = rule._frequency == Frequency::monthly ||
                             (rule._frequency == Frequency::yearly && !rule._byMonth.empty());
    if (!rule._frequency || (ordinals && !withinMonth) ||
        (rule._frequency == Frequency::weekly && !rule._byMonthDay.empty())) {
        return std::nullopt;
    }
    return rule;
}

bool KVMSPERecurrenceRule::parsePart(const std::string& name, const std::string& value) {
    if (name == "FREQ") {
        static const std::array<std::pair<std::string_view, Frequency>, 4> kFrequencies = {
            {{"DAILY", Frequency::daily},
             {"WEEKLY", Frequency::weekly},
             {"MONTHLY", Frequency::monthly},
             {"YEARLY", Frequency::yearly}}};
        for (const auto& [text, frequency] : kFrequencies) {
            if (value == text) {
                _frequency = frequency;
            }
        }
        return _frequency.has_value();
    }
    if (name == "INTERVAL") {
        const auto interval = integerOf(value, 1, kMaxInterval);
        _interval = interval.value_or(0);
        return interval.has_value();
    }
    if (name == "COUNT") {
        // A count below one, as the import writes when the plan's count couldn't be read, leaves the
        // series bounded by its last day alone instead of dropping it.
        const auto count = integerOf(value, INT32_MIN, INT32_MAX);
        if (count && *count > 0) {
            _count = count;
        }
        return count.has_value();
    }
    if (name == "UNTIL") {
        _until = untilDay(value);
        return _until.has_value();
    }
    if (name == "BYDAY") {
        return parseList(value, _byDay, [](const std::string& item) -> std::optional<WeekdayEntry> {
            if (item.size() < 2) {
                return std::nullopt;
            }
            const auto weekday = weekdayOf(std::string_view(item).substr(item.size() - 2));
            const std::string_view number = std::string_view(item).substr(0, item.size() - 2);
            const auto ordinal =
                number.empty() ? std::optional<int64_t>(0) : integerOf(number, -kMaxOrdinal, kMaxOrdinal);
            if (!weekday || !ordinal || (!number.empty() && *ordinal == 0)) {
                return std::nullopt;
            }
            return WeekdayEntry{*weekday, static_cast<int>(*ordinal)};
        });
    }
    if (name == "BYMONTHDAY") {
        return parseList(value, _byMonthDay, [](const std::string& item) -> std::optional<int> {
            const auto monthDay = integerOf(item, -31, 31);
            return monthDay && *monthDay != 0 ? std::optional<int>(static_cast<int>(*monthDay))
                                              : std::nullopt;
        });
    }
    if (name == "BYMONTH") {
        return parseList(value, _byMonth, [](const std::string& item) -> std::optional<unsigned> {
            const auto monthValue = integerOf(item, 1, 12);
            return monthValue ? std::optional<unsigned>(static_cast<unsigned>(*monthValue)) : std::nullopt;
        });
    }
    if (name == "WKST") {
        const auto weekday = weekdayOf(value);
        _weekStart = weekday ? std::chrono::weekday(*weekday) : _weekStart;
        return weekday.has_value();
    }
    return false;
}

bool KVMSPERecurrenceRule::selectsMonth(month monthValue) const {
    return _byMonth.empty() ||
           std::find(_byMonth.begin(), _byMonth.end(), static_cast<unsigned>(monthValue)) != _byMonth.end();
}

bool KVMSPERecurrenceRule::selectsWeekday(weekday weekdayValue) const {
    return _byDay.empty() || std::any_of(_byDay.begin(), _byDay.end(), [&](const WeekdayEntry& entry) {
               return entry.weekday == weekdayValue.c_encoding();
           });
}

bool KVMSPERecurrenceRule::selectsMonthDay(year_month_day date) const {
    const int dayValue = static_cast<int>(static_cast<unsigned>(date.day()));
    const int lastDay = static_cast<int>(static_cast<unsigned>((date.year() / date.month() / last).day()));
    return _byMonthDay.empty() || std::any_of(_byMonthDay.begin(), _byMonthDay.end(), [&](int monthDay) {
               return monthDay == dayValue || lastDay + 1 + monthDay == dayValue;
           });
}

// The days of a month that BYMONTHDAY and BYDAY both select, an ordinal weekday counted from the
// month's first or last day; without either, the day of the month of the series' first day.
std::vector<sys_days> KVMSPERecurrenceRule::daysOfMonth(year_month monthValue, sys_days first) const {
    std::vector<sys_days> selected;
    const unsigned lastDay = static_cast<unsigned>((monthValue / last).day());
    for (unsigned dayValue = 1; dayValue <= lastDay; ++dayValue) {
        const year_month_day date = monthValue / day(dayValue);
        const weekday weekdayValue(sys_days{date});
        const bool byDay = std::any_of(_byDay.begin(), _byDay.end(), [&](const WeekdayEntry& entry) {
            const int fromStart = static_cast<int>(dayValue - 1) / 7 + 1;
            const int fromEnd = -(static_cast<int>(lastDay - dayValue) / 7 + 1);
            return entry.weekday == weekdayValue.c_encoding() &&
                   (entry.ordinal == 0 || entry.ordinal == fromStart || entry.ordinal == fromEnd);
        });
        const bool inRule = _byDay.empty() && _byMonthDay.empty()
                                ? date.day() == year_month_day(first).day()
                                : selectsMonthDay(date) && (_byDay.empty() || byDay);
        if (inRule) {
            selected.push_back(sys_days{date});
        }
    }
    return selected;
}

std::vector<sys_days> KVMSPERecurrenceRule::daysOfPeriod(sys_days periodStart, sys_days first) const {
    const year_month_day start(periodStart);
    switch (*_frequency) {
    case Frequency::daily:
        if (selectsMonth(start.month()) && selectsMonthDay(start) && selectsWeekday(weekday(periodStart))) {
            return {periodStart};
        }
        return {};
    case Frequency::weekly: {
        std::vector<sys_days> selected;
        for (int offset = 0; offset < 7; ++offset) {
            const sys_days date = periodStart + days(offset);
            const bool byDay =
                _byDay.empty() ? weekday(date) == weekday(first) : selectsWeekday(weekday(date));
            if (byDay && selectsMonth(year_month_day(date).month())) {
                selected.push_back(date);
            }
        }
        return selected;
    }
    case Frequency::monthly:
        return selectsMonth(start.month()) ? daysOfMonth(start.year() / start.month(), first)
                                           : std::vector<sys_days>();
    case Frequency::yearly: {
        std::vector<sys_days> selected;
        for (unsigned monthValue = 1; monthValue <= 12; ++monthValue) {
            const bool inRule = _byMonth.empty() ? month(monthValue) == year_month_day(first).month()
                                                 : selectsMonth(month(monthValue));
            if (inRule) {
                const auto inMonth = daysOfMonth(start.year() / month(monthValue), first);
                selected.insert(selected.end(), inMonth.begin(), inMonth.end());
            }
        }
        return selected;
    }
    }
    return {};
}

std::vector<sys_days> KVMSPERecurrenceRule::occurrences(sys_days first, sys_days lastDay,
                                                        size_t limit) const {
    std::vector<sys_days> result;
    const sys_days end = _until ? std::min(lastDay, *_until) : lastDay;
    const size_t most = _count ? std::min(limit, static_cast<size_t>(*_count)) : limit;
    if (*_frequency == Frequency::weekly && _count) {
        return weeklyBackwards(first, end, most);
    }
    const year_month_day firstDate(first);
    const int64_t endYear = static_cast<int>(year_month_day(end).year());
    for (int64_t period = 0; period < kMaxPeriods && result.size() < most; ++period) {
        // The start of the period in whole numbers first, so that no calendar type overflows.
        const int64_t step = period * _interval;
        sys_days periodStart = first;
        if (*_frequency == Frequency::daily || *_frequency == Frequency::weekly) {
            const int64_t weekOffset = (weekday(first) - _weekStart).count();
            const int64_t count = first.time_since_epoch().count() +
                                  (*_frequency == Frequency::daily ? step : 7 * step - weekOffset);
            if (count > end.time_since_epoch().count()) {
                break;
            }
            periodStart = sys_days(days(count));
        } else {
            const int64_t monthIndex = static_cast<int>(firstDate.year()) * 12 +
                                       static_cast<unsigned>(firstDate.month()) - 1 +
                                       (*_frequency == Frequency::monthly ? step : 12 * step);
            if (monthIndex / 12 > endYear) {
                break;
            }
            const bool yearly = *_frequency == Frequency::yearly;
            periodStart = sys_days(year(static_cast<int>(monthIndex / 12)) /
                                   month(yearly ? 1U : static_cast<unsigned>(monthIndex % 12) + 1) / 1);
        }
        for (const sys_days date : daysOfPeriod(periodStart, first)) {
            if (date > end || result.size() >= most) {
                return result;
            }
            if (date >= first) {
                result.push_back(date);
            }
        }
    }
    return result;
}

// The end of a repeated event is the end of the whole series, its last occurrence, while the first
// day the import writes for a weekly series can lie up to `interval` weeks and a week after the true
// first occurrence: such a series is counted back from its end, on the weeks of the end's week.
std::vector<sys_days> KVMSPERecurrenceRule::weeklyBackwards(sys_days first, sys_days end, size_t most) const {
    std::vector<sys_days> result;
    const sys_days earliest = first - days(7 * (_interval + 1));
    const sys_days lastWeek = end - days((weekday(end) - _weekStart).count());
    for (int64_t period = 0; period < kMaxPeriods && result.size() < most; ++period) {
        const sys_days periodStart = lastWeek - days(7 * period * _interval);
        if (periodStart + days(6) < earliest) {
            break;
        }
        const std::vector<sys_days> selected = daysOfPeriod(periodStart, first);
        for (auto day = selected.rbegin(); day != selected.rend() && result.size() < most; ++day) {
            if (*day <= end && *day >= earliest) {
                result.push_back(*day);
            }
        }
    }
    std::reverse(result.begin(), result.end());
    return result;
}
