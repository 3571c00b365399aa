#include "tool/inspect/DumpCommand.h"

#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPImporter/readers/KVMSPIMPPAbsAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsTaskReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "tool/inspect/AssignmentDump.h"
#include "tool/inspect/CalendarDump.h"
#include "tool/inspect/InfoCommand.h"
#include "tool/inspect/InspectedPlan.h"
#include "tool/inspect/ProjectDump.h"
#include "tool/inspect/ResourceDump.h"
#include "tool/inspect/TaskDump.h"

namespace {

// Code with which the import ends when an internal check fails.
constexpr int kAssertionError = 5;

// An empty list for a store that the plan doesn't hold.
template <typename Reader, typename Dump>
nlohmann::ordered_json listOf(Reader* reader, Dump dump) {
    return reader ? dump(*reader) : nlohmann::ordered_json::array();
}

nlohmann::ordered_json dumpOfProject(KVMSPIMPPProjectReader& project) {
    return {
        {"project", ProjectDump::of(project)},
        {"tasks", listOf(project.taskReader(),
                         [&](auto& tasks) { return TaskDump::of(tasks, project.constraintReader()); })},
        {"resources",
         listOf(project.resourceReader(), [](auto& resources) { return ResourceDump::of(resources); })},
        {"calendars",
         listOf(project.calendarReader(), [](auto& calendars) { return CalendarDump::of(calendars); })},
        {"assignments", listOf(project.assignmentReader(),
                               [](auto& assignments) { return AssignmentDump::of(assignments); })},
    };
}

} // namespace

nlohmann::ordered_json DumpCommand::dumpOfFile(const std::string& path, bool acceptDowngraded,
                                               int32_t baselineNumber) {
    try {
        const InspectedPlan plan(path, acceptDowngraded, baselineNumber);
        if (!plan.project()) {
            return InfoCommand::infoOfFile(path, acceptDowngraded);
        }
        return dumpOfProject(*plan.project());
    } catch (const TVException& exception) {
        return {{"error",
                 {{"domain", kTVMSPGeneralErrorDomain},
                  {"code", kAssertionError},
                  {"text", exception.reason()}}}};
    }
}

std::optional<nlohmann::ordered_json> DumpCommand::reportFor(const std::vector<std::string>& arguments) {
    const auto options = PlanOptions::parse(arguments, true, 1);
    if (!options) {
        return std::nullopt;
    }
    return dumpOfFile(options->operands[0], options->acceptDowngraded, options->baselineNumber);
}
