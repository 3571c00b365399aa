#include "MPPImporter/query/adapters/KVMSPIXQCalendarAdapter.h"

namespace {

using Calendar = KVMSPISingleCalendarReader;

std::string booleanDigit(bool value) {
    return stringWithFormat("%d", value ? 1 : 0);
}

} // namespace

KVMSPIXQCalendarAdapter::KVMSPIXQCalendarAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQLeafAdapter(reader, "MSPIXQCalendarAdapter: Incorrect reader %s.", calendarLeaves()) {}

KVMSPIXQuery::Objects KVMSPIXQCalendarAdapter::objectsForXQuery(const std::string& xquery, TVError* error) {
    MSPXQComponents components;
    parseXQuery(xquery, components);
    if (components.empty()) {
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }
    const MSPXQComponent& first = components.front();
    const std::string second = components.size() > 1 ? components[1].name : std::string();
    const auto& calendar = static_cast<const Calendar&>(reader());
    if (first.name == "Exceptions") {
        assertNoPredicate(first);
        if (second == "Exception") {
            return collectionAnswer(components, calendar.exceptionReaders(), error);
        }
    } else if (first.name == "WeekDays") {
        assertNoPredicate(first);
        if (second == "WeekDay") {
            return collectionAnswer(components, calendar.weekDayReaders(), error);
        }
    } else if (first.name == "WorkWeeks") {
        assertNoPredicate(first);
        if (second == "WorkWeek") {
            return collectionAnswer(components, calendar.workWeekReaders(), error);
        }
    } else if (first.name == "/" && (second == "FromDate" || second == "ToDate")) {
        return periodDates(second, error);
    }
    return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
}

template <typename Child>
KVMSPIXQuery::Objects KVMSPIXQCalendarAdapter::collectionAnswer(
    const MSPXQComponents& components, const std::vector<std::unique_ptr<Child>>& children, TVError* error) {
    Objects objects = answersOwnedBy(reader(), children);
    // A work week is read as a week day: the week day's predicates serve both.
    filterObjects(objects, Child::predicateWithString(components[1].predicate));
    if (components.size() > 2 && !objects.empty()) {
        return objectsFromEach(objects, stringFromXQComponents(components, {2, 0}), error);
    }
    return objects;
}

KVMSPIXQuery::Objects KVMSPIXQCalendarAdapter::periodDates(const std::string& dateName, TVError* error) {
    Objects dates;
    for (const char* collection : {"WeekDays/WeekDay", "Exceptions/Exception", "WorkWeeks/WorkWeek"}) {
        const Objects answers = objectsForXQuery(std::string(collection) + "/TimePeriod/" + dateName, error);
        dates.insert(dates.end(), answers.begin(), answers.end());
    }
    return dates;
}

const KVMSPIXQCalendarAdapter::Leaves& KVMSPIXQCalendarAdapter::calendarLeaves() {
    static const Leaves leaves{
        .strings =
            {
                {"Name", stringLeaf(&Calendar::calendarName)},
                {"BaseCalendarUID", stringLeaf(&Calendar::calendarBaseCalendarUID, decimalText)},
                {"UID", stringLeaf(&Calendar::calendarUID, decimalText)},
                {"IsBaseCalendar", stringLeaf(&Calendar::calendarIsBaseCalendar, booleanDigit)},
            },
        .integers =
            {
                {"BaseCalendarUID", integerLeaf(&Calendar::calendarBaseCalendarUID)},
                {"UID", integerLeaf(&Calendar::calendarUID)},
            },
        .booleans = {{"IsBaseCalendar", booleanLeaf(&Calendar::calendarIsBaseCalendar)}},
    };
    return leaves;
}
