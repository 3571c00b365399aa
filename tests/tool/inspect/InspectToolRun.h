#pragma once

#include "tool/inspect/InspectTool.h"

#include <sstream>
#include <string>
#include <vector>

// One run of the inspector as the program runs it, with what it printed.
struct InspectToolRun {
    int status = 0;
    std::string out;
    std::string err;

    // `arguments` exclude the program name.
    static InspectToolRun of(const std::vector<std::string>& arguments) {
        std::ostringstream out;
        std::ostringstream err;
        InspectTool tool;
        InspectToolRun run;
        run.status = tool.run(arguments, out, err);
        run.out = out.str();
        run.err = err.str();
        return run;
    }
};
