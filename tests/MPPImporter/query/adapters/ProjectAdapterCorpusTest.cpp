#include "AdapterCorpusPlan.h"
#include "MPPImporter/file/KVMSPIMPPPropertyList.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <regex>

namespace {

// The UIDs that a collection answers for: the valid ones, in the collection's order.
template <typename Collection>
std::vector<int32_t> validUIDs(const Collection* collection) {
    std::vector<int32_t> uids;
    if (collection != nullptr) {
        std::copy_if(collection->uniqueIDs().begin(), collection->uniqueIDs().end(), std::back_inserter(uids),
                     [&](int32_t uid) { return collection->isValidUID(uid); });
    }
    return uids;
}

std::vector<int32_t> uidsOf(const KVMSPIXQuery::Objects& objects) {
    std::vector<int32_t> uids;
    for (const std::shared_ptr<KVMSPIXQuery>& object : objects) {
        uids.push_back(dynamic_cast<KVMSPISingleObjectReaderBase&>(*object).uid());
    }
    return uids;
}

// A UID that no object of the collection has.
int32_t unusedUID(const std::vector<int32_t>& uids) {
    return uids.empty() ? 1 : *std::max_element(uids.begin(), uids.end()) + 1000;
}

bool isNotPorted(const TVError& error) {
    return error.domain == "TVMSPFilter.GeneralErrorDomain" && error.code == 100;
}

struct Family {
    const char* query;
    std::vector<int32_t> (*validUIDs)(const KVMSPIMPPProjectReader&);
};

const Family kUIDFamilies[] = {
    {"Tasks/Task", [](const KVMSPIMPPProjectReader& p) { return validUIDs(p.taskReader()); }},
    {"Resources/Resource", [](const KVMSPIMPPProjectReader& p) { return validUIDs(p.resourceReader()); }},
    {"Calendars/Calendar", [](const KVMSPIMPPProjectReader& p) { return validUIDs(p.calendarReader()); }},
};

void collectionsAnswerEveryValidUIDInOrder(KVMSPIMPPProjectReader& project) {
    for (const Family& family : kUIDFamilies) {
        SCOPED_TRACE(family.query);
        TVError error;
        KVMSPIXQuery::Objects objects = project.objectsForXQuery(family.query, &error);
        EXPECT_EQ(uidsOf(objects), family.validUIDs(project));
        EXPECT_EQ(error.code, 0);
        // Answers are shared-owned, so that their parts can keep them alive.
        for (const std::shared_ptr<KVMSPIXQuery>& object : objects) {
            ASSERT_EQ(dynamic_cast<KVMSPIXQResponder&>(*object).answerOwner(), object);
        }
    }
    const std::vector<int32_t> assignments =
        validUIDs(dynamic_cast<KVMSPIMPPAssignmentReader*>(project.assignmentReader()));
    EXPECT_EQ(uidsOf(project.objectsForXQuery("Assignments/Assignment", nullptr)), assignments);
}

void uidPredicateFindsOneObjectAndAnInvalidUIDIsNotPorted(KVMSPIMPPProjectReader& project) {
    for (const Family& family : kUIDFamilies) {
        SCOPED_TRACE(family.query);
        const std::vector<int32_t> uids = family.validUIDs(project);
        for (size_t index = 0; index < std::min<size_t>(uids.size(), 3); ++index) {
            const std::string query = stringWithFormat("%s[UID=%d]", family.query, uids[index]);
            EXPECT_EQ(uidsOf(project.objectsForXQuery(query, nullptr)), std::vector<int32_t>{uids[index]});
            EXPECT_EQ(uidsOf({project.singleObjectForXQuery(query, nullptr)}),
                      std::vector<int32_t>{uids[index]});
        }
        TVError error;
        const std::string invalid = stringWithFormat("%s[UID=%d]", family.query, unusedUID(uids));
        EXPECT_TRUE(project.objectsForXQuery(invalid, &error).empty());
        EXPECT_TRUE(isNotPorted(error)) << error.localizedDescription();
    }
}

void assignmentsByUIDAndByTask(KVMSPIMPPProjectReader& project) {
    auto* assignmentReader = dynamic_cast<KVMSPIMPPAssignmentReader*>(project.assignmentReader());
    const std::vector<int32_t> assignments = validUIDs(assignmentReader);
    TVError error;
    const std::string invalid = stringWithFormat("Assignments/Assignment[UID=%d]", unusedUID(assignments));
    EXPECT_TRUE(project.objectsForXQuery(invalid, &error).empty());
    EXPECT_EQ(error.code, 0) << "an unknown assignment UID is no error";

    std::map<int32_t, std::vector<int32_t>> byTask;
    for (const int32_t uid : assignments) {
        int32_t task = -1;
        assignmentReader->assignmentTaskUID(uid, task);
        byTask[task].push_back(uid);
    }
    for (const auto& [task, uids] : byTask) {
        if (task < 0) {
            continue; // "TaskUID=-1" is no predicate: it would answer every assignment.
        }
        const std::string query = stringWithFormat("Assignments/Assignment[TaskUID=%d]", task);
        EXPECT_EQ(uidsOf(project.objectsForXQuery(query, nullptr)), uids) << query;
        // The third component of an assignment query can only be "Units".
        error = {};
        EXPECT_TRUE(project.objectsForXQuery(query + "/Work", &error).empty());
        EXPECT_TRUE(isNotPorted(error));
    }
}

void unitsOfEachResourcesAssignments(KVMSPIMPPProjectReader& project) {
    auto* assignmentReader = dynamic_cast<KVMSPIMPPAssignmentReader*>(project.assignmentReader());
    std::map<int32_t, std::vector<double>> unitsByResource;
    for (const int32_t uid : validUIDs(assignmentReader)) {
        int32_t resource = -1;
        double units = 0;
        assignmentReader->assignmentResourceUID(uid, resource);
        if (assignmentReader->assignmentUnits(uid, units)) {
            unitsByResource[resource].push_back(units);
        }
    }
    for (const int32_t resource : validUIDs(project.resourceReader())) {
        const std::string query = stringWithFormat("Assignments/Assignment[ResourceUID=%d]/Units", resource);
        TVError error;
        std::vector<double> answered;
        for (const std::shared_ptr<KVMSPIXQuery>& value : project.objectsForXQuery(query, &error)) {
            answered.push_back(value->floatValueForXQuery(".", nullptr));
        }
        EXPECT_EQ(answered, unitsByResource[resource]) << query;
        EXPECT_EQ(error.code, 0) << query;
    }
}

void predicatesThatNoClassTakesLeaveTheCollectionWhole(KVMSPIMPPProjectReader& project) {
    EXPECT_EQ(uidsOf(project.objectsForXQuery("Tasks/Task[Foo=1]", nullptr)),
              validUIDs(project.taskReader()));
    // Components after the item are not looked at for tasks.
    EXPECT_EQ(uidsOf(project.objectsForXQuery("Resources/Resource/Name", nullptr)),
              validUIDs(project.resourceReader()));
    // Through filter readers: a longer name of the standard calendar asks for "Standard".
    std::vector<int32_t> standard;
    for (const int32_t uid : validUIDs(project.calendarReader())) {
        std::string name;
        if (project.calendarReader()->calendarName(uid, name) && name == "Standard") {
            standard.push_back(uid);
        }
    }
    EXPECT_EQ(uidsOf(project.objectsForXQuery("Calendars/Calendar[Name=\"Standard (copy)\"]", nullptr)),
              standard);
}

void predicatesOnOtherComponentsRaise(KVMSPIMPPProjectReader& project) {
    EXPECT_THROW(project.objectsForXQuery("Tasks[UID=1]/Task", nullptr), TVException);
    auto* assignmentReader = dynamic_cast<KVMSPIMPPAssignmentReader*>(project.assignmentReader());
    for (const int32_t uid : validUIDs(assignmentReader)) {
        int32_t resource = -1;
        assignmentReader->assignmentResourceUID(uid, resource);
        const std::string query =
            stringWithFormat("Assignments/Assignment[ResourceUID=%d]/Units[x]", resource);
        try {
            project.objectsForXQuery(query, nullptr);
            ADD_FAILURE() << "no assertion for " << query;
        } catch (const TVException& exception) {
            EXPECT_EQ(exception.reason(), R"(Unexpected predicate in component "Units": "x".)");
        }
        break;
    }
}

// The project's own answers: those that the interchange vocabulary doesn't hold are not ported.
void projectValues(KVMSPIMPPProjectReader& project) {
    TVError error;
    EXPECT_FALSE(project.stringValueForXQuery("Name", &error).has_value());
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(project.intValueForXQuery("SaveVersion", nullptr), project.version());
    EXPECT_TRUE(project.objectsForXQuery("", &error).empty());
    EXPECT_TRUE(isNotPorted(error));
    error = {};
    EXPECT_FALSE(project.stringValueForXQuery("DurationFormat", &error).has_value());
    EXPECT_TRUE(isNotPorted(error));
}

// Format 9 keeps the names of custom fields in the data directory's Props: every task and resource field
// that the application's interchange file of legacy__alias names goes by that name (flags aside, which
// are no custom field values).
TEST(ProjectAdapterCorpusTest, Format9CustomFieldsGoByTheNamesOfTheDataDirectoryProps) {
    TVMSP_REQUIRE_CORPUS();
    const AdapterCorpusPlan plan = AdapterCorpusPlan::named("legacy__alias.mpp");
    ASSERT_NE(plan.project(), nullptr);
    const auto* tasks = dynamic_cast<const KVMSPIMPPTaskReader*>(plan.project()->taskReader());
    const auto* resources = dynamic_cast<const KVMSPIMPPResourceReader*>(plan.project()->resourceReader());
    ASSERT_TRUE(tasks != nullptr && resources != nullptr);
    const std::map<std::string, MPPCustomFieldType> types = {
        {"Cost", MPPCustomFieldType::cost},         {"Date", MPPCustomFieldType::date},
        {"Duration", MPPCustomFieldType::duration}, {"Finish", MPPCustomFieldType::finish},
        {"Number", MPPCustomFieldType::number},     {"OutlineCode", MPPCustomFieldType::outlineCode},
        {"Start", MPPCustomFieldType::start},       {"Text", MPPCustomFieldType::text}};
    const std::vector<unsigned char> bytes =
        testsupport::readFileBytes(testsupport::corpusDir() / "mspdi" / "legacy__alias.xml");
    const std::string xml(bytes.begin(), bytes.end());
    const std::regex attribute(
        "<FieldID>(\\d+)</FieldID><FieldName>([A-Za-z ]+?)(\\d+)</FieldName><Alias>([^<]*)</Alias>");
    size_t named = 0;
    for (auto match = std::sregex_iterator(xml.begin(), xml.end(), attribute);
         match != std::sregex_iterator(); ++match) {
        const auto type = types.find((*match)[2]);
        const int64_t kind = std::stoll((*match)[1]) >> 16;
        if (type == types.end()) {
            continue;
        }
        ASSERT_TRUE(kind == 0x0B40 || kind == 0x0C40) << (*match)[0];
        const KVMSPIMPPDataDirectoryReader& store =
            kind == 0x0B40 ? static_cast<const KVMSPIMPPDataDirectoryReader&>(*tasks) : *resources;
        const auto fields = kind == 0x0B40 ? store.MPPPropertyList().taskCustomFields(type->second)
                                           : store.MPPPropertyList().resourceCustomFields(type->second);
        const auto number = static_cast<size_t>(std::stoi((*match)[3]));
        ASSERT_LE(number, fields.size()) << (*match)[0];
        const std::string* name = store.fieldAlias(static_cast<int32_t>(fields[number - 1].propertyNumber));
        ASSERT_NE(name, nullptr) << (*match)[0];
        EXPECT_EQ(*name, (*match)[4]);
        ++named;
    }
    EXPECT_EQ(named, 220u);
}

} // namespace

// The project's collections and predicates answer as its readers hold the objects, in every plan.
TEST(ProjectAdapterCorpusTest, CorpusCollectionsAndPredicatesAnswerAsTheReadersHoldTheObjects) {
    TVMSP_REQUIRE_CORPUS();
    int plans = 0;
    for (const std::filesystem::path& file : testsupport::corpusMppFiles()) {
        const AdapterCorpusPlan plan(file);
        if (KVMSPIMPPProjectReader* project = plan.project()) {
            SCOPED_TRACE(file.filename().string());
            tvSetLogSink([](const std::string&) {});
            for (auto check :
                 {collectionsAnswerEveryValidUIDInOrder, uidPredicateFindsOneObjectAndAnInvalidUIDIsNotPorted,
                  assignmentsByUIDAndByTask, unitsOfEachResourcesAssignments,
                  predicatesThatNoClassTakesLeaveTheCollectionWhole, predicatesOnOtherComponentsRaise,
                  projectValues}) {
                check(*project);
            }
            tvSetLogSink({});
            ++plans;
        }
    }
    EXPECT_GT(plans, testsupport::corpusShare(500));
}
