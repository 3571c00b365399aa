#include "MPPImporter/query/adapters/KVMSPIXQProjectAdapter.h"

#include "MPPCommon/date/DateExtensions.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPIPropsReader.h"
#include "MPPImporter/query/adapters/KVMSPIXQCollectionWalk.h"
#include "MPPImporter/query/frame/KVMSPIXQValue.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"
#include "MPPImporter/readers/KVMSPISingleTaskReader.h"

#include <algorithm>
#include <functional>
#include <map>

namespace {

enum class Collection { tasks, resources, assignments, calendars };

struct CollectionNames {
    const char* collection;
    const char* item;
    Collection kind;
};

constexpr CollectionNames kCollections[] = {
    {"Assignments", "Assignment", Collection::assignments},
    {"Calendars", "Calendar", Collection::calendars},
    {"Resources", "Resource", Collection::resources},
    {"Tasks", "Task", Collection::tasks},
};

// The title of the summary information.
constexpr int32_t kSummaryTitleProperty = 2;

const CollectionNames* collectionNamed(const std::string& name) {
    const auto* found = std::find_if(std::begin(kCollections), std::end(kCollections),
                                     [&](const CollectionNames& names) { return name == names.collection; });
    return found != std::end(kCollections) ? found : nullptr;
}

// The family of a collection; none when the plan has no store for it.
std::optional<KVMSPIXQCollectionWalk::Family> familyOf(const KVMSPIMPPProjectReader& project,
                                                       Collection kind) {
    switch (kind) {
    case Collection::tasks:
        if (auto* tasks = dynamic_cast<KVMSPIMPPTaskReader*>(project.taskReader())) {
            return KVMSPIXQCollectionWalk::familyOf(*tasks,
                                                    &KVMSPISingleTaskReader::initForFilterWithTaskUID);
        }
        break;
    case Collection::resources:
        if (auto* resources = dynamic_cast<KVMSPIMPPResourceReader*>(project.resourceReader())) {
            return KVMSPIXQCollectionWalk::familyOf(
                *resources, &KVMSPISingleResourceReader::initForFilterWithResourceUID);
        }
        break;
    case Collection::assignments:
        if (auto* assignments = dynamic_cast<KVMSPIMPPAssignmentReader*>(project.assignmentReader())) {
            KVMSPIXQCollectionWalk::Family family = KVMSPIXQCollectionWalk::familyOf(
                *assignments, &KVMSPISingleAssignmentReader::initForFilterWithAssignmentUID);
            family.indexedUIDs = [assignments](const std::optional<std::string>& text) {
                const auto owner = KVMSPISingleAssignmentReader::ownerWithString(text);
                return owner ? &assignments->assignmentsOf(owner->first, owner->second) : nullptr;
            };
            return family;
        }
        break;
    case Collection::calendars:
        if (auto* calendars = dynamic_cast<KVMSPIMPPCalendarReader*>(project.calendarReader())) {
            return KVMSPIXQCollectionWalk::familyOf(
                *calendars, &KVMSPISingleCalendarReader::initForFilterWithCalendarUID);
        }
        break;
    }
    return std::nullopt;
}

using ProjectReader = KVMSPIMPPProjectReader;
using TextRead = bool (ProjectReader::*)(std::string&, TVError*);
using DateRead = bool (ProjectReader::*)(TVDate&, TVError*);
using ShortRead = bool (ProjectReader::*)(int16_t&, TVError*);
using IntRead = bool (ProjectReader::*)(int32_t&, TVError*);

const std::map<std::string, TextRead, std::less<>> kTextReads = {
    {"CurrencyCode", &ProjectReader::propCurrencyCode},
    {"CurrencySymbol", &ProjectReader::propCurrencySymbol},
    {"DefaultCalendarName", &ProjectReader::propDefaultCalendarName},
};

const std::map<std::string, DateRead, std::less<>> kDateReads = {
    {"FinishDate", &ProjectReader::propFinishDate},
    {"StartDate", &ProjectReader::propStartDate},
};

const std::map<std::string, ShortRead, std::less<>> kShortReads = {
    {"CurrencyDigits", &ProjectReader::propCurrencyDigits},
    {"CurrencySymbolPosition", &ProjectReader::propCurrencySymbolPosition},
    {"DaysPerMonth", &ProjectReader::propDaysPerMonth},
    {"DurationUnits", &ProjectReader::propDurationUnits},
    {"WeekStartDay", &ProjectReader::propWeekStartDay},
    {"WorkUnits", &ProjectReader::propWorkUnits},
};

const std::map<std::string, IntRead, std::less<>> kIntReads = {
    {"MinutesPerDay", &ProjectReader::propMinutesPerDay},
    {"MinutesPerWeek", &ProjectReader::propMinutesPerWeek},
};

} // namespace

KVMSPIXQProjectAdapter::KVMSPIXQProjectAdapter(KVMSPIXQResponder& reader)
    : KVMSPIXQAdapter(reader), m_projectReader(readerOfClass<KVMSPIMPPProjectReader>(
                                   reader, "MSPIXQProjectAdapter: Incorrect reader %s.")) {}

KVMSPIXQuery::Objects KVMSPIXQProjectAdapter::objectsForXQuery(const std::string& xquery, TVError* error) {
    MSPXQComponents components;
    parseXQuery(xquery, components);
    const CollectionNames* names = components.empty() ? nullptr : collectionNamed(components[0].name);
    if (names == nullptr) {
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }
    assertNoPredicate(components[0]);
    if (components.size() < 2 || components[1].name != names->item) {
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }
    const std::optional<KVMSPIXQCollectionWalk::Family> family = familyOf(m_projectReader, names->kind);
    if (!family) {
        return {};
    }
    KVMSPIXQCollectionWalk::Result result =
        KVMSPIXQCollectionWalk::objectsOfFamily(*family, components[1].predicate);
    if (names->kind != Collection::assignments) {
        // Components after the item are not looked at; a UID the store doesn't hold isn't answered.
        return result.invalidUID ? KVMSPIXQAdapter::objectsForXQuery(xquery, error)
                                 : std::move(result.objects);
    }
    if (components.size() < 3 || result.objects.empty()) {
        return std::move(result.objects);
    }
    if (components[2].name != "Units") {
        return KVMSPIXQAdapter::objectsForXQuery(xquery, error);
    }
    assertNoPredicate(components[2]);
    return assignmentUnits(result.objects, error);
}

KVMSPIXQuery::Objects KVMSPIXQProjectAdapter::assignmentUnits(const Objects& assignments, TVError* error) {
    Objects units;
    for (const std::shared_ptr<KVMSPIXQuery>& object : assignments) {
        // Each read reports its own failure; only the last one's error is left to the caller.
        setError(error, TVError{});
        double value = 0.0;
        if (dynamic_cast<KVMSPISingleAssignmentReader&>(*object).assignmentUnits(value, error)) {
            units.push_back(std::make_shared<KVMSPIXQValue>(value));
        }
    }
    return units;
}

std::optional<std::string> KVMSPIXQProjectAdapter::stringValueForXQuery(const std::string& xquery,
                                                                        TVError* error) {
    if (const auto text = kTextReads.find(xquery); text != kTextReads.end()) {
        std::string value;
        return (m_projectReader.*text->second)(value, error) ? std::optional<std::string>(value)
                                                             : std::nullopt;
    }
    if (const auto date = kDateReads.find(xquery); date != kDateReads.end()) {
        TVDate value;
        return (m_projectReader.*date->second)(value, error)
                   ? std::optional<std::string>(initWithDateTime(value))
                   : std::nullopt;
    }
    if (xquery == "Name") {
        // The plan's name comes from its title, which "Title" answers.
        return std::nullopt;
    }
    if (xquery == "Title") {
        return title();
    }
    return KVMSPIXQAdapter::stringValueForXQuery(xquery, error);
}

std::optional<std::string> KVMSPIXQProjectAdapter::title() const {
    KVMSPIPropsReader* summaryInfo = m_projectReader.summaryInfoReader();
    const auto* fileReader = dynamic_cast<const KVMSPIMPPReader*>(m_projectReader.parentReader());
    if (summaryInfo == nullptr || fileReader == nullptr) {
        return std::nullopt;
    }
    std::string text;
    if (!summaryInfo->readPropertyLPSTR(text, kSummaryTitleProperty, false, fileReader->codepage())) {
        return std::nullopt;
    }
    return text;
}

int64_t KVMSPIXQProjectAdapter::intValueForXQuery(const std::string& xquery, TVError* error) {
    if (xquery == "SaveVersion") {
        return m_projectReader.version();
    }
    if (const auto read = kShortReads.find(xquery); read != kShortReads.end()) {
        int16_t value = 0;
        return (m_projectReader.*read->second)(value, error) ? value : 0;
    }
    if (const auto read = kIntReads.find(xquery); read != kIntReads.end()) {
        int32_t value = 0;
        return (m_projectReader.*read->second)(value, error) ? value : 0;
    }
    return KVMSPIXQAdapter::intValueForXQuery(xquery, error);
}

bool KVMSPIXQProjectAdapter::boolValueForXQuery(const std::string& xquery, TVError* error) {
    if (xquery == "ScheduleFromStart") {
        bool value = false;
        return m_projectReader.propScheduleFromStart(value, error) && value;
    }
    return KVMSPIXQAdapter::boolValueForXQuery(xquery, error);
}
