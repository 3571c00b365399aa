#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/support/Log.h"
#include "MPPImporter/file/KVMSPIMPPReader.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/query/adapters/KVMSPIXQAdapters.h"
#include "MPPImporter/readers/KVMSPIMPPAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "MPPImporter/readers/KVMSPIMPPResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPTaskReader.h"
#include "MPPImporter/readers/KVMSPISingleAssignmentReader.h"
#include "MPPImporter/readers/KVMSPISingleCalendarReader.h"
#include "support/TestSupport.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

namespace {

// One plan of the corpus with its whole reader tree; no project reader when the file is refused.
class OpenPlan {
public:
    explicit OpenPlan(const std::filesystem::path& path) : m_root(path.string()) {
        KVMSPIXQAdapters::install();
        if (m_root.lastError() != 0) {
            return;
        }
        // A file that the readers refuse raises; the import pipeline would catch it.
        try {
            KVMSPIMPPVersionReader versionReader(path.string(),
                                                 KVMSPIMPPProjectReader::projectReaderFactory());
            m_reader = versionReader.getMppReader(m_root, true, nullptr);
        } catch (const TVException&) {
            m_reader.reset();
        }
    }
    KVMSPIMPPProjectReader* project() const {
        return m_reader ? dynamic_cast<KVMSPIMPPProjectReader*>(m_reader->projectReader()) : nullptr;
    }

private:
    SSLRoot m_root;
    std::unique_ptr<KVMSPIMPPReader> m_reader;
};

// Runs `check` on the project reader of every corpus plan that opens.
template <typename Check>
void forEachPlan(Check check) {
    tvSetLogSink([](const std::string&) {});
    for (const std::filesystem::path& file : testsupport::corpusMppFiles()) {
        OpenPlan plan(file);
        if (KVMSPIMPPProjectReader* project = plan.project()) {
            SCOPED_TRACE(file.filename().string());
            check(*project, file);
        }
    }
    tvSetLogSink({});
}

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

nlohmann::json reference(const std::filesystem::path& file) {
    std::ifstream in(testsupport::corpusDir() / "ref" / (file.filename().string() + ".json"));
    return in ? nlohmann::json::parse(in, nullptr, false) : nlohmann::json();
}

// The expected differences from the reference reading, from the manifest next to this file: lines
// "<field>\t<regular expression on the file name>\t<reason>".
class ExpectedDifferences {
public:
    ExpectedDifferences() {
        std::ifstream in(std::string(TVMSP_SOURCE_DIR) +
                         "/tests/MPPImporter/query/adapters/ProjectAdapterCorpusTest.manifest");
        for (std::string line; std::getline(in, line);) {
            std::istringstream parts(line);
            std::string field;
            std::string files;
            if (!line.starts_with('#') && std::getline(parts, field, '\t') &&
                std::getline(parts, files, '\t')) {
                m_entries.emplace_back(field, std::regex(files));
            }
        }
    }

    bool contains(const std::string& field, const std::filesystem::path& file) const {
        return std::any_of(m_entries.begin(), m_entries.end(), [&](const auto& entry) {
            return entry.first == field && std::regex_search(file.filename().string(), entry.second);
        });
    }

private:
    std::vector<std::pair<std::string, std::regex>> m_entries;
};

struct Family {
    const char* query;
    std::vector<int32_t> (*validUIDs)(const KVMSPIMPPProjectReader&);
};

const Family kUIDFamilies[] = {
    {"Tasks/Task", [](const KVMSPIMPPProjectReader& p) { return validUIDs(p.taskReader()); }},
    {"Resources/Resource", [](const KVMSPIMPPProjectReader& p) { return validUIDs(p.resourceReader()); }},
    {"Calendars/Calendar", [](const KVMSPIMPPProjectReader& p) { return validUIDs(p.calendarReader()); }},
};

} // namespace

TEST(ProjectAdapterCorpusTest, CorpusCollectionsAnswerEveryValidUIDInOrder) {
    TVMSP_REQUIRE_CORPUS();
    forEachPlan([](KVMSPIMPPProjectReader& project, const std::filesystem::path&) {
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
    });
}

TEST(ProjectAdapterCorpusTest, CorpusUIDPredicateFindsOneObjectAndAnInvalidUIDIsNotPorted) {
    TVMSP_REQUIRE_CORPUS();
    forEachPlan([](KVMSPIMPPProjectReader& project, const std::filesystem::path&) {
        for (const Family& family : kUIDFamilies) {
            SCOPED_TRACE(family.query);
            const std::vector<int32_t> uids = family.validUIDs(project);
            for (size_t index = 0; index < std::min<size_t>(uids.size(), 3); ++index) {
                const std::string query = stringWithFormat("%s[UID=%d]", family.query, uids[index]);
                EXPECT_EQ(uidsOf(project.objectsForXQuery(query, nullptr)),
                          std::vector<int32_t>{uids[index]});
                EXPECT_EQ(uidsOf({project.singleObjectForXQuery(query, nullptr)}),
                          std::vector<int32_t>{uids[index]});
            }
            TVError error;
            const std::string invalid = stringWithFormat("%s[UID=%d]", family.query, unusedUID(uids));
            EXPECT_TRUE(project.objectsForXQuery(invalid, &error).empty());
            EXPECT_TRUE(isNotPorted(error)) << error.localizedDescription();
        }
    });
}

TEST(ProjectAdapterCorpusTest, CorpusAssignmentsByUIDAndByTask) {
    TVMSP_REQUIRE_CORPUS();
    forEachPlan([](KVMSPIMPPProjectReader& project, const std::filesystem::path&) {
        auto* assignmentReader = dynamic_cast<KVMSPIMPPAssignmentReader*>(project.assignmentReader());
        const std::vector<int32_t> assignments = validUIDs(assignmentReader);
        TVError error;
        const std::string invalid =
            stringWithFormat("Assignments/Assignment[UID=%d]", unusedUID(assignments));
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
    });
}

TEST(ProjectAdapterCorpusTest, CorpusUnitsOfEachResourcesAssignments) {
    TVMSP_REQUIRE_CORPUS();
    forEachPlan([](KVMSPIMPPProjectReader& project, const std::filesystem::path&) {
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
            const std::string query =
                stringWithFormat("Assignments/Assignment[ResourceUID=%d]/Units", resource);
            TVError error;
            std::vector<double> answered;
            for (const std::shared_ptr<KVMSPIXQuery>& value : project.objectsForXQuery(query, &error)) {
                answered.push_back(value->floatValueForXQuery(".", nullptr));
            }
            EXPECT_EQ(answered, unitsByResource[resource]) << query;
            EXPECT_EQ(error.code, 0) << query;
        }
    });
}

TEST(ProjectAdapterCorpusTest, CorpusPredicatesThatNoClassTakesLeaveTheCollectionWhole) {
    TVMSP_REQUIRE_CORPUS();
    forEachPlan([](KVMSPIMPPProjectReader& project, const std::filesystem::path&) {
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
    });
}

TEST(ProjectAdapterCorpusTest, CorpusPredicatesOnOtherComponentsRaise) {
    TVMSP_REQUIRE_CORPUS();
    forEachPlan([](KVMSPIMPPProjectReader& project, const std::filesystem::path&) {
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
    });
}

TEST(ProjectAdapterCorpusTest, CorpusProjectValuesMatchTheReference) {
    TVMSP_REQUIRE_CORPUS();
    const ExpectedDifferences expected;
    forEachPlan([&](KVMSPIMPPProjectReader& project, const std::filesystem::path& file) {
        TVError error;
        EXPECT_FALSE(project.stringValueForXQuery("Name", &error).has_value());
        EXPECT_EQ(error.code, 0);
        EXPECT_EQ(project.intValueForXQuery("SaveVersion", nullptr), project.version());
        EXPECT_TRUE(project.objectsForXQuery("", &error).empty());
        EXPECT_TRUE(isNotPorted(error));
        error = {};
        EXPECT_FALSE(project.stringValueForXQuery("DurationFormat", &error).has_value());
        EXPECT_TRUE(isNotPorted(error));

        const nlohmann::json ref = reference(file).value("project", nlohmann::json::object());
        // `read` turns the reference's value, when there is one, into the form of ours.
        auto compare = [&](const char* field, const char* refKey, auto ours, auto read) {
            if (!ref[refKey].is_null() && !expected.contains(field, file)) {
                EXPECT_EQ(ours, read(ref[refKey])) << field;
            }
        };
        auto text = [](const nlohmann::json& value) { return std::optional(value.get<std::string>()); };
        auto integer = [](const nlohmann::json& value) { return value.get<int64_t>(); };
        compare("Title", "title", project.stringValueForXQuery("Title", nullptr), text);
        compare("StartDate", "start", project.stringValueForXQuery("StartDate", nullptr), text);
        compare("MinutesPerDay", "minutes_per_day", project.intValueForXQuery("MinutesPerDay", nullptr),
                integer);
        compare("MinutesPerWeek", "minutes_per_week", project.intValueForXQuery("MinutesPerWeek", nullptr),
                integer);
        compare("ScheduleFromStart", "schedule_from",
                project.boolValueForXQuery("ScheduleFromStart", nullptr),
                [](const nlohmann::json& value) { return value == "START"; });
    });
}
