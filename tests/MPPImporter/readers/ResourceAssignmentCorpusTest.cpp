#include "MPPCommon/date/DateExtensions.h"
#include "MPPCommon/storage/SSLStorage.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPImporter/format/MPPFormatConstants.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPISinglePredecessorLinkReader.h"
#include "MPPImporter/readers/KVMSPISingleResourceReader.h"
#include "ReaderCorpusSupport.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>

namespace {

using readercorpus::Fields;
using readercorpus::number;
using readercorpus::refText;
using json = nlohmann::json;

constexpr double kSecondsPerMinute = 60.0;

std::string text(bool found, const std::string& value) {
    return found ? value : "null";
}

std::string resourceType(KVMSPIMPPResourceReader& resources, int32_t uid) {
    uint8_t isCost = 0;
    if (resources.resourceIsCostResource(uid, isCost) && isCost != 0) {
        return "COST";
    }
    int16_t type = 0;
    if (!resources.resourceType(uid, type)) {
        return "(unread)";
    }
    return type == 0 ? "WORK" : "MATERIAL";
}

// The calendar UID is compared only when the project reader holds the calendars to find it in.
Fields resourceFields(KVMSPIMPPResourceReader& resources, int32_t uid, bool withCalendars) {
    Fields fields;
    const KVMSPISingleResourceReader resource(uid, resources);
    int32_t intValue = 0;
    if (resource.resourceID(intValue)) {
        fields["id"] = std::to_string(intValue);
    }
    std::string name;
    fields["name"] = text(resource.resourceName(name), name);
    std::string email;
    fields["email"] = text(resource.resourceEmailAddress(email), email);
    fields["type"] = resourceType(resources, uid);
    double value = 0;
    if (resource.resourceMaxUnits(value)) {
        fields["max_units"] = number(value);
    }
    if (resource.resourceStandardRate(value)) {
        fields["standard_rate"] = number(value);
    }
    // Stored in hundredths.
    if (resource.resourceCostPerUse(value)) {
        fields["cost_per_use"] = number(value / 100.0);
    }
    if (withCalendars) {
        int32_t calendarUID = -1;
        resource.resourceCalendarUID(calendarUID);
        fields["calendar_uid"] = calendarUID < 0 ? "null" : std::to_string(calendarUID);
    }
    return fields;
}

// A numeric reference value with two decimals, "null" when the reference has none.
std::string refNumber(const json& object, const char* key) {
    const json value = object.value(key, json());
    return value.is_number() ? number(value.get<double>()) : "null";
}

// The reference's rate text ("20/m", "175/d") as a rate per hour, as the file stores it.
std::string refHourlyRate(const json& resource) {
    const json rate = resource.value("standard_rate", json());
    if (!rate.is_string()) {
        return "null";
    }
    const std::string text = rate.get<std::string>();
    const std::map<std::string, double> perHour = {
        {"/m", 60.0}, {"/h", 1.0}, {"/d", 1.0 / 8}, {"/w", 1.0 / 40}};
    const auto unit = perHour.find(text.substr(text.find('/')));
    return unit == perHour.end() ? text : number(std::stod(text) * unit->second);
}

// Drops the keys that the reference leaves without a value.
Fields withoutNulls(Fields fields) {
    std::erase_if(fields, [](const auto& entry) { return entry.second == "null"; });
    return fields;
}

Fields refResource(const json& resource) {
    Fields fields;
    for (const char* key : {"id", "name", "email", "type", "calendar_uid"}) {
        fields[key] = refText(resource.value(key, json()));
    }
    fields["max_units"] = refNumber(resource, "max_units");
    fields["cost_per_use"] = refNumber(resource, "cost_per_use");
    fields["standard_rate"] = refHourlyRate(resource);
    return fields;
}

Fields assignmentFields(KVMSPIMPPAbsAssignmentReader& assignments, int32_t uid) {
    Fields fields;
    int32_t intValue = 0;
    if (assignments.assignmentTaskUID(uid, intValue)) {
        fields["task_uid"] = std::to_string(intValue);
    }
    // An assignment without a resource names a negative resource UID.
    if (assignments.assignmentResourceUID(uid, intValue)) {
        fields["resource_uid"] = intValue < 0 ? "null" : std::to_string(intValue);
    }
    double value = 0;
    if (assignments.assignmentUnits(uid, value)) {
        fields["units"] = number(value);
    }
    if (assignments.assignmentWork(uid, value)) {
        fields["work"] = number(value / kSecondsPerMinute);
    }
    TVDate date;
    if (assignments.assignmentStart(uid, date)) {
        fields["start"] = initWithDateTime(date);
    }
    if (assignments.assignmentFinish(uid, date)) {
        fields["finish"] = initWithDateTime(date);
    }
    return fields;
}

Fields refAssignment(const json& assignment) {
    Fields fields;
    for (const char* key : {"task_uid", "resource_uid", "start", "finish"}) {
        fields[key] = refText(assignment.value(key, json()));
    }
    fields["units"] = refNumber(assignment, "units");
    fields["work"] = refNumber(assignment, "work_min");
    return withoutNulls(fields);
}

// The reference leaves out resources that it takes for deleted or empty; every one it lists must be
// a valid resource of ours, in the same ID order.
void compareResources(const std::string& file, const json& ref, KVMSPIMPPResourceReader& resources,
                      bool withCalendars, readercorpus::CorpusDifferences& differences) {
    std::vector<int32_t> refUIDs;
    for (const json& resource : ref["resources"]) {
        const int32_t uid = resource["uid"].get<int32_t>();
        refUIDs.push_back(uid);
        Fields expected = refResource(resource);
        // Resource 0 stands for the plan; a calendar whose resource field is 0 belongs to no resource,
        // so its calendar can't be found.
        if (!withCalendars || uid == 0) {
            expected.erase("calendar_uid");
        }
        differences.compare(file, "resource " + std::to_string(uid),
                            resourceFields(resources, uid, withCalendars), withoutNulls(expected));
    }
    std::vector<int32_t> ourUIDs;
    std::ranges::copy_if(resources.uniqueIDs(), std::back_inserter(ourUIDs), [&](int32_t uid) {
        return resources.isValidUID(uid) && std::ranges::find(refUIDs, uid) != refUIDs.end();
    });
    if (ourUIDs != refUIDs) {
        differences.add(file, "resource_uids",
                        stringWithFormat("%zu of %zu listed in order", ourUIDs.size(), refUIDs.size()));
    }
}

void compareAssignments(const std::string& file, const json& ref, KVMSPIMPPAbsAssignmentReader& assignments,
                        readercorpus::CorpusDifferences& differences) {
    for (const json& assignment : ref["assignments"]) {
        const int32_t uid = assignment["uid"].get<int32_t>();
        differences.compare(file, "assignment " + std::to_string(uid), assignmentFields(assignments, uid),
                            refAssignment(assignment));
    }
}

// Each task's links as sorted "predecessor type lag" texts, lags in minutes.
std::string linkText(int32_t predecessor, const std::string& type, double lagMinutes) {
    return std::to_string(predecessor) + " " + type + " " + number(lagMinutes) + "; ";
}

void compareLinks(const std::string& file, const json& ref, const KVMSPIMPPAbsConstraintReader& constraints,
                  readercorpus::CorpusDifferences& differences) {
    constexpr const char* kLinkTypes[] = {"FF", "FS", "SF", "SS"};
    // Lags are stored in tenths of a minute.
    constexpr double kLagUnitsPerMinute = 10.0;
    const KVMSPITaskPredecessorMap& map = constraints.taskPredcessorMap();
    for (const json& task : ref["tasks"]) {
        const int32_t uid = task["uid"].get<int32_t>();
        std::vector<std::string> refLinks;
        for (const json& link : task.value("predecessors", json::array())) {
            refLinks.push_back(linkText(link["uid"].get<int32_t>(), link["type"].get<std::string>(),
                                        link.value("lag_min", 0.0)));
        }
        std::vector<std::string> ourLinks;
        if (const auto found = map.find(uid); found != map.end()) {
            for (const auto& link : found->second) {
                const int16_t type = link->relType();
                ourLinks.push_back(linkText(link->preTaskUID(),
                                            type >= 0 && type < 4 ? kLinkTypes[type] : "?",
                                            link->lag() / kLagUnitsPerMinute));
            }
        }
        std::ranges::sort(refLinks);
        std::ranges::sort(ourLinks);
        if (ourLinks != refLinks) {
            const auto joined = [](const std::vector<std::string>& texts) {
                std::string text;
                for (const std::string& part : texts) {
                    text += part;
                }
                return text;
            };
            differences.add(file, "links",
                            "task " + std::to_string(uid) + ": ours=" + joined(ourLinks) +
                                " ref=" + joined(refLinks));
        }
    }
}

TEST(ResourceAssignmentCorpusTest, CorpusResourcesAssignmentsAndLinksMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    tvSetLogSink([](const std::string&) {});
    readercorpus::CorpusDifferences differences("ResourceAssignmentCorpusTest.manifest");
    int resourcePlans = 0;
    int assignmentPlans = 0;
    for (const std::filesystem::path& path : testsupport::corpusMppFiles()) {
        const std::string file = path.filename().string();
        const json ref = readercorpus::readReference(path);
        if (ref.is_discarded() || ref.is_null()) {
            continue;
        }
        try {
            readercorpus::OpenPlan plan(path);
            KVMSPIMPPProjectReader* project = plan.project();
            if (project == nullptr) {
                continue;
            }
            if (auto* resources = dynamic_cast<KVMSPIMPPResourceReader*>(project->resourceReader())) {
                ++resourcePlans;
                compareResources(file, ref, *resources, project->calendarReader() != nullptr, differences);
            }
            if (const KVMSPIMPPAbsConstraintReader* constraints = project->constraintReader()) {
                compareLinks(file, ref, *constraints, differences);
            }
            if (KVMSPIMPPAbsAssignmentReader* assignments = project->assignmentReader()) {
                ++assignmentPlans;
                compareAssignments(file, ref, *assignments, differences);
            }
        } catch (const TVException& exception) {
            differences.add(file, "open", exception.what());
        }
    }
    tvSetLogSink(nullptr);
    EXPECT_GT(resourcePlans, testsupport::corpusShare(300));
    EXPECT_GT(assignmentPlans, testsupport::corpusShare(300));
    const std::string report = differences.report();
    EXPECT_TRUE(report.empty()) << report;
}

} // namespace
