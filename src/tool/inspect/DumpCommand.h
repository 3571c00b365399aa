#pragma once

#include "tool/inspect/PlanOptions.h"
#include "tool/inspect/ReportCommand.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

// "mppinspect dump [--accept-downgraded] [--baseline N] FILE": the plan as the object readers of the
// import read it, as one JSON object with "project", "tasks", "resources", "calendars" and
// "assignments". Each object has its "uid" and the answer of every field operation of its reader,
// keyed by the operation's name, and leaves out the fields whose operation answers false. A file that
// the import refuses gives the error it would end with, as `info` prints it.
class DumpCommand : public ReportCommand {
public:
    // The object of the plan at `path`; `baselineNumber` (0 to 10, or kActualPlan) selects what the
    // baseline-following fields answer.
    static nlohmann::ordered_json dumpOfFile(const std::string& path, bool acceptDowngraded,
                                             int32_t baselineNumber = PlanOptions::kActualPlan);

    std::string name() const override { return "dump"; }
    std::string argumentsUsage() const override { return PlanOptions::usage(true) + "FILE"; }

protected:
    std::optional<nlohmann::ordered_json> reportFor(const std::vector<std::string>& arguments) override;
};
