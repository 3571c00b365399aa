#include "MPPCommon/shared/MSPCXMLLoading.h"
#include "MPPCommon/support/Log.h"
#include "MPPCommon/support/TVException.h"
#include "MPPExporter/Mappers/KVMSPECalendarMapper.h"
#include "MPPImporter/Mapper/mapping/KVMSPIMapper.h"
#include "MPPImporter/Mapper/utilities/KVMSPIUtilities.h"
#include "MPPImporter/pipeline/KVMSPIMPPImporter.h"
#include "support/TestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

// Real plans imported into bundles and their schedules exported into calendars again: every calendar
// of a resource, and the project calendar, gives back the week that the plan holds (its own days, and
// its base calendar's where it states none), and the plan's single exceptions come back on the same
// days with the same hours. The plan's side is an independent reader's view (corpus/ref).

namespace {

namespace fs = std::filesystem;
using ElementPtr = KVMSPCXMLElement::ElementPtr;
using json = nlohmann::json;

constexpr const char* kDayKeys[] = {"", "SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

std::string attribute(const KVMSPCXMLElement& element, const char* name) {
    const auto found = element.attributeForName(name);
    return found ? found->stringValue().value_or("") : "";
}

// The calendars of a bundle's actual plan, with the calendar UID of each resource id.
struct ExportedCalendars {
    std::map<uint64_t, std::shared_ptr<KVMPPCalendar>> byUID;
    std::map<std::string, int64_t> resourceCalendarUIDs;
};

ExportedCalendars exportCalendars(const fs::path& bundle) {
    std::string uri;
    const auto document =
        newXmlDocFromUrlStripNamespace(TVFileURL((bundle / "Actual.xml").string(), false), uri);
    const ElementPtr scenario = document->rootElement();
    std::map<std::string, ElementPtr> resources;
    for (const ElementPtr& resource : scenario->elementsForName("resource")) {
        resources[attribute(*resource, "id")] = resource;
    }
    ExportedCalendars exported;
    int64_t nextUID = 1;
    KVMSPECalendarMapper mapper([&nextUID] { return nextUID++; });
    const std::string top = attribute(*scenario->elementsForName("top-resource").at(0), "idref");
    mapper.setTopScheduleKey(top);
    const std::function<void(const ElementPtr&, const ElementPtr&)> walk = [&](const ElementPtr& resource,
                                                                               const ElementPtr& parent) {
        exported.resourceCalendarUIDs[attribute(*resource, "id")] =
            mapper.mapCalendarForResource(resource, parent);
        for (const ElementPtr& child : resource->elementsForName("child-resource")) {
            walk(resources.at(attribute(*child, "idref")), resource);
        }
    };
    walk(resources.at(top), nullptr);
    mapper.buildCalendarHierarchy();
    for (const auto& calendar : mapper.calendars()) {
        exported.byUID[calendar->ID] = calendar;
    }
    return exported;
}

std::string rangesText(const KVMPPCalendarWorkWeek::Ranges& ranges) {
    if (ranges.empty()) {
        return "NON_WORKING";
    }
    std::string text = "WORKING ";
    for (const auto& range : ranges) {
        text += stringWithFormat("%s%02d:%02d-%02d:%02d", &range == &ranges.front() ? "" : ",",
                                 range.start().hours(), range.start().minutes(), range.end().hours() % 24,
                                 range.end().minutes());
    }
    return text;
}

// A day of an exported calendar, from its base where it states none.
std::string exportedDay(const ExportedCalendars& exported, uint64_t uid, int64_t day) {
    for (int depth = 0; depth < 2; ++depth) {
        const auto found = exported.byUID.find(uid);
        if (found == exported.byUID.end()) {
            return "no calendar";
        }
        const auto& ranges = found->second->defaultWorkWeek.workRangesForDay(day);
        if (ranges) {
            return rangesText(*ranges);
        }
        const std::string* base = found->second->baseCalendar.key();
        uid = base ? std::stoull(*base) : 0;
    }
    return "unstated";
}

const json* refCalendar(const json& plan, const json& uid) {
    for (const json& calendar : plan["calendars"]) {
        if (calendar["uid"] == uid) {
            return &calendar;
        }
    }
    return nullptr;
}

std::string planDay(const json& plan, const json& calendar, const char* day) {
    const json* current = &calendar;
    for (int depth = 0; depth < 4 && current; ++depth) {
        const std::string text = (*current)["days"].value(day, "");
        if (text != "DEFAULT") {
            return text;
        }
        current = refCalendar(plan, (*current)["base_calendar_uid"]);
    }
    return "unstated";
}

std::string wallDay(TVDate date) {
    return KVMSPIUtilities::mppToMspdiDateTime(date).value_or("").substr(0, 10);
}

// The differences between the plan's calendar and the exported one, empty when they agree.
// Counts the exceptions compared.
std::string differences(const json& plan, const json& calendar, const ExportedCalendars& exported,
                        uint64_t uid, long& exceptions) {
    std::string text;
    for (int64_t day = 1; day <= 7; ++day) {
        const std::string expected = planDay(plan, calendar, kDayKeys[day]);
        const std::string actual = exportedDay(exported, uid, day);
        if (expected != actual) {
            text += std::string(kDayKeys[day]) + " " + expected + " <> " + actual + "; ";
        }
    }
    const auto found = exported.byUID.find(uid);
    for (const json& exception : calendar["exceptions"]) {
        if (!exception["recurring"].is_null() || found == exported.byUID.end()) {
            continue;
        }
        ++exceptions;
        const bool working = exception.value("working", false);
        const std::string hours = working ? "WORKING " + exception.value("hours", "") : "NON_WORKING";
        // Exactly one exception on the days of a single one of the plan: no other contradicts it.
        std::string onTheseDays;
        for (const auto& mapped : found->second->exceptions) {
            if (wallDay(*mapped.startDate) == exception["from"] &&
                wallDay(*mapped.endDate) == exception["to"]) {
                onTheseDays += rangesText(mapped.workRanges) + "/";
            }
        }
        if (onTheseDays != hours + "/") {
            text += "exception " + exception["from"].get<std::string>() + " " + hours + " <> " + onTheseDays +
                    "; ";
        }
    }
    return text;
}

// The project calendar of the import: the base calendar named "Standard", else the project's default.
const json* planProjectCalendar(const json& plan) {
    for (const json& calendar : plan["calendars"]) {
        if (calendar["name"] == "Standard" && calendar["base_calendar_uid"].is_null()) {
            return &calendar;
        }
    }
    return refCalendar(plan, plan["project"]["default_calendar_uid"]);
}

TEST(KVMSPECalendarMapperCorpusTest, ImportedSchedulesComeBackAsThePlansCalendars) {
    TVMSP_REQUIRE_CORPUS();
    testsupport::TempDir temp;
    TVInfoDictionary info;
    info.setURL(kInfoTVNXTemplateUrl,
                TVFileURL(std::string(TVMSP_SOURCE_DIR) + "/templates/Template.tvnx", true));
    tvSetLogSink([](const std::string&) {});
    long plans = 0;
    long calendars = 0;
    long exceptions = 0;
    std::string problems;
    for (const fs::path& file : testsupport::corpusMppFiles()) {
        const std::string name = file.filename().string();
        const fs::path bundle = temp.path() / "plan.tvnx";
        fs::remove_all(bundle);
        std::ifstream refFile(testsupport::corpusDir() / "ref" / (name + ".json"));
        if (!refFile || !KVMSPIMPPImporter(info, KVMSPIMapper::factory())
                             .importFromMppURL(TVFileURL(file.string(), false),
                                               TVFileURL(bundle.string(), true), true, nullptr)) {
            continue;
        }
        const json plan = json::parse(refFile);
        ExportedCalendars exported;
        try {
            exported = exportCalendars(bundle);
        } catch (const TVException& exception) {
            problems += name + ": " + exception.reason() + "\n";
            continue;
        }
        ++plans;
        std::vector<std::pair<std::string, const json*>> checks{{"r-1", planProjectCalendar(plan)}};
        for (const json& resource : plan["resources"]) {
            if (resource["uid"].is_number() && !resource["calendar_uid"].is_null()) {
                checks.emplace_back("r" + std::to_string(resource["uid"].get<long>()),
                                    refCalendar(plan, resource["calendar_uid"]));
            }
        }
        for (const auto& [resource, calendar] : checks) {
            const auto uid = exported.resourceCalendarUIDs.find(resource);
            if (!calendar || uid == exported.resourceCalendarUIDs.end()) {
                continue;
            }
            ++calendars;
            const std::string difference =
                differences(plan, *calendar, exported, static_cast<uint64_t>(uid->second), exceptions);
            if (!difference.empty()) {
                problems += name + " " + resource + ": " + difference + "\n";
            }
        }
    }
    tvSetLogSink({});
    EXPECT_EQ(problems, "");
    std::cerr << plans << " plans, " << calendars << " calendars, " << exceptions << " exceptions compared\n";
    EXPECT_GE(plans, testsupport::corpusShare(500));
    EXPECT_GE(exceptions, testsupport::corpusShare(90));
}

} // namespace
