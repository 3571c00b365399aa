#include "tool/inspect/DumpCommand.h"

#include "MPPCommon/storage/SSLRoot.h"
#include "MPPCommon/support/TVException.h"
#include "MPPCommon/support/TVMSPErrors.h"
#include "MPPImporter/file/KVMSPIMPPVersionReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsAssignmentReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsCalendarReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsConstraintReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsResourceReader.h"
#include "MPPImporter/readers/KVMSPIMPPAbsTaskReader.h"
#include "MPPImporter/readers/KVMSPIMPPProjectReader.h"
#include "tool/inspect/AssignmentDump.h"
#include "tool/inspect/CalendarDump.h"
#include "tool/inspect/InfoCommand.h"
#include "tool/inspect/ProjectDump.h"
#include "tool/inspect/ResourceDump.h"
#include "tool/inspect/TaskDump.h"

#include <charconv>
#include <optional>

namespace {

constexpr int kExitRefused = 1;
constexpr int kExitUsage = 2;

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

struct DumpArguments {
    bool acceptDowngraded = false;
    int32_t baselineNumber = DumpCommand::kActualPlan;
    std::string path;
};

std::optional<int32_t> baselineNumber(const std::string& text) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0 ||
        number > DumpCommand::kLastBaseline) {
        return std::nullopt;
    }
    return number;
}

std::optional<DumpArguments> parse(const std::vector<std::string>& arguments) {
    DumpArguments parsed;
    size_t index = 1;
    for (; index + 1 < arguments.size(); ++index) {
        if (arguments[index] == InfoCommand::kAcceptDowngradedOption && !parsed.acceptDowngraded) {
            parsed.acceptDowngraded = true;
        } else if (arguments[index] == DumpCommand::kBaselineOption &&
                   parsed.baselineNumber == DumpCommand::kActualPlan && index + 2 < arguments.size()) {
            const auto number = baselineNumber(arguments[++index]);
            if (!number) {
                return std::nullopt;
            }
            parsed.baselineNumber = *number;
        } else {
            return std::nullopt;
        }
    }
    if (index + 1 != arguments.size()) {
        return std::nullopt;
    }
    parsed.path = arguments[index];
    return parsed;
}

} // namespace

nlohmann::ordered_json DumpCommand::dumpOfFile(const std::string& path, bool acceptDowngraded,
                                               int32_t baselineNumber) {
    SSLRoot root(path);
    if (root.lastError() != 0) {
        return InfoCommand::infoOfFile(path, acceptDowngraded);
    }
    try {
        const KVMSPIMPPVersionReader versionReader(path, KVMSPIMPPProjectReader::projectReaderFactory());
        const auto reader = versionReader.getMppReader(root, acceptDowngraded, nullptr);
        auto* project = reader ? dynamic_cast<KVMSPIMPPProjectReader*>(reader->projectReader()) : nullptr;
        if (!project) {
            return InfoCommand::infoOfFile(path, acceptDowngraded);
        }
        project->setBaselineNumber(baselineNumber);
        return dumpOfProject(*project);
    } catch (const TVException& exception) {
        return {{"error",
                 {{"domain", kTVMSPGeneralErrorDomain},
                  {"code", kAssertionError},
                  {"text", exception.reason()}}}};
    }
}

bool DumpCommand::handles(const std::vector<std::string>& arguments) {
    return !arguments.empty() && arguments[0] == kName;
}

int DumpCommand::run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    const auto parsed = handles(arguments) ? parse(arguments) : std::nullopt;
    if (!parsed) {
        err << "usage: mppinspect " << kName << " [" << InfoCommand::kAcceptDowngradedOption << "] ["
            << kBaselineOption << " N] FILE\n";
        return kExitUsage;
    }
    const nlohmann::ordered_json dump =
        dumpOfFile(parsed->path, parsed->acceptDowngraded, parsed->baselineNumber);
    out << dump.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << "\n";
    return dump.contains("error") ? kExitRefused : 0;
}
