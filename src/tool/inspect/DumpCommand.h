#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

// "mppinspect dump [--accept-downgraded] [--baseline N] FILE": the plan as the object readers of the
// import read it, as one JSON object with "project", "tasks", "resources", "calendars" and
// "assignments". Each object has its "uid" and the answer of every field operation of its reader,
// keyed by the operation's name, and leaves out the fields whose operation answers false. A file that
// the import refuses gives the error it would end with, as `info` prints it.
class DumpCommand {
public:
    static constexpr const char* kName = "dump";
    static constexpr const char* kBaselineOption = "--baseline";
    static constexpr int32_t kActualPlan = -1;
    static constexpr int32_t kLastBaseline = 10;

    // The object of the plan at `path`; `baselineNumber` (0 to 10, or kActualPlan) selects what the
    // baseline-following fields answer.
    static nlohmann::ordered_json dumpOfFile(const std::string& path, bool acceptDowngraded,
                                             int32_t baselineNumber = kActualPlan);

    // True if `arguments` (without the program name) ask for this command.
    static bool handles(const std::vector<std::string>& arguments);
    // Prints the object of the file named in `arguments`; 0, 1 when the file is refused, 2 with a
    // usage line on `err` for other arguments.
    static int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);
};
